#!/usr/bin/env bash
# Builds lumvik for Windows x86-64 on Debian, installing first what that takes: lumvik.dll, its import library
# lumvik.dll.a and lumvik.exe in build/windows, and a zip of them with the headers, the files for CMake and
# pkg-config, and the licenses of the libraries that are linked in.
#
#   scripts/build-windows.sh
#
# These libraries take longer to build than lumvik itself. They are kept in $LUMVIK_WINDOWS_CACHE, by default
# build/windows-cache, under a key that changes with everything they are built from.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
# shellcheck source-path=SCRIPTDIR source=static-prefix.sh
source "$ROOT/scripts/static-prefix.sh"

BUILD=$ROOT/build/windows
CACHE=${LUMVIK_WINDOWS_CACHE:-$ROOT/build/windows-cache}

step "Packages"
"$ROOT/scripts/install-dependencies.sh" --build --windows

static_prefix windows "$CACHE"

# strip and zip store the time: the same bytes need the same time.
export SOURCE_DATE_EPOCH=946684800 # the year 2000
step "Build"
cmake -S "$ROOT" -B "$BUILD" -G Ninja --toolchain "$ROOT/cmake/MingwW64.cmake" -D CMAKE_BUILD_TYPE=Release \
  -D CMAKE_INSTALL_LIBDIR=lib \
  -D CMAKE_FIND_ROOT_PATH="$prefix" -D CMAKE_CROSSCOMPILING_EMULATOR=wine
cmake --build "$BUILD" --target lumvik lumvik_cli

step "Package"
version=$(sed -n 's/^project(lumvik VERSION \([0-9.]*\).*/\1/p' "$ROOT/CMakeLists.txt")
name=lumvik-$version-windows-x86_64
stage=$BUILD/package/$name
rm -rf "$BUILD/package"
cmake --install "$BUILD" --prefix "$stage" --strip >/dev/null
mkdir -p "$stage/licenses"
cp "$prefix"/licenses/*.txt "$prefix/versions.txt" "$stage/licenses"
for package in gcc-mingw-w64-base mingw-w64-common libcli11-dev nlohmann-json3-dev libxxhash-dev; do
  cp "/usr/share/doc/$package/copyright" "$stage/licenses/$package.txt"
done
# The same bytes every time: one timestamp, one order, no owners.
find "$stage" -exec touch -h -d "@$SOURCE_DATE_EPOCH" {} +
(cd "$BUILD/package" && find "$name" -type f | LC_ALL=C sort | TZ=UTC zip -q -X -@ "$name.zip")
ls -l "$stage/bin" "$BUILD/package/$name.zip"
