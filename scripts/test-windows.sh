#!/usr/bin/env bash
# Builds lumvik for Windows and runs its tests under Wine, installing first what that takes.
#
#   scripts/test-windows.sh [CTEST OPTION...]
#
# tests/windows/not_run.txt lists the tests that are not run, with the reason.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

BUILD=$ROOT/build/windows

"$ROOT/scripts/install-dependencies.sh" --build --windows --windows-test
"$ROOT/scripts/build-windows.sh"

step "Tests: build"
cmake --build "$BUILD"

# Windows programs run without address space randomization: Wine maps a page that it shares with them at a fixed address,
# and one process in thousands, whose heap is there already, dies without a message.
fixed=(setarch --addr-no-randomize)

# A separate Wine prefix. The debugger is disabled, since with it a crashed test exits with 0; in the C locale Wine does
# not find files with non-ASCII names.
export WINEPREFIX=$BUILD/wine WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml,winedbg.exe=' LC_ALL=C.UTF-8

step "Wine"
mkdir -p "$WINEPREFIX"
"${fixed[@]}" wineserver --persistent # starting it for each test would cost more than the test
trap 'wineserver --kill' EXIT
"${fixed[@]}" wine wineboot --init # the first program would otherwise wait for its services, beyond the time limit of a test

step "Tests"
tests=$("${fixed[@]}" ctest --test-dir "$BUILD" -N | sed -n 's/^ *Test *#[0-9]*: //p')
mapfile -t not_run < <(grep '^[^#]' "$ROOT/tests/windows/not_run.txt")
for pattern in "${not_run[@]}"; do
  grep -qx -- "$pattern" <<<"$tests" || fail "tests/windows/not_run.txt: no such test: $pattern"
done
excluded=$(IFS='|' && echo "${not_run[*]}")
"${fixed[@]}" ctest --test-dir "$BUILD" --output-on-failure --no-tests=error -E "^($excluded)\$" "$@"

"$ROOT/scripts/check-windows-package.sh"
"$ROOT/scripts/windows-figures.sh" --check

# Renders must equal those of the native build: LibRaw and the engine compute tables with the C library's math functions,
# but differences in the last bit must not affect a pixel.
step "Renders against the native build"
configure release "$ROOT/build/release"
cmake --build "$ROOT/build/release" --target lumvik_cli

# compare NAME [OPTION...]
compare() {
  local name=$1 photo=$ROOT/samples/sample_small.ARW
  shift
  "$ROOT/build/release/apps/lumvik/lumvik" develop "$photo" -o "$BUILD/$name-linux.png" --bits 16 "$@"
  "${fixed[@]}" wine "$BUILD/bin/lumvik.exe" develop "$photo" -o "$BUILD/$name-windows.png" --bits 16 "$@"
  echo "$name: $("${fixed[@]}" wine "$BUILD/bin/compare_pictures.exe" "$BUILD/$name-"{linux,windows}.png)"
}

typical=(--exposure 0.5 --contrast 20 --highlights -30 --shadows 25 --vibrance 16 --saturation 5 --clarity 15
  --sharpening-amount 40 --sharpening-radius 1)
everything=("${typical[@]}" --tint 10 --brightness 10 --whites -10 --blacks 10
  --tone-curve "0,0 0.25,0.2 0.5,0.5 0.75,0.8 1,1" --texture 15 --dehaze 20
  --hsl "red=27,-15,9" --hsl "orange=21.6,-12,7.2" --hsl "yellow=16.2,-9,5.4" --hsl "green=10.8,-6,3.6"
  --hsl "aqua=5.4,-3,1.8" --hsl "blue=0,0,0" --hsl "purple=-5.4,3,-1.8" --hsl "magenta=-10.8,6,-3.6"
  --split-highlights "40,20" --split-shadows "220,14" --split-balance 10 --nr-luminance 25 --nr-color 25
  --distortion 10 --ca-correction 30 --lens-vignette 30 --defringe 30 --rotation 1.5 --perspective-h 10
  --crop "0.02,0.02,0.96,0.96" --vignette-amount 20 --grain-amount 20)
compare default
compare typical "${typical[@]}"
compare everything "${everything[@]}"

# Debian has no .NET that runs under Wine, so the binding runs natively.
step "Hosts in C#, with the native build"
cmake --build "$ROOT/build/release" --target lumvik_host lumvik_metadata
"$ROOT/tests/csharp/run.sh" "$ROOT" "$ROOT/build/release"
