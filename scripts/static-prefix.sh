# shellcheck shell=bash
# Sourced by the scripts that link lumvik's libraries statically: builds these once, in a cache.

# static_prefix SYSTEM CACHE: sets prefix to the folder in CACHE that has the libraries for SYSTEM. Its name changes with
# everything they are built from: the scripts, the compiler and the versions that determine the sources.
static_prefix() {
  local system=$1 cache=$2 key
  local -a packages files
  files=("$ROOT"/scripts/{static-dependencies,static-"$system",debian-archive}.sh)
  packages=(nasm libopencv-core-dev libraw20 libexif12 liblcms2-2 libjpeg62-turbo libpng16-16 libwebp7 libtiff6 zlib1g
    libexpat1 libexiv2-27 libcli11-dev nlohmann-json3-dev libxxhash-dev googletest)
  case $system in
    windows)
      files+=("$ROOT/cmake/MingwW64.cmake" "$ROOT"/scripts/windows-math/*)
      packages+=(g++-mingw-w64-x86-64-posix binutils-mingw-w64-x86-64 mingw-w64-x86-64-dev)
      ;;
    linux)
      files+=("$ROOT/cmake/PortableLinux.cmake" "$ROOT/scripts/linux-sysroot.sh")
      packages+=(g++-12 binutils)
      ;;
  esac
  key=$({ cat "${files[@]}"; dpkg-query -W "${packages[@]}"; } | sha256sum | cut -c 1-16)
  prefix=$cache/$key
  step "Libraries: $prefix"
  [[ -d $prefix ]] || "$ROOT/scripts/static-dependencies.sh" "$system" "$prefix"
}

# forget_other_prefix BUILD: drops what CMake has found in another prefix.
forget_other_prefix() {
  [[ ! -e $1/CMakeCache.txt ]] || grep -qxE "CMAKE_FIND_ROOT_PATH:[A-Z]+=$prefix" "$1/CMakeCache.txt" ||
    rm -r "$1/CMakeCache.txt" "$1/CMakeFiles"
}
