#!/usr/bin/env bash
# Runs the tests of the C# binding and its example with Mono and a native build.
#
#   tests/csharp/run.sh SOURCE BUILD
set -euo pipefail

source=$1
build=$2
photo=$source/samples/sample_small.ARW
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

fail() {
  echo "$*" >&2
  exit 1
}

# Mono passes file names in the encoding of the locale.
export LC_ALL=C.UTF-8 LD_LIBRARY_PATH=$build/src:$build/host

mapfile -t binding < <(find "$source/examples/csharp" -name '*.cs' ! -name Develop.cs)
mcs -warnaserror -out:"$folder/CSharpTests.exe" "${binding[@]}" "$source"/tests/csharp/*.cs
mono "$folder/CSharpTests.exe" "$source/tests/data/eiffel_gps_north_east.jpg" "$photo"

mcs -warnaserror -out:"$folder/Develop.exe" "${binding[@]}" "$source/examples/csharp/Develop.cs"
cp "$photo" "$folder/été_фото_写真.ARW"
report=$(mono "$folder/Develop.exe" "$folder/été_фото_写真.ARW" "$folder/写真.jpg")
[[ $report == "Sony ILCE-7M3, ISO 100; a preview of 800 x 533" ]] || fail "the example printed: $report"
[[ $(head -c 3 "$folder/写真.jpg" | od -A n -t x1) == " ff d8 ff" ]] || fail "the example wrote no JPEG"
! message=$(mono "$folder/Develop.exe" "$folder/нет.ARW" "$folder/out.jpg" 2>&1) || fail "a missing photo was developed"
[[ $message == "cannot read '$folder/нет.ARW': there is no such file" ]] || fail "the example printed: $message"
