#!/usr/bin/env bash
# Builds lumvik for Windows x86-64 on Debian, installing first what that takes: lumvik.dll, its import library
# lumvik.dll.a and lumvik.exe in build/windows, and a zip of them with the header, the files for CMake and
# pkg-config, and the licenses of what is linked in.
#
#   scripts/build-windows.sh
#
# The libraries it is linked with take longer than lumvik itself. They are kept in $LUMVIK_WINDOWS_CACHE, or else
# in build/windows-cache, by a key that changes with anything they are made of.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

BUILD=$ROOT/build/windows
CACHE=${LUMVIK_WINDOWS_CACHE:-$ROOT/build/windows-cache}

step "Packages"
"$ROOT/scripts/install-dependencies.sh" --build --windows

# The recipe, the compiler, and the versions that the recipe goes by.
key=$({
  cat "$ROOT/scripts/windows-dependencies.sh" "$ROOT/cmake/MingwW64.cmake"
  dpkg-query -W g++-mingw-w64-x86-64-posix binutils-mingw-w64-x86-64 mingw-w64-x86-64-dev nasm libopencv-core-dev \
    libraw20 libexif12 liblcms2-2 libjpeg62-turbo libpng16-16 libwebp7 libtiff6 zlib1g libexpat1 libexiv2-27 \
    libcli11-dev nlohmann-json3-dev googletest
} | sha256sum | cut -c 1-16)
prefix=$CACHE/$key

step "Libraries: $prefix"
[[ -d $prefix ]] || "$ROOT/scripts/windows-dependencies.sh" "$prefix"

# Nothing in the files may tell of the folder they were made in, nor of the time, which strip would put there.
export SOURCE_DATE_EPOCH=946684800 # the year 2000
step "Build"
maps="-ffile-prefix-map=$ROOT/=./ -ffile-prefix-map=$prefix/=./" # the last that fits counts
cmake -S "$ROOT" -B "$BUILD" -G Ninja --toolchain "$ROOT/cmake/MingwW64.cmake" -D CMAKE_BUILD_TYPE=Release \
  -D CMAKE_C_FLAGS="$maps" -D CMAKE_CXX_FLAGS="$maps" -D CMAKE_INSTALL_LIBDIR=lib \
  -D CMAKE_FIND_ROOT_PATH="$prefix" -D CMAKE_CROSSCOMPILING_EMULATOR=wine -D LUMVIK_BUILD_BENCH=OFF
cmake --build "$BUILD" --target lumvik lumvik_cli

step "Package"
version=$(sed -n 's/^project(lumvik VERSION \([0-9.]*\).*/\1/p' "$ROOT/CMakeLists.txt")
name=lumvik-$version-windows-x86_64
stage=$BUILD/package/$name
rm -rf "$BUILD/package"
cmake --install "$BUILD" --prefix "$stage" --strip >/dev/null
mkdir -p "$stage/licenses"
cp "$prefix"/licenses/*.txt "$prefix/versions.txt" "$stage/licenses"
for package in gcc-mingw-w64-base mingw-w64-common libcli11-dev nlohmann-json3-dev; do
  cp "/usr/share/doc/$package/copyright" "$stage/licenses/$package.txt"
done
# The same bytes every time: one time stamp, one order, no owners.
find "$stage" -exec touch -h -d "@$SOURCE_DATE_EPOCH" {} +
(cd "$BUILD/package" && find "$name" -type f | LC_ALL=C sort | TZ=UTC zip -q -X -@ "$name.zip")
ls -l "$stage/bin" "$BUILD/package/$name.zip"
