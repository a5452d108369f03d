#!/usr/bin/env bash
# Builds and checks everything, installing first what that takes: formatting, the API reference, the binary interface,
# instruction counts, reproducible bytes, static analysis, all tests with AddressSanitizer and
# UndefinedBehaviorSanitizer and again as shipped, line coverage, a short run of the fuzz targets, and the thread tests
# with ThreadSanitizer.
#
#   scripts/test.sh
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

(($# == 0)) || fail "usage: scripts/test.sh"

# configure_tests PRESET: in build/PRESET, with many test cases per process.
configure_tests() {
  configure "$1" "$ROOT/build/$1" -D LUMVIK_PROCESS_PER_CASE=OFF
}

run_tests() {
  ctest --test-dir "$1" --output-on-failure --no-tests=error "${@:2}"
}

step "Packages"
"$ROOT/scripts/install-dependencies.sh" --build --test --fuzz

step "Formatting"
"$ROOT/scripts/check-format.sh"
"$ROOT/scripts/check-words.py"

step "API reference"
"$ROOT/scripts/build-docs.sh"

step "Release build"
configure_tests release
cmake --build "$ROOT/build/release"

step "Binary interface"
"$ROOT/scripts/check-abi.sh"

step "Instruction counts"
"$ROOT/scripts/check-speed.sh"

step "Reproducible build"
"$ROOT/scripts/check-reproducible.sh"

step "Static analysis"
"$ROOT/scripts/check-tidy.sh"

# One build for both sanitizers, coverage and the fuzz targets, by a different compiler than the release.
step "Tests with AddressSanitizer and UndefinedBehaviorSanitizer"
configure_tests checked
cmake --build "$ROOT/build/checked"
rm -rf "$ROOT/build/checked/profiles"
# Broken files make LibRaw request huge buffers: malloc must return null for them, as it does without the sanitizer.
ASAN_OPTIONS=allocator_may_return_null=1 LLVM_PROFILE_FILE=$ROOT/build/checked/profiles/%4m.profraw \
  run_tests "$ROOT/build/checked"

step "Line coverage"
"$ROOT/scripts/check-coverage.sh"

step "Fuzzing, one minute per target"
"$ROOT/scripts/fuzz.sh"

# OpenCV is not built with ThreadSanitizer, so only our own threading can be tested with it.
step "Thread tests with ThreadSanitizer"
configure tsan "$ROOT/build/tsan" -D CMAKE_CXX_FLAGS_RELWITHDEBINFO="-O1 -g1"
cmake --build "$ROOT/build/tsan" --target api_tests host_tests
run_tests "$ROOT/build/tsan" -R '^(ThreadTest|PhotoThreadTest|PostTest|QualityTest|TurnLockTest)\.'

step "Tests of the release build"
run_tests "$ROOT/build/release"
