# shellcheck shell=bash disable=SC2034
# Sourced by scripts/static-dependencies.sh: what is particular to Windows.

toolchain=$ROOT/cmake/MingwW64.cmake
libexif_macros=()
# LibRaw and its users must see the same macros, or the classes differ.
libraw_macros="-DLIBRAW_NODLL -DLIBRAW_WIN32_UNICODEPATHS"
libraw_libraries=-lws2_32
expat_macros=()
exiv2_libraries="-lpsapi -lws2_32 -lshell32"
# OpenCV looks for pthread.h on UNIX only.
opencv_options=(-D HAVE_PTHREAD=1 -DWITH_{DIRECTX,DSHOW,MSMF,WIN32UI}=OFF)

system_packages=(musl:musl)

build_system_libraries() {
  ln -sfn "$ROOT/scripts/windows-math" "$SOURCES/windows-math"
  cmake_library glibc_math windows-math -D MUSL="$SOURCES/musl"
}

prepare_system() {
  :
}
