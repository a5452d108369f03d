#!/usr/bin/env bash
# Fails if the binary interface of a library of the release build, which must be up to date, differs from the recorded
# one, tests/api/lumvik.abi or tests/host/lumvik_host.abi: functions added or removed, signatures or record layouts
# changed. Types that a header only declares, such as EngineContext, may change.
#
#   scripts/check-abi.sh            check
#   scripts/check-abi.sh --update   record the interfaces that an intended change altered
#
# BUILD names a folder other than build/release.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

build=${BUILD:-$ROOT/build/release}
libraries=(src/liblumvik.so host/liblumvik_host.so)
interfaces=(tests/api/lumvik.abi tests/host/lumvik_host.abi)

# Leaves out what differs between machines and between builds.
describe() {
  abidw --headers-dir "$ROOT/include" --drop-private-types --exported-interfaces-only --no-architecture \
    --no-corpus-path --no-comp-dir-path --no-show-locs --short-locs --no-elf-needed "$build/$1"
}

case ${1:-} in
  '' | --update) ;;
  *) fail "usage: scripts/check-abi.sh [--update]" ;;
esac
for i in "${!libraries[@]}"; do
  recorded=$ROOT/${interfaces[i]}
  actual=$build/$(basename "$recorded")
  describe "${libraries[i]}" >"$actual"
  if [[ ${1:-} != --update ]]; then
    abidiff "$recorded" "$actual" || fail "the interface differs from ${interfaces[i]}"
  elif [[ ! -e $recorded ]] || ! abidiff "$recorded" "$actual"; then
    cp "$actual" "$recorded"
  fi
done
