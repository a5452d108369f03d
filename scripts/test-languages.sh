#!/usr/bin/env bash
# Tests misuses of the host library from languages that the test suite does not require: Node.js.
#
#   scripts/test-languages.sh [BUILD]   with the host library of this build (build/release)
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

BUILD=$(realpath "${1:-$ROOT/build/release}")
KOFFI=2.9.0
command -v node npm >/dev/null || fail "needs Node.js and npm"
[[ -e $BUILD/host/liblumvik_host.so ]] || fail "$BUILD holds no host library"

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cp "$ROOT/tests/host/languages/misuse.mjs" "$scratch"
cd "$scratch"
npm install --no-save --no-fund --no-audit --silent "koffi@$KOFFI"
node misuse.mjs "$BUILD/host/liblumvik_host.so" "$ROOT/tests/data/no_thumb.dng"
