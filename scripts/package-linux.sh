#!/usr/bin/env bash
# Builds lumvik for any Linux on x86-64 with glibc 2.31 or newer on Debian 12, installing first what that takes: an
# archive in build/portable/package with the command, the two libraries, the metadata module, the headers, the files for
# CMake and pkg-config, and the licenses of the libraries that are linked in. The same commit gives the same bytes.
#
#   scripts/package-linux.sh
#
# These libraries take longer to build than lumvik itself. They are kept in $LUMVIK_LINUX_CACHE, by default
# build/linux-cache, under a key that changes with everything they are built from.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
# shellcheck source-path=SCRIPTDIR source=static-prefix.sh
source "$ROOT/scripts/static-prefix.sh"

(($# == 0)) || fail "usage: scripts/package-linux.sh"
build=$ROOT/build/portable

step "Packages"
"$ROOT/scripts/install-dependencies.sh" --build --linux

static_prefix linux "${LUMVIK_LINUX_CACHE:-$ROOT/build/linux-cache}"

step "Build"
forget_other_prefix "$build"
cmake -S "$ROOT" -B "$build" -G Ninja --toolchain "$ROOT/cmake/PortableLinux.cmake" -D CMAKE_BUILD_TYPE=Release \
  -D CMAKE_FIND_ROOT_PATH="$prefix" -D CMAKE_INSTALL_LIBDIR=lib \
  -D LUMVIK_BUILD_TESTS=OFF -D LUMVIK_BUILD_BENCH=OFF
cmake --build "$build" --target lumvik lumvik_host lumvik_metadata lumvik_cli lumvik_cli_manual

step "Package"
version=$(sed -n 's/^project(lumvik VERSION \([0-9.]*\).*/\1/p' "$ROOT/CMakeLists.txt")
name=lumvik-$version-linux-x86_64
rm -rf "$build/package"
cmake --install "$build" --prefix "$build/package/$name" --strip >/dev/null
"$ROOT/scripts/collect-licences.sh" "$prefix" "$build/package/$name/share/doc/lumvik/licenses"
"$ROOT/scripts/check-portable.sh" "$build/package/$name"
"$ROOT/tests/install/free_of_exiv2.sh" "$build/package/$name"/lib/lumvik/liblumvik_metadata.so \
  "$build/package/$name"/{lib/liblumvik.so,lib/liblumvik_host.so,bin/lumvik}

export SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-$(git -C "$ROOT" log -1 --format=%ct)}
# The same bytes every time: one timestamp, one order, no owners, and one thread, since the number of them affects xz.
tar -C "$build/package" --sort=name --owner=0 --group=0 --numeric-owner --mode=u+w,go-w --mtime="@$SOURCE_DATE_EPOCH" \
  --format=gnu -cf - "$name" | xz -9e --threads=1 >"$build/package/$name.tar.xz"
"$ROOT/scripts/package-relink-kit.sh" "$build" "$prefix" "$build/package/$name-relink.tar.xz"
ls -l "$build/package"/*.tar.xz
