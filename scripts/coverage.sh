#!/usr/bin/env bash
# Runs all tests with their steps counted, and prints how many lines of src/ they reach, file by file. Installs
# and builds first what that takes; fails below the share that is held.
#
#   scripts/coverage.sh
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

LEAST=95  # percent of the lines
BUILD=$ROOT/build/coverage

"$ROOT/scripts/install-dependencies.sh" --build --coverage
configure coverage "$BUILD"
cmake --build "$BUILD"
find "$BUILD" -name '*.gcda' -delete
ctest --test-dir "$BUILD" --output-on-failure --no-tests=error
gcovr --root "$ROOT" --filter "$ROOT/src/" --exclude-throw-branches --fail-under-line "$LEAST" -j "$JOBS" "$BUILD"
