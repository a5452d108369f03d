#!/usr/bin/env bash
# Unpacks what a compiler needs to build for Debian 11, whose C library, glibc 2.31, is the oldest that the archive for
# Linux supports: headers and libraries for C and C++. cmake/PortableLinux.cmake compiles with them.
#
#   scripts/linux-sysroot.sh FOLDER
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
# shellcheck source-path=SCRIPTDIR source=debian-archive.sh
source "$ROOT/scripts/debian-archive.sh"

(($# == 1)) || fail "usage: scripts/linux-sysroot.sh FOLDER"
sysroot=$(realpath -m -- "$1")
packages=(libc6 libc6-dev linux-libc-dev libgcc-s1 libgcc-10-dev libstdc++6 libstdc++-10-dev)

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
index_release "$work/apt" bullseye
mkdir "$work/packages"
(cd "$work/packages" && apt-get "${apt_options[@]}" download "${packages[@]/%/:amd64}")
mkdir -p "$sysroot"
for package in "$work"/packages/*.deb; do
  dpkg-deb --extract "$package" "$sysroot"
done

# Only the libraries of that compiler are used: its own headers belong to its built-in functions, and its profiling and
# sanitizer libraries to its instrumentation.
compiler=$sysroot/usr/lib/gcc/x86_64-linux-gnu/10
rm -r "$compiler"/{include,lib{asan,gcov,gomp,lsan,tsan,ubsan}*} "$sysroot/usr/share"
