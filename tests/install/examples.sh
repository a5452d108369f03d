#!/usr/bin/env bash
# Builds the examples against the lumvik that CMake and pkg-config find, and runs them on a RAW file.
#
#   examples.sh EXAMPLES PHOTO FOLDER
#
# EXAMPLES is the folder examples/ of the tree. Everything is built and written in FOLDER, which must not exist yet. The
# C and the C++ version of an example must give the same bytes.
set -euo pipefail

examples=$1
photo=$2
folder=$3
mkdir "$folder"
cd "$folder"

fail() {
  echo "$*" >&2
  exit 1
}

expect_jpeg() {
  [[ $(head -c 3 "$1" | od -A n -t x1) == " ff d8 ff" ]] || fail "$1 is not a JPEG"
}

expect_same() {
  cmp "$1" "$2" || fail "$1 and $2 differ"
}

cmake -S "$examples" -B build -D CMAKE_BUILD_TYPE=Release >configure.log || fail "$(cat configure.log)"
cmake --build build --parallel "$(nproc)" >build.log || fail "$(cat build.log)"

for language in c cpp; do
  build/develop_$language "$photo" develop_$language.jpg
  build/preview_loop_$language "$photo" >preview_loop_$language.txt
  build/two_threads_$language "$photo" dark_$language.jpg bright_$language.jpg
  build/auto_tools_$language "$photo" auto_tools_$language.jpg >auto_tools_$language.txt
  ! build/develop_$language missing.ARW out.jpg 2>error_$language.txt || fail "a missing photograph was developed"
  build/host_develop_$language "$photo" host_develop_$language.jpg
  build/host_settings_$language look_$language.json >host_settings_$language.txt
  build/host_live_preview_$language "$photo" >host_live_preview_$language.txt 2>/dev/null
  build/host_inspect_$language "$photo" >host_inspect_$language.txt
  ! build/host_inspect_$language missing.ARW >host_error_$language.txt || fail "a missing photograph was inspected"
done
for picture in develop dark bright auto_tools host_develop; do
  expect_jpeg ${picture}_c.jpg
  expect_same ${picture}_c.jpg ${picture}_cpp.jpg
done
for text in preview_loop auto_tools error host_settings host_live_preview host_inspect host_error; do
  [[ -s ${text}_c.txt ]] || fail "${text}_c.txt is empty"
  expect_same ${text}_c.txt ${text}_cpp.txt
done
expect_same look_c.json look_cpp.json
[[ $(tail -n 1 host_settings_c.txt) == "read back: equal" ]] || fail "a settings file gave other settings"
[[ $(tail -n 1 host_inspect_c.txt) == "  whole" ]] || fail "a whole photograph seems damaged"
[[ $(sort -u preview_loop_c.txt | wc -l) == 5 ]] || fail "the five previews do not differ"
! cmp -s dark_c.jpg bright_c.jpg || fail "the two threads wrote the same image"
# The host library found the metadata module, without which nothing is saved with metadata.
grep -qaF 'FE 24-105mm F4 G OSS' host_develop_c.jpg || fail "the developed image has no metadata"

# try_pkg_config LIBRARY EXAMPLE: as with CMake.
try_pkg_config() {
  local library=$1 example=$2 language libdir
  local -a flags
  # Split into separate arguments.
  read -ra flags <<<"$(pkg-config --cflags --libs "$library")"
  [[ $(printf '%s\n' "${flags[@]}" | grep '^-l') == "-l$library" ]] ||
    fail "a host should link only $library: ${flags[*]}"
  cc "$examples/c/$example.c" "${flags[@]}" -o "${example}_by_pkg_config_c"
  c++ -std=c++17 "$examples/cpp/$example.cpp" "${flags[@]}" -o "${example}_by_pkg_config_cpp"
  libdir=$(pkg-config --variable=libdir "$library")
  for language in c cpp; do
    LD_LIBRARY_PATH=$libdir "./${example}_by_pkg_config_$language" "$photo" pkg_config_$language.jpg
    expect_same pkg_config_$language.jpg "${example}_c.jpg"
    rm pkg_config_$language.jpg
  done
}
try_pkg_config lumvik develop
try_pkg_config lumvik_host host_develop
