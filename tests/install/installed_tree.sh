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
! grep -rniE "opencv|libraw|raw_r|libexif|exiv2|lcms|libpng|libjpeg|$folder/first|$build" "$libdir/cmake" \
  "$libdir/pkgconfig" || fail "an installed file points hosts to what they do not need"

# Exiv2's license would apply to every host of a library that links it: only the module does, and nothing links that.
needs_exiv2() {
  ldd "$1" | grep -q libexiv2
}
for library in lumvik lumvik_host; do
  ! needs_exiv2 "$libdir/lib$library.so" || fail "lib$library.so links exiv2"
done
needs_exiv2 "$libdir/lumvik/liblumvik_metadata.so" || fail "the metadata module does not link exiv2"

# The default generator may need a program that nothing else here does.
CMAKE_GENERATOR=$(sed -n 's/^CMAKE_GENERATOR:INTERNAL=//p' "$build/CMakeCache.txt")
export CMAKE_GENERATOR
export CMAKE_PREFIX_PATH=$folder/tree PKG_CONFIG_PATH=$libdir/pkgconfig
for library in lumvik lumvik_host; do
  [[ $(pkg-config --modversion $library) == "$version" ]] || fail "the version in $library.pc is not $version"
done
unset LUMVIK_MODULES # the module must be found where it is installed
"$source/tests/install/examples.sh" "$source/examples" "$source/samples/sample_small.ARW" "$folder/hosts"

command=$folder/tree/bin/lumvik
if [[ -e $command ]]; then
  [[ $("$command" --version) == "lumvik $version" ]] || fail "the version of the installed command is not $version"
  "$command" develop "$source/samples/sample_small.ARW" -o "$folder/out.jpg" --no-exif --exposure 0.5 --contrast 20
  # The command leaves its mark in the header.
  image_bytes=$(($(stat -c %s "$folder/hosts/develop_c.jpg") - 1000))
  cmp <(tail -c "$image_bytes" "$folder/out.jpg") <(tail -c "$image_bytes" "$folder/hosts/develop_c.jpg") ||
    fail "the command and a host gave different images"
  "$source/tests/install/manual.sh" "$folder/tree"
fi
