#!/usr/bin/env bash
# Fails when the shared library exports a name that is not the engine's: what libraries we include leave behind in the
# symbol table would collide with the host's own copies.
#
#   scripts/check-symbols.sh LIBRARY
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

library=${1:?usage: check-symbols.sh LIBRARY}
exported=$(nm --dynamic --defined-only --format=posix "$library" | cut -d ' ' -f 1)
foreign=$(grep -v '^lumvik_' <<<"$exported" || true)
[[ -n $exported ]] || fail "$library exports nothing"
[[ -z $foreign ]] || fail "$library exports more than lumvik_*: $foreign"

# Every exported function is declared in the header.
undeclared=$(comm -23 <(sort <<<"$exported") <(grep -o 'lumvik_[a-z_]*(' "$ROOT/include/lumvik.h" | tr -d '(' | sort))
[[ -z $undeclared ]] || fail "exported but not in lumvik.h: $undeclared"
echo "$(wc -l <<<"$exported") exported functions"
