#!/usr/bin/env bash
# Fails if a library, the module or the command built here differs from one built from a copy of the tree in another
# folder, or contains the path of that folder. The copy is compiled without ccache, which could reuse the objects of the first build.
#
#   scripts/check-reproducible.sh
#
# BUILD names a folder other than build/release.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

(($# == 0)) || fail "usage: scripts/check-reproducible.sh"

build=${BUILD:-$ROOT/build/release}
files=(src/liblumvik.so host/liblumvik_host.so host/lumvik/liblumvik_metadata.so apps/lumvik/lumvik)
targets=(lumvik lumvik_host lumvik_metadata lumvik_cli)

configure release "$build"
cmake --build "$build" --target "${targets[@]}"

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
mkdir "$folder/copy"
cp -r "$ROOT"/{CMakeLists.txt,CMakePresets.json,apps,cmake,host,include,src} "$folder/copy"
cmake -S "$folder/copy" --preset release -B "$folder/build" -D LUMVIK_BUILD_TESTS=OFF -D LUMVIK_BUILD_BENCH=OFF >/dev/null
CCACHE_DISABLE=1 cmake --build "$folder/build" --target "${targets[@]}"

for file in "${files[@]}"; do
  sha256sum "$build/$file" "$folder/build/$file"
  cmp "$build/$file" "$folder/build/$file" || fail "$file depends on the folder it is built in"
  ! grep -qF "$folder" "$folder/build/$file" || fail "$file contains the path of the folder it was built in"
done
