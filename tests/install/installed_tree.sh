#!/usr/bin/env bash
# Installs a build into an empty folder, moves the tree and builds and runs hosts against it there.
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

# Hosts must not depend on the libraries that the engine uses, nor on the folders of the build and the first install.
! grep -rniE "opencv|libraw|raw_r|libexif|lcms|$folder/first|$build" "$libdir/cmake" "$libdir/pkgconfig" ||
  fail "an installed file points hosts to what they do not need"

# The default generator may need a program that nothing else here does.
CMAKE_GENERATOR=$(sed -n 's/^CMAKE_GENERATOR:INTERNAL=//p' "$build/CMakeCache.txt")
export CMAKE_GENERATOR
export CMAKE_PREFIX_PATH=$folder/tree PKG_CONFIG_PATH=$libdir/pkgconfig
[[ $(pkg-config --modversion lumvik) == "$version" ]] || fail "the version in lumvik.pc is not $version"
"$source/tests/install/examples.sh" "$source/examples" "$source/samples/sample_small.ARW" "$folder/hosts"

command=$folder/tree/bin/lumvik
if [[ -e $command ]]; then
  [[ $("$command" --version) == "lumvik $version" ]] || fail "the version of the installed command is not $version"
  "$command" develop "$source/samples/sample_small.ARW" -o "$folder/out.jpg" --no-exif --exposure 0.5 --contrast 20 \
    --temperature 6500
  cmp "$folder/out.jpg" "$folder/hosts/develop_c.jpg" || fail "the command and a host gave different images"
  "$source/tests/install/manual.sh" "$folder/tree"
fi
