#!/usr/bin/env bash
# Compares the CPU time of the engine's work between the native build and the one for Windows under Wine, which run
# alternately: the medians of both, and their ratio. Both builds must be up to date: scripts/test-windows.sh.
#
#   bench/compare-windows.sh [WORK...]
#
# PHOTO names another photo than the sample, ROUNDS (5) can be set.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=../scripts/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/../scripts/common.sh"

build=$ROOT/build/windows
native=$ROOT/build/release/bench/lumvik_platform_times
photo=$(realpath -- "${PHOTO:-$ROOT/samples/sample_small.ARW}")
rounds=${ROUNDS:-5}
export WINEPREFIX=$build/wine WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml,winedbg.exe=' LC_ALL=C.UTF-8

folder=$(mktemp -d)
mkdir -p "$WINEPREFIX"
wineserver --persistent || true # it may be running; otherwise each program would start it
trap 'wineserver --kill; rm -rf "$folder"' EXIT
cd "$folder" # for the exported files

works=("$@")
((${#works[@]})) || mapfile -t works < <("$native")

# Wine's fixed addresses can collide with a randomized heap.
windows() {
  setarch x86_64 --addr-no-randomize wine "$build/bin/lumvik_platform_times.exe" "$@"
}

median() {
  sort -g "$1" | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'
}

echo "work Linux/ms Windows/ms ratio"
for work in "${works[@]}"; do
  for ((round = 0; round < rounds; ++round)); do
    "$native" "$work" "$photo" >>"$folder/$work.linux"
    windows "$work" "$photo" | tr -d '\r' >>"$folder/$work.windows"
  done
  awk -v work="$work" -v linux="$(median "$work.linux")" -v windows="$(median "$work.windows")" \
    'BEGIN { printf "%s %.1f %.1f %.2f\n", work, linux, windows, windows / linux }'
done
