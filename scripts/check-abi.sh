#!/usr/bin/env bash
# Fails when the binary interface of the release build, which must be up to date, is not the one written down in
# tests/api/lumvik.abi: a function that comes, goes or takes something else, a record whose layout changes. Types
# that lumvik.h only names, such as EngineContext, may change.
#
#   scripts/check-abi.sh            checks
#   scripts/check-abi.sh --update   writes it down anew, for a change that is meant
#
# BUILD names another folder than build/release.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

build=${BUILD:-$ROOT/build/release}
interface=$ROOT/tests/api/lumvik.abi

# What differs from machine to machine and from build to build is left out.
describe() {
  abidw --headers-dir "$ROOT/include" --drop-private-types --exported-interfaces-only --no-architecture \
    --no-corpus-path --no-comp-dir-path --no-show-locs --short-locs --no-elf-needed "$build/src/liblumvik.so"
}

case ${1:-} in
  '')
    describe >"$build/lumvik.abi"
    abidiff "$interface" "$build/lumvik.abi" || fail "the interface is not that of ${interface#"$ROOT"/}"
    ;;
  --update) describe >"$interface" ;;
  *) fail "usage: scripts/check-abi.sh [--update]" ;;
esac
