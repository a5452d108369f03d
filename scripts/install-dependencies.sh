#!/usr/bin/env bash
# Installs the Debian packages lumvik needs; those already there are left alone, and when none is missing
# nothing is asked of the network.
#
#   scripts/install-dependencies.sh --build          what `cmake --preset release` needs
#   scripts/install-dependencies.sh --build --test --fuzz   and what scripts/test.sh calls besides
#   scripts/install-dependencies.sh --pictures       what scripts/make-doc-pictures.sh calls besides
#   scripts/install-dependencies.sh --package        what scripts/package.sh and scripts/test-packages.sh call
#   scripts/install-dependencies.sh --build --fuzz   or what scripts/fuzz.sh does
#   scripts/install-dependencies.sh --build --windows [--windows-test]
#                                                    what the scripts for Windows call
set -euo pipefail

build_packages=(
  g++                      # the compiler: C++17
  cmake                    # presets of version 5 need 3.25
  ninja-build              # the generator of every preset
  pkg-config               # finds LibRaw, libexif and Little CMS
  ccache                   # a second build directory or a second run costs little
  libopencv-core-dev       # matrices and worker threads
  libopencv-imgproc-dev    # filters and geometry
  libopencv-imgcodecs-dev  # reads and writes JPEG, PNG, TIFF, BMP, WebP
  libraw-dev               # reads camera RAW files
  libexif-dev              # reads EXIF and writes the block kept in an exported JPEG
  liblcms2-dev             # color profiles
  libcli11-dev             # the command line's options
  nlohmann-json3-dev       # settings files
  libpng-dev               # the command line: PNG files of previews, masks and histograms
  libexiv2-dev             # the command line: metadata of written pictures, XMP files
  libgtest-dev             # the tests: a release build holds them
  libgmock-dev             # the tests' matchers
  libbenchmark-dev         # the benchmarks
)
test_packages=(
  clang-format  # the check of the layout
  clang-tidy    # the static analysis
  doxygen       # the reference of the interface, which is to be made without a warning
  python3       # the checks of words and documents
  abigail-tools # the check of the binary interface
)
picture_packages=(
  imagemagick  # scales the pictures of the documents and puts them side by side
)
package_packages=(
  dpkg-dev     # finds the packages that a library needs
  git          # knows the time of the commit
  file         # tells programs and libraries from other files
  debootstrap  # the bare system that the packages are tried in
)
windows_packages=(
  g++-mingw-w64-x86-64-posix  # the cross compiler, of the kind that has std::thread
  dpkg-dev                    # unpacks Debian's source packages
  nasm                        # the JPEG library's vector code
  googletest                  # the tests' library in source
  zip                         # packs what was built
)
windows_test_packages=(
  wine      # runs programs of Windows
  wine64    # those of 64 bits
  mono-mcs  # the C# compiler, for a host in C#
)
fuzz_packages=(
  clang  # the compiler with the fuzzer, libFuzzer
  llvm   # counts the lines that the tests reach, and gives the sanitizers' reports their names
)

sets=()
for argument in "$@"; do
  case $argument in
    --build) sets+=("${build_packages[@]}") ;;
    --test) sets+=("${test_packages[@]}") ;;
    --pictures) sets+=("${picture_packages[@]}") ;;
    --package) sets+=("${package_packages[@]}") ;;
    --fuzz) sets+=("${fuzz_packages[@]}") ;;
    --windows) sets+=("${windows_packages[@]}") ;;
    --windows-test) sets+=("${windows_test_packages[@]}") ;;
    *)
      sed -n 's/^#   /usage: /p' "$0" >&2
      exit 2
      ;;
  esac
done

if ! command -v apt-get >/dev/null; then
  echo "Not a Debian system: the counterparts of these packages are taken to be installed: ${sets[*]}" >&2
  exit 0
fi

missing=()
for package in "${sets[@]}"; do
  [[ $(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null) == installed ]] || missing+=("$package")
done
((${#missing[@]})) || exit 0

as_root=()
if ((EUID != 0)); then
  command -v sudo >/dev/null || { echo "Run as root or install sudo; missing: ${missing[*]}" >&2; exit 1; }
  as_root=(sudo)
fi

apt_get() {
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get -q -o Acquire::Retries=3 -o DPkg::Lock::Timeout=300 "$@" </dev/null
}

echo "Installing: ${missing[*]}"
apt_get update
apt_get install -y --no-install-recommends "${missing[@]}"
