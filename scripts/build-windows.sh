#!/usr/bin/env bash
# Builds lumvik for Windows x86-64 on Debian, installing first what that takes: the package, a zip in
# build/windows/package, and its debug symbols, a second one. docs/windows.md lists what is in them.
#
#   scripts/build-windows.sh
#
# The libraries that are linked in take longer to build than lumvik itself. They are kept in $LUMVIK_WINDOWS_CACHE, by
# default build/windows-cache, under a key that changes with everything they are built from.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
# shellcheck source-path=SCRIPTDIR source=static-prefix.sh
source "$ROOT/scripts/static-prefix.sh"

BUILD=$ROOT/build/windows
CACHE=${LUMVIK_WINDOWS_CACHE:-$ROOT/build/windows-cache}

# exiv2, strip and zip store the time: the same bytes need the same time.
export SOURCE_DATE_EPOCH=946684800 # the year 2000

step "Packages"
"$ROOT/scripts/install-dependencies.sh" --build --windows

static_prefix windows "$CACHE"

# Otherwise ccache may make paths relative, which changes the debug symbols.
export CCACHE_BASEDIR=

step "Build"
forget_other_prefix "$BUILD"
cmake -S "$ROOT" -B "$BUILD" -G Ninja --toolchain "$ROOT/cmake/MingwW64.cmake" -D CMAKE_BUILD_TYPE=Release \
  -D CMAKE_INSTALL_LIBDIR=lib \
  -D CMAKE_FIND_ROOT_PATH="$prefix" -D CMAKE_CROSSCOMPILING_EMULATOR=wine
cmake --build "$BUILD" --target lumvik lumvik_host lumvik_metadata lumvik_cli

step "Package"
version=$(sed -n 's/^project(lumvik VERSION \([0-9.]*\).*/\1/p' "$ROOT/CMakeLists.txt")
name=lumvik-$version-windows-x86_64
stage=$BUILD/package/$name
debug=$BUILD/package/debug/$name # unpacked over the package
rm -rf "$BUILD/package"
cmake --install "$BUILD" --prefix "$stage" >/dev/null
"$ROOT/scripts/collect-licences.sh" "$prefix" "$stage/licenses"

# The debug symbols of each binary go to a file next to it in the other zip, where debuggers search for it.
binutils=x86_64-w64-mingw32
find "$stage" -name '*.dll' -o -name '*.exe' | while read -r binary; do
  symbols=$debug/${binary#"$stage"/}.debug
  mkdir -p "$(dirname "$symbols")"
  # Without symbols that are paths, by which nasm names its sources.
  $binutils-objcopy --only-keep-debug --wildcard --strip-symbol='/*' "$binary" "$symbols"
  $binutils-strip "$binary"
  $binutils-objcopy --add-gnu-debuglink="$symbols" "$binary"
  chmod -x "$symbols"
done

# pack FOLDER ZIP: the same bytes every time: one timestamp, one order, no owners.
pack() {
  find "$1" -exec touch -h -d "@$SOURCE_DATE_EPOCH" {} +
  (cd "$(dirname "$1")" && find "$name" -type f | LC_ALL=C sort | TZ=UTC zip -q -X -@ "$BUILD/package/$2")
}
pack "$stage" "$name.zip"
pack "$debug" "$name-debug.zip"
"$ROOT/scripts/package-relink-kit.sh" "$BUILD" "$prefix" "$BUILD/package/$name-relink.tar.xz"
ls -l "$BUILD"/package/*.zip "$BUILD"/package/*.tar.xz
