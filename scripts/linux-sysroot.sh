#!/usr/bin/env bash
# Unpacks what it takes to link for Debian 11, whose C library, glibc 2.31, is the oldest that the archive for Linux
# supports. cmake/PortableLinux.cmake compiles and links with it.
#
#   scripts/linux-sysroot.sh FOLDER
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
# shellcheck source-path=SCRIPTDIR source=debian-archive.sh
source "$ROOT/scripts/debian-archive.sh"

(($# == 1)) || fail "usage: scripts/linux-sysroot.sh FOLDER"
sysroot=$(realpath -m -- "$1")
packages=(libc6 libc6-dev linux-libc-dev libgcc-s1 libstdc++6)

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
index_release "$work/apt" bullseye
mkdir "$work/packages"
(cd "$work/packages" && apt-get "${apt_options[@]}" download "${packages[@]/%/:amd64}")
mkdir -p "$sysroot"
for package in "$work"/packages/*.deb; do
  dpkg-deb --extract "$package" "$sysroot"
done
rm -r "$sysroot/usr/share"
find "$sysroot" -lname '/*' -printf '%p %l\n' | while read -r link target; do
  ln -sfnr "$sysroot$target" "$link"
done

# The headers are those of the compiler. The functions that its C++ library has and the older one lacks, such as
# std::to_chars() of floating-point numbers, are linked in.
folder=/usr/lib/x86_64-linux-gnu
cp "$(g++ -print-file-name=libstdc++.a)" "$sysroot$folder/libstdc++_new.a"
echo "INPUT($folder/libstdc++.so.6 $folder/libstdc++_new.a)" >"$sysroot$folder/libstdc++.so"
