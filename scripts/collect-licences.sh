#!/usr/bin/env bash
# Collects the licenses of everything that a static build of lumvik contains.
#
#   scripts/collect-licences.sh PREFIX FOLDER
#
# PREFIX holds the static libraries, the copyright file of each in licenses/, and versions.txt. FOLDER, which is replaced,
# gets NOTICES.txt, a file for each component, and in common/ the licenses that these files refer to. The same prefix
# gives the same bytes. Fails if a library has no license.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

(($# == 2)) || fail "usage: scripts/collect-licences.sh PREFIX FOLDER"
PREFIX=$(realpath -- "$1")
FOLDER=$(realpath -m -- "$2")
export LC_ALL=C

# component_of ARCHIVE: the source package of a static library; nothing for one that is only in the tests.
component_of() {
  case $1 in
    libexif.a) echo libexif ;;
    libexiv2.a | libexiv2-xmp.a) echo exiv2 ;;
    libexpat.a) echo expat ;;
    libglibc_math.a) echo musl ;;
    libjpeg.a) echo libjpeg-turbo ;;
    liblcms2.a) echo lcms2 ;;
    libopencv_*.a) echo opencv ;;
    libpng.a | libpng16.a) echo libpng1.6 ;;
    libraw_r.a) echo libraw ;;
    libtiff.a) echo tiff ;;
    libwebp*.a) echo libwebp ;;
    libz.a) echo zlib ;;
    libgtest*.a | libgmock*.a) ;;
    *) fail "$1 is unknown: which license does it have?" ;;
  esac
}

# version_of COMPONENT [PACKAGE]
version_of() {
  local version
  version=$(sed -n "s/^$1 //p" "$PREFIX/versions.txt")
  [[ -n $version || -z ${2:-} ]] || version=$(dpkg-query -W -f '${Version}' "$2")
  [[ -n $version ]] || fail "no version of $1 in $PREFIX/versions.txt"
  echo "$version"
}

# add COMPONENT FILE [PACKAGE]: the license and the version. FILE, one of Debian's copyright files, refers to common
# licenses by their path, at times with a full stop after it; scripts/notices has what it leaves out.
add() {
  local component=$1 file=$2 notices=$ROOT/scripts/notices/$1.txt path version
  version=$(version_of "$component" "${3:-}")
  [[ -s $file ]] || fail "no license of $component: $file is missing"
  sed -E "s|$COMMON_PATH|common/\1.txt|g" "$file" >"$FOLDER/$component.txt"
  if [[ -e $notices ]]; then
    printf '\n%s\n\n' "$(printf '=%.0s' {1..80})" | cat - "$notices" >>"$FOLDER/$component.txt"
  fi
  for path in $(grep -oE "$COMMON_PATH" "$file" | sort -u); do
    [[ -s $path ]] || fail "no text of $path, to which the license of $component refers"
    mkdir -p "$FOLDER/common"
    cp "$path" "$FOLDER/common/${path##*/}.txt"
  done
  printf '%-16s %s\n' "$component" "$version" >>"$FOLDER/versions.txt"
}
COMMON_PATH='/usr/share/common-licenses/([A-Za-z0-9.-]*[A-Za-z0-9])'

# add_package COMPONENT PACKAGE: for what comes with the compiler or is a header, unless the prefix has its license.
add_package() {
  local file=$PREFIX/licenses/$1.txt
  [[ -e $file ]] || file=/usr/share/doc/$2/copyright
  add "$1" "$file" "$2"
}

rm -rf "$FOLDER"
mkdir -p "$FOLDER"

mapfile -t archives < <(find "$PREFIX/lib" -name '*.a' ! -name '*.dll.a' -printf '%f\n' | sort -u)
((${#archives[@]})) || fail "$PREFIX/lib holds no static libraries"
components=$(for archive in "${archives[@]}"; do component_of "$archive"; done | sort -u)
for component in $components; do
  add "$component" "$PREFIX/licenses/$component.txt"
done
add_package cli11 libcli11-dev
add_package nlohmann-json3 nlohmann-json3-dev
add_package xxhash libxxhash-dev
if readelf -h "$PREFIX/lib/libz.a" &>/dev/null; then
  add_package gcc libstdc++6
else # built for Windows
  add_package gcc gcc-mingw-w64-base
  add_package mingw-w64 mingw-w64-common
fi
sort -o "$FOLDER/versions.txt" "$FOLDER/versions.txt"

cat - "$FOLDER/versions.txt" >"$FOLDER/NOTICES.txt" <<'END'
lumvik contains the following components, in these versions of Debian's packages. The
license of each is in the file of its name; "common" has the licenses to which these files
refer.

LibRaw and libexif and their use are covered by the GNU Lesser General Public License,
version 2.1, in common/LGPL-2.1.txt. The relink kit, which is offered in the same place as
this software, has their sources and what it takes to link changed versions of them. If
the metadata module is included, it contains Exiv2, which is covered by the GNU General
Public License, version 2 or later; its source is in the relink kit too.

This software is based in part on the work of the Independent JPEG Group.

END
