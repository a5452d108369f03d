# shellcheck shell=bash
# Sourced by the other scripts: the root of the tree, the number of cores, how a preset is configured.

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

# configure PRESET DIR [CMAKE OPTION...]: without options, only if DIR was never configured or the presets have changed
# since; the build itself notices a changed CMakeLists.txt.
configure() {
  local preset=$1 dir=$2
  shift 2
  if (($#)) || [[ ! -e $dir/build.ninja || $ROOT/CMakePresets.json -nt $dir/build.ninja ]]; then
    cmake -S "$ROOT" --preset "$preset" -B "$dir" "$@"
  fi
}
