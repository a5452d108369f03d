#!/usr/bin/env bash
# Installs a build into an empty folder, moves the tree and lets hosts use it there.
#
#   installed_tree.sh BUILD SOURCE VERSION
set -euo pipefail

build=$1
source=$2
version=$3
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

fail() {
  echo "$*" >&2
  exit 1
}

cmake --install "$build" --prefix "$folder/first" >/dev/null
mv "$folder/first" "$folder/tree"
config=$(find "$folder/tree" -name lumvik-config.cmake)
libdir=$(dirname "$config")/../..

# What the engine is made with is its own affair, and neither folder is where the tree is now.
! grep -rniE "opencv|libraw|raw_r|libexif|lcms|$folder/first|$build" "$libdir/cmake" "$libdir/pkgconfig" ||
  fail "an installed file leads hosts to what they do not need"

export CMAKE_PREFIX_PATH=$folder/tree PKG_CONFIG_PATH=$libdir/pkgconfig
[[ $(pkg-config --modversion lumvik) == "$version" ]] || fail "lumvik.pc has another version than $version"
"$source/tests/install/examples.sh" "$source/examples" "$source/samples/sample_small.ARW" "$folder/hosts"

command=$folder/tree/bin/lumvik
if [[ -e $command ]]; then
  [[ $("$command" --version) == "lumvik $version" ]] || fail "the installed command has another version"
  "$command" develop "$source/samples/sample_small.ARW" -o "$folder/out.jpg" --no-exif --exposure 0.5 --contrast 20 \
    --temperature 6000
  cmp "$folder/out.jpg" "$folder/hosts/develop_c.jpg" || fail "the command and a host develop differently"
  "$source/tests/install/manual.sh" "$folder/tree"
fi
