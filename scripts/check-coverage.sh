#!/usr/bin/env bash
# Prints how many lines of src/ the tests reach, file by file, after they ran in the build with the sanitizers. Fails
# below the share that is held.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

LEAST=95  # percent of the lines

gcovr --root "$ROOT" --filter "$ROOT/src/" --fail-under-line "$LEAST" -j "$JOBS" "$ROOT/build/asan-ubsan"
