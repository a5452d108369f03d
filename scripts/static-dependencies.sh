#!/usr/bin/env bash
# Builds the libraries lumvik needs as static libraries, for Windows or for the archive for Linux, both on x86-64, from
# Debian's source packages, in the same versions as the native packages if the archive still has them.
#
#   scripts/static-dependencies.sh windows|linux PREFIX
#
# scripts/static-windows.sh and scripts/static-linux.sh hold what differs. PREFIX is created only once it is complete.
# After a failure the downloaded sources are reused.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
# shellcheck source-path=SCRIPTDIR source=debian-archive.sh
source "$ROOT/scripts/debian-archive.sh"

(($# == 2)) || fail "usage: scripts/static-dependencies.sh windows|linux PREFIX"
SYSTEM=$1
PREFIX=$(realpath -m -- "$2")
WORK=$PREFIX.work
OUT=$WORK/prefix
SOURCES=$WORK/sources

[[ -e $ROOT/scripts/static-$SYSTEM.sh ]] || fail "unknown system: $SYSTEM"
# shellcheck source=/dev/null
source "$ROOT/scripts/static-$SYSTEM.sh"

CCACHE=$(command -v ccache || true)
export CCACHE_BASEDIR=$WORK # hits for another PREFIX too
# The optimization of Debian, and no path of this machine, so that the bytes do not depend on the folder.
FLAGS="-O2 -DNDEBUG -ffile-prefix-map=$WORK=."

# SOURCE:BINARY, where BINARY is a package of that source that the native build has installed.
packages=(
  zlib:zlib1g
  libjpeg-turbo:libjpeg62-turbo
  libpng1.6:libpng16-16
  libwebp:libwebp7
  tiff:libtiff6
  lcms2:liblcms2-2
  libexif:libexif12
  libraw:libraw20
  expat:libexpat1
  exiv2:libexiv2-27
  opencv:libopencv-core-dev
  "${system_packages[@]}"
)

# fetch SOURCE PACKAGE: the installed version, or the newest that can be downloaded, since the index of a mirror may list
# versions whose files it does not have.
fetch() {
  local version
  [[ ! -d $SOURCES/$1 ]] || return 0
  for version in $(dpkg-query -W -f '${source:Version}' "$2") \
    $(apt-cache "${apt_options[@]}" showsrc "$1" | sed -n 's/^Version: //p' | sort -rVu); do
    (cd "$SOURCES" && apt-get "${apt_options[@]}" source --only-source "$1=$version") &>>"$WORK/fetch.log" || continue
    echo "$1 $version" | tee "$SOURCES/$1.version"
    mv "$SOURCES/$1"-*/ "$SOURCES/$1"
    return
  done
  tail -n 20 "$WORK/fetch.log" >&2
  fail "no source of $1"
}

# cmake_library NAME FOLDER [CMAKE OPTION...]
cmake_library() {
  # OpenCV's error texts contain source file names; as in Debian's build, they are relative to its tree. Some libraries
  # contain the install prefix, so it is always the same. ccache makes paths relative to the build folder.
  local flags="$FLAGS -ffile-prefix-map=$SOURCES/$2=. -ffile-prefix-map=../../sources/$2=."
  step "$1"
  cmake -S "$SOURCES/$2" -B "$WORK/build/$1" -G Ninja --toolchain "$toolchain" \
    -D CMAKE_BUILD_TYPE=Release -D CMAKE_C_FLAGS_RELEASE="$flags" -D CMAKE_CXX_FLAGS_RELEASE="$flags" \
    -D CMAKE_C_COMPILER_LAUNCHER="$CCACHE" -D CMAKE_CXX_COMPILER_LAUNCHER="$CCACHE" \
    -D CMAKE_FIND_ROOT_PATH="$OUT" -D CMAKE_INSTALL_PREFIX=/lumvik -D CMAKE_INSTALL_LIBDIR:STRING=lib \
    -D BUILD_SHARED_LIBS=OFF -Wno-dev --no-warn-unused-cli "${@:3}" >"$WORK/$1.log"
  # OpenCV would include the date, the machine and the folder.
  find "$WORK/build/$1" -name version_string.inc -exec sed -i 's/.*/""/' {} +
  cmake --build "$WORK/build/$1" >>"$WORK/$1.log" || { tail -n 40 "$WORK/$1.log" >&2; fail "$1 does not build"; }
  DESTDIR=$OUT cmake --install "$WORK/build/$1" --prefix / >>"$WORK/$1.log"
}

# plain_library NAME FOLDER "FLAGS" FILE...: for sources whose build system does not support the compiler.
plain_library() {
  local name=$1 folder=$2/static flags=$3
  shift 3
  mkdir -p "$SOURCES/$folder"
  cat >"$SOURCES/$folder/CMakeLists.txt" <<END
cmake_minimum_required(VERSION 3.25)
project($name C CXX)
add_library($name STATIC $(printf '"%s" ' "$@"))
target_compile_options($name PRIVATE -w $flags)
install(TARGETS $name ARCHIVE DESTINATION lib)
END
  cmake_library "$name" "$folder"
}

# pkg_config NAME VERSION "LIBRARIES" "FLAGS"
pkg_config() {
  mkdir -p "$OUT/lib/pkgconfig"
  cat >"$OUT/lib/pkgconfig/$1.pc" <<END
prefix=\${pcfiledir}/../..
Name: $1
Description: $1, static
Version: $2
Libs: -L\${prefix}/lib $3
Cflags: -I\${prefix}/include $4
END
}

headers() {
  local folder=$OUT/include/$1
  shift
  mkdir -p "$folder"
  cp "$@" "$folder"
}

rm -rf "$WORK"/{build,prefix}
mkdir -p "$SOURCES" "$OUT/licenses"
prepare_system
step "Sources"
index_sources "$WORK/apt"
for package in "${packages[@]}"; do
  fetch "${package%:*}" "${package#*:}"
  cp "$SOURCES/${package%:*}/debian/copyright" "$OUT/licenses/${package%:*}.txt"
done
cat "$SOURCES"/*.version >"$OUT/versions.txt"

plain_library z zlib "" "$SOURCES"/zlib/*.c
headers . "$SOURCES"/zlib/{zlib,zconf}.h

cmake_library libjpeg-turbo libjpeg-turbo -D ENABLE_SHARED=OFF -D WITH_TURBOJPEG=OFF -D REQUIRE_SIMD=ON
cmake_library libpng1.6 libpng1.6 -D PNG_SHARED=OFF -D PNG_TESTS=OFF -D PNG_EXECUTABLES=OFF
cmake_library libwebp libwebp -DWEBP_BUILD_{ANIM_UTILS,CWEBP,DWEBP,GIF2WEBP,IMG2WEBP,VWEBP,WEBPINFO,WEBPMUX,EXTRAS}=OFF
cmake_library tiff tiff -Dtiff-{tools,tests,contrib,docs}=OFF -D cxx=OFF \
  -D libdeflate=OFF -D jbig=OFF -D lerc=OFF -D lzma=OFF -D webp=OFF -D zstd=OFF

plain_library lcms2 lcms2 "-I$SOURCES/lcms2/include" "$SOURCES"/lcms2/src/*.c
headers . "$SOURCES"/lcms2/include/*.h
# `register` is an error in C++17.
pkg_config lcms2 2.14 -llcms2 -DCMS_NO_REGISTER_KEYWORD

mkdir -p "$WORK/libexif-config"
printf '#define %s\n' 'GETTEXT_PACKAGE "libexif-12"' 'LOCALEDIR ""' "${libexif_macros[@]}" >"$WORK/libexif-config/config.h"
echo '#include <stdint.h>' >"$SOURCES/libexif/libexif/_stdint.h"
plain_library exif libexif "-I$SOURCES/libexif -I$WORK/libexif-config" "$SOURCES"/libexif/libexif/{.,*}/*.c
headers libexif "$SOURCES"/libexif/libexif/*.h
pkg_config libexif 0.6.24 -lexif ""

mapfile -t libraw_sources < <(
  find "$SOURCES/libraw/src" -name '*.cpp' ! -name '*_ph.cpp' ! -name libraw_cxx.cpp | sort)
plain_library raw_r libraw \
  "-std=c++11 -D_USE_MATH_DEFINES -I$SOURCES/libraw -I$OUT/include -DUSE_JPEG -DUSE_JPEG8 -DUSE_LCMS2 $libraw_macros" \
  "${libraw_sources[@]}"
headers libraw "$SOURCES"/libraw/libraw/*.h
pkg_config libraw_r 0.20.2 "-lraw_r -llcms2 -ljpeg $libraw_libraries" "$libraw_macros -DCMS_NO_REGISTER_KEYWORD"

# Expat's CMake files define XML_DTD without a value, which Debian's patches compare with 1.
mkdir -p "$WORK/expat-config"
printf '#define %s\n' 'XML_DTD 1' 'XML_NS 1' 'XML_CONTEXT_BYTES 1024' 'BYTEORDER 1234' 'HAVE_MEMMOVE 1' \
  "${expat_macros[@]}" >"$WORK/expat-config/expat_config.h"
plain_library expat expat/expat "-I$WORK/expat-config" "$SOURCES"/expat/expat/lib/xml{parse,role,tok}.c
headers . "$SOURCES"/expat/expat/lib/expat{,_external}.h

cmake_library exiv2 exiv2 -DEXIV2_BUILD_{SAMPLES,EXIV2_COMMAND}=OFF -D EXIV2_ENABLE_BMFF=ON
pkg_config exiv2 0.27.6 "-lexiv2 -lexiv2-xmp -lexpat -lz $exiv2_libraries" ""

# If memory is exhausted while work is distributed to its threads, OpenCV would keep a lock and the next call deadlock.
pool=$SOURCES/opencv/modules/core/src/parallel_impl.cpp
release='catch (...) { pthread_mutex_unlock(\&mutex); throw; }'
sed -i -E "s/^( *)(reconfigure_\(num_threads - 1\);|job = Ptr<ParallelJob>\(.*\);)$/\1try { \2 } $release/" "$pool"
[[ $(grep -c 'try .* catch' "$pool") == 2 ]] || fail "OpenCV's pool of threads is unknown"
cmake_library opencv opencv -D BUILD_LIST=core,imgproc,imgcodecs \
  -D CPU_BASELINE=SSE2 -D CPU_BASELINE_DISABLE=SSE3 -D ENABLE_PRECOMPILED_HEADERS=OFF \
  -D WITH_PTHREADS_PF=ON -D OPENCV_GENERATE_PKGCONFIG=OFF \
  -DWITH_{1394,ADE,EIGEN,FFMPEG,GDAL,GDCM,GSTREAMER,IPP,ITT,JASPER,LAPACK,OPENCL,OPENEXR,OPENJPEG,PROTOBUF,QUIRC}=OFF \
  -DBUILD_{ZLIB,JPEG,PNG,TIFF,WEBP,OPENJPEG,OPENEXR,JASPER}=OFF \
  -DBUILD_{TESTS,PERF_TESTS,EXAMPLES,opencv_apps,JAVA}=OFF \
  -DOPENCV_{LIB,LIB_ARCHIVE,3P_LIB}_INSTALL_PATH=lib -D OPENCV_CONFIG_INSTALL_PATH=lib/cmake/opencv4 "${opencv_options[@]}"
grep -q 'Parallel framework: *pthreads' "$WORK/opencv.log" || fail "OpenCV was configured without threads"

build_system_libraries

step "Headers and tests"
cp -r /usr/include/{CLI,nlohmann,xxhash.h} "$OUT/include"
mkdir -p "$OUT/share/cmake"
cp -r /usr/share/cmake/{CLI11,nlohmann_json} "$OUT/share/cmake"
ln -sfn /usr/src/googletest "$SOURCES/googletest"
cmake_library googletest googletest

# The only absolute paths left.
grep -rlF "$OUT" "$OUT/lib" --include='*.cmake' | xargs -r sed -i "s|$OUT|\${_IMPORT_PREFIX}|g"

rm -rf "$PREFIX"
mkdir -p "$(dirname "$PREFIX")"
mv "$OUT" "$PREFIX"
rm -rf "$WORK"
