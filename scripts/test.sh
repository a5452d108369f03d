#!/usr/bin/env bash
# Builds and checks everything, installing first what that takes: layout, the reference's comments, binary interface,
# static analysis, and all tests, once with AddressSanitizer and UndefinedBehaviorSanitizer and once as shipped.
#
#   scripts/test.sh         all of that
#   scripts/test.sh --all   and the thread tests with ThreadSanitizer
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

with_tsan=false
case ${1:-} in
  '') ;;
  --all) with_tsan=true ;;
  *) fail "usage: scripts/test.sh [--all]" ;;
esac

run_tests() {
  ctest --test-dir "$1" --output-on-failure --no-tests=error "${@:2}"
}

step "Packages"
"$ROOT/scripts/install-dependencies.sh" --build --test

step "Layout"
"$ROOT/scripts/check-format.sh"

step "Reference of the interface"
"$ROOT/scripts/build-docs.sh"

step "Release build"
configure release "$ROOT/build/release"
cmake --build "$ROOT/build/release"

step "Binary interface"
"$ROOT/scripts/check-abi.sh"

step "Static analysis"
"$ROOT/scripts/check-tidy.sh"

# One build for both sanitizers, with little optimisation and line numbers only: a quarter of the compile time of
# the presets asan and ubsan one after the other.
step "Tests with AddressSanitizer and UndefinedBehaviorSanitizer"
configure asan "$ROOT/build/asan-ubsan" -D LUMVIK_SANITIZE=address,undefined \
  -D CMAKE_CXX_FLAGS_RELWITHDEBINFO="-O1 -g1"
cmake --build "$ROOT/build/asan-ubsan"
# A size beyond all memory gets a null, as it does without the sanitizer: broken files ask LibRaw for such sizes.
ASAN_OPTIONS=allocator_may_return_null=1 run_tests "$ROOT/build/asan-ubsan"

if $with_tsan; then
  # OpenCV is not built with ThreadSanitizer: only the tests of our own threading tell anything.
  step "Thread tests with ThreadSanitizer"
  configure tsan "$ROOT/build/tsan"
  cmake --build "$ROOT/build/tsan"
  run_tests "$ROOT/build/tsan" -R Thread
fi

step "Tests of the release build"
run_tests "$ROOT/build/release"
