#!/usr/bin/env bash
# Builds and checks everything, installing first what that takes: layout, the reference's comments, binary interface,
# static analysis, all tests, once with AddressSanitizer and UndefinedBehaviorSanitizer and once as shipped, how many
# lines they reach, the tests of threads with ThreadSanitizer, and a short run of the fuzz targets.
#
#   scripts/test.sh
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

(($# == 0)) || fail "usage: scripts/test.sh"

# configure_tests PRESET [CMAKE OPTION...]: into its own folder, with a process for many cases.
configure_tests() {
  configure "$1" "$ROOT/build/$1" -D LUMVIK_PROCESS_PER_CASE=OFF "${@:2}"
}

run_tests() {
  ctest --test-dir "$1" --output-on-failure --no-tests=error "${@:2}"
}

step "Packages"
"$ROOT/scripts/install-dependencies.sh" --build --test --fuzz

step "Layout"
"$ROOT/scripts/check-format.sh"
"$ROOT/scripts/check-words.py"

step "Reference of the interface"
"$ROOT/scripts/build-docs.sh"

step "Release build"
configure_tests release
cmake --build "$ROOT/build/release"

step "Binary interface"
"$ROOT/scripts/check-abi.sh"

step "Static analysis"
"$ROOT/scripts/check-tidy.sh"

# One build for both sanitizers, the coverage and the fuzz targets, by another compiler than the release's.
step "Tests with AddressSanitizer and UndefinedBehaviorSanitizer"
configure_tests checked
cmake --build "$ROOT/build/checked"
rm -rf "$ROOT/build/checked/profiles"
# A size beyond all memory gets a null, as it does without the sanitizer: broken files ask LibRaw for such sizes.
ASAN_OPTIONS=allocator_may_return_null=1 LLVM_PROFILE_FILE=$ROOT/build/checked/profiles/%4m.profraw \
  run_tests "$ROOT/build/checked"

step "Lines that the tests reach"
"$ROOT/scripts/check-coverage.sh"

step "Fuzz targets, a minute each"
"$ROOT/scripts/fuzz.sh"

# OpenCV is not built with ThreadSanitizer: only the tests of our own threading tell anything.
step "Tests of threads with ThreadSanitizer"
configure tsan "$ROOT/build/tsan" -D CMAKE_CXX_FLAGS_RELWITHDEBINFO="-O1 -g1"
cmake --build "$ROOT/build/tsan" --target api_tests
run_tests "$ROOT/build/tsan" -R '^ThreadTest'

step "Tests of the release build"
run_tests "$ROOT/build/release"
