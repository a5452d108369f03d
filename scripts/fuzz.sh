#!/usr/bin/env bash
# Builds and runs the fuzz targets. Each stops at its first finding. The corpora are kept in build/checked/corpus for
# the next run.
#
#   scripts/fuzz.sh                       one minute per target, with a fixed seed
#   scripts/fuzz.sh --seconds N           N seconds per target, with a random seed
#   scripts/fuzz.sh [--seconds N] TARGET  a single target, such as exif_fuzz
#
# Findings are stored in build/checked/findings. To reproduce one:
#   build/checked/fuzz/TARGET FILE
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

TARGETS=(settings_file_fuzz exif_fuzz image_loader_fuzz raw_decoder_fuzz thumbnail_fuzz perceptual_hash_fuzz
  call_list_fuzz open_bytes_fuzz host_calls_fuzz xmp_import_fuzz mark_fuzz)
BUILD=$ROOT/build/checked

seconds=60
seed=1 # fixed, so that a short run fails because of a change and not by chance; 0 picks one at random
if [[ ${1:-} == --seconds ]]; then
  [[ ${2:-} =~ ^[1-9][0-9]*$ ]] || fail "usage: scripts/fuzz.sh [--seconds N] [TARGET]"
  seconds=$2
  seed=0
  shift 2
fi
if (($#)); then
  [[ $# == 1 && " ${TARGETS[*]} " == *" $1 "* ]] || fail "the targets are: ${TARGETS[*]}"
  TARGETS=("$1")
fi

"$ROOT/scripts/install-dependencies.sh" --build --fuzz
configure checked "$BUILD"
cmake --build "$BUILD" --target lumvik_fuzz

# The targets' scratch files, removed on exit.
TMPDIR=$(mktemp -d)
export TMPDIR BUILD SECONDS_EACH=$seconds SEED=$seed
trap 'rm -rf "$TMPDIR"' EXIT
export LLVM_PROFILE_FILE=/dev/null # only the tests count as coverage
"$BUILD/fuzz/lumvik_fuzz_seeds" "$TMPDIR/seeds"

# A file may claim more memory than there is: the allocation then fails, as it does without the sanitizer. That a few
# bytes can claim a billion pixels is known (see SECURITY.md), and decoding them would only take time.
export OPENCV_IO_MAX_IMAGE_PIXELS=$((1 << 24))
export ASAN_OPTIONS=allocator_may_return_null=1:max_allocation_size_mb=4096
run_target() {
  local target=$1 corpus=$BUILD/corpus/$1 log=$BUILD/$1.log
  mkdir -p "$corpus" "$BUILD/findings"
  if ! "$BUILD/fuzz/$target" "$corpus" "$TMPDIR/seeds/$target" -artifact_prefix="$BUILD/findings/$target-" \
    -max_total_time="$SECONDS_EACH" -seed="$SEED" -timeout=120 -rss_limit_mb=4096 -malloc_limit_mb=4096 -max_len=65536 \
    -print_final_stats=1 >"$log" 2>&1; then
    grep -a -A 40 -E 'ERROR|runtime error' "$log" | cut -c 1-200
    echo "$target failed: $log"
    return 1
  fi
  printf '%-22s %9s inputs\n' "$target" "$(awk '/number_of_executed_units/ { print $2 }' "$log")"
}
export -f run_target
printf '%s\n' "${TARGETS[@]}" | xargs -P "$JOBS" -I {} bash -euo pipefail -c 'run_target {}'
