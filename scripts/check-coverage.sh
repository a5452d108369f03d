#!/usr/bin/env bash
# Prints the line coverage of src/ and host/ by file, after the tests have run in the checked build as scripts/test.sh runs them.
# Fails below the required minimum.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

MINIMUM=95 # percent of the lines
BUILD=$ROOT/build/checked

llvm-profdata merge -o "$BUILD/tests.profdata" "$BUILD"/profiles/*.profraw
# All test programs of a library contain the same objects; the shared libraries and the module are covered by their
# hosts.
objects=("$BUILD"/tests/*_tests "$BUILD/tests/host/host_tests")
llvm-cov report "${objects[0]}" "${objects[@]/#/-object=}" -object="$BUILD/src/liblumvik.so" -object="$BUILD/host/liblumvik_host.so" \
  -object="$BUILD/host/lumvik/liblumvik_metadata.so" \
  -instr-profile="$BUILD/tests.profdata" -show-region-summary=false -show-branch-summary=false "$ROOT"/{src,host} |
  tee "$BUILD/coverage.txt"
awk -v minimum=$MINIMUM '$1 == "TOTAL" { share = $NF + 0 } END { exit !(share >= minimum) }' "$BUILD/coverage.txt" ||
  fail "line coverage is below $MINIMUM %"
