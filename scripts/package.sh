#!/usr/bin/env bash
# Builds the Debian packages liblumvik1, lumvik-metadata, liblumvik-dev and lumvik in build/package/packages, installing
# first what that takes. The same commit gives the same bytes: all timestamps are those of the commit.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

build=$ROOT/build/package

"$ROOT/scripts/install-dependencies.sh" --build --package
configure package "$build"
cmake --build "$build"

rm -rf "$build/packages"
SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-$(git -C "$ROOT" log -1 --format=%ct)}
export SOURCE_DATE_EPOCH
cd "$build"
cpack -G DEB
rm -rf packages/_CPack_Packages
ls "$build"/packages/*.deb
