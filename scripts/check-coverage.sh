#!/usr/bin/env bash
# Prints the line coverage of src/ by file, after the tests have run in the checked build as scripts/test.sh runs them.
# Fails below the required minimum.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

MINIMUM=95 # percent of the lines
BUILD=$ROOT/build/checked

llvm-profdata merge -o "$BUILD/tests.profdata" "$BUILD"/profiles/*.profraw
# All test programs contain the same objects; the shared library is covered by its hosts.
objects=("$BUILD"/tests/*_tests)
llvm-cov report "${objects[0]}" "${objects[@]/#/-object=}" -object="$BUILD/src/liblumvik.so" \
  -instr-profile="$BUILD/tests.profdata" -show-region-summary=false -show-branch-summary=false "$ROOT/src" |
  tee "$BUILD/coverage.txt"
awk -v minimum=$MINIMUM '$1 == "TOTAL" { share = $NF + 0 } END { exit !(share >= minimum) }' "$BUILD/coverage.txt" ||
  fail "line coverage is below $MINIMUM %"
