#!/usr/bin/env bash
# Fails if the binary interface of the release build, which must be up to date, differs from the one recorded in
# tests/api/lumvik.abi: functions added or removed, signatures or record layouts changed. Types that lumvik.h only
# declares, such as EngineContext, may change.
#
#   scripts/check-abi.sh            check
#   scripts/check-abi.sh --update   record the interface after an intended change
#
# BUILD names a folder other than build/release.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

build=${BUILD:-$ROOT/build/release}
interface=$ROOT/tests/api/lumvik.abi

# Leaves out what differs between machines and between builds.
describe() {
  abidw --headers-dir "$ROOT/include" --drop-private-types --exported-interfaces-only --no-architecture \
    --no-corpus-path --no-comp-dir-path --no-show-locs --short-locs --no-elf-needed "$build/src/liblumvik.so"
}

case ${1:-} in
  '')
    describe >"$build/lumvik.abi"
    abidiff "$interface" "$build/lumvik.abi" || fail "the interface differs from ${interface#"$ROOT"/}"
    ;;
  --update) describe >"$interface" ;;
  *) fail "usage: scripts/check-abi.sh [--update]" ;;
esac
