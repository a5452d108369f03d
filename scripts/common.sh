# shellcheck shell=bash
# Sourced by the scripts beside it: where the tree is, how many cores to use, how a preset is built.

ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
JOBS=$(nproc)
export CTEST_PARALLEL_LEVEL=$JOBS CMAKE_BUILD_PARALLEL_LEVEL=$JOBS

step() {
  printf '\n=== %s (%d s)\n' "$*" "$SECONDS"
}

fail() {
  printf '%s: %s\n' "$(basename "$0")" "$*" >&2
  exit 1
}

# configure PRESET DIR [CMAKE OPTION...]: only when DIR was never configured or the presets changed since;
# an edited CMakeLists.txt is noticed by the build itself.
configure() {
  local preset=$1 dir=$2
  shift 2
  if [[ ! -e $dir/build.ninja || $ROOT/CMakePresets.json -nt $dir/build.ninja ]]; then
    cmake -S "$ROOT" --preset "$preset" -B "$dir" "$@"
  fi
}
