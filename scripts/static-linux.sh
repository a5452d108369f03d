# shellcheck shell=bash disable=SC2034
# Sourced by scripts/static-dependencies.sh: what is particular to Linux.

toolchain=$ROOT/cmake/PortableLinux.cmake
libexif_macros=(HAVE_LOCALTIME_R)
libraw_macros=
libraw_libraries=-lm
expat_macros=('HAVE_GETRANDOM 1')
exiv2_libraries=-lpthread
opencv_options=()
system_packages=()

build_system_libraries() {
  :
}

prepare_system() {
  step "Headers and libraries of the oldest supported system"
  "$ROOT/scripts/linux-sysroot.sh" "$OUT/sysroot"
}
