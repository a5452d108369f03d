#!/usr/bin/env bash
# Tests scripts/collect-licences.sh with a prefix of empty libraries and the copyright files of the installed packages.
#
#   collect_licences.sh SOURCE
set -euo pipefail

collect=$1/scripts/collect-licences.sh
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

fail() {
  echo "$*" >&2
  exit 1
}

declare -A package_of=(
  [exiv2]=libexiv2-dev [expat]=libexpat1 [lcms2]=liblcms2-dev [libexif]=libexif-dev
  [libjpeg-turbo]=libjpeg62-turbo [libpng1.6]=libpng16-16 [libraw]=libraw-dev [libwebp]=libwebp7
  [opencv]=libopencv-core-dev [tiff]=libtiff6 [zlib]=zlib1g
)
prefix=$folder/prefix
mkdir -p "$prefix"/{lib,licenses}
echo "int nothing;" | cc -x c -c - -o "$folder/nothing.o"
for name in exif exiv2 exiv2-xmp expat jpeg lcms2 opencv_core png raw_r tiff webp z gtest; do
  ar rc "$prefix/lib/lib$name.a" "$folder/nothing.o"
done
for component in "${!package_of[@]}"; do
  cp "/usr/share/doc/${package_of[$component]}/copyright" "$prefix/licenses/$component.txt"
  echo "$component 1.0" >>"$prefix/versions.txt"
done

"$collect" "$prefix" "$folder/first"
mkdir "$folder/second"
echo stale >"$folder/second/removed.txt" # of an earlier run
"$collect" "$prefix" "$folder/second"
diff -r "$folder/first" "$folder/second" || fail "the same prefix gave different files"
for component in "${!package_of[@]}" cli11 nlohmann-json3 xxhash gcc; do
  [[ -s $folder/first/$component.txt ]] || fail "no license of $component"
  grep -qE "^$component +[0-9]" "$folder/first/NOTICES.txt" || fail "$component is not in NOTICES.txt"
done
! grep -r /usr/share/common-licenses "$folder/first" || fail "a license refers to a file of Debian"
for file in $(grep -rhoE 'common/[A-Za-z0-9.-]+\.txt' "$folder/first"/*.txt | sort -u); do
  [[ -s $folder/first/$file ]] || fail "$file is missing"
done
grep -q 'covered by the GNU Lesser General Public License' "$folder/first/NOTICES.txt" || fail "no notice of the LGPL"
grep -q 'GNU LESSER GENERAL PUBLIC LICENSE' "$folder/first/common/LGPL-2.1.txt" || fail "not the LGPL"
grep -q 'COMMON DEVELOPMENT AND DISTRIBUTION LICENSE' "$folder/first/libraw.txt" || fail "not LibRaw's license"
grep -q 'Roland Karlsson' "$folder/first/libraw.txt" || fail "the notices of LibRaw's parts are missing"

# expect_failure TEXT: the message must contain TEXT.
expect_failure() {
  ! "$collect" "$prefix" "$folder/failed" 2>"$folder/message" || fail "no failure: $1"
  grep -qF "$1" "$folder/message" || fail "instead of '$1': $(cat "$folder/message")"
}
mv "$prefix/licenses/libexif.txt" "$folder"
expect_failure "no license of libexif"
echo "See /usr/share/common-licenses/Unknown-1.0." >"$prefix/licenses/libexif.txt"
expect_failure "no text of /usr/share/common-licenses/Unknown-1.0, to which the license of libexif refers"
mv "$folder/libexif.txt" "$prefix/licenses"
sed -i /^zlib/d "$prefix/versions.txt"
expect_failure "no version of zlib"
echo "zlib 1.0" >>"$prefix/versions.txt"
ar rc "$prefix/lib/libnew.a" "$folder/nothing.o"
expect_failure "libnew.a is unknown"
