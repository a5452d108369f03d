#!/usr/bin/env bash
# Fails if clang-format would change a file; with --fix, changes it.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

mode=(--dry-run --Werror)
[[ ${1:-} == --fix ]] && mode=(-i)

cd "$ROOT"
find . \( -path ./build -o -name '.?*' \) -prune -o \( -name '*.[ch]' -o -name '*.[ch]pp' -o -name '*.inc' \) -print0 |
  xargs -0 -P "$JOBS" -n 16 clang-format "${mode[@]}"
