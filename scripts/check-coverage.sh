#!/usr/bin/env bash
# Prints how many lines of src/ the tests reach, file by file, after they ran in the checked build as scripts/test.sh
# runs them. Fails below the share that is held.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

LEAST=95  # percent of the lines
BUILD=$ROOT/build/checked

llvm-profdata merge -o "$BUILD/tests.profdata" "$BUILD"/profiles/*.profraw
# All tests hold the same objects; only the shared library is another program's.
objects=("$BUILD"/tests/*_tests)
llvm-cov report "${objects[0]}" "${objects[@]/#/-object=}" -object="$BUILD/src/liblumvik.so" \
  -instr-profile="$BUILD/tests.profdata" -show-region-summary=false -show-branch-summary=false "$ROOT/src" |
  tee "$BUILD/coverage.txt"
awk -v least=$LEAST '$1 == "TOTAL" { share = $NF + 0 } END { exit !(share >= least) }' "$BUILD/coverage.txt" ||
  fail "fewer than $LEAST % of the lines"
