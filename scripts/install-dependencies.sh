#!/usr/bin/env bash
# Installs the Debian packages lumvik needs. Packages that are installed already are left alone; if none is missing, the
# network is not used.
#
#   scripts/install-dependencies.sh SET...
#
#   --build         `cmake --preset release`
#   --test          scripts/test.sh (with --build --fuzz)
#   --fuzz          scripts/fuzz.sh (with --build)
#   --bench         bench/compare-commands.sh (with --build)
#   --pictures      scripts/make-doc-pictures.sh (with --build)
#   --package       scripts/package.sh (with --build)
#   --bare-system   scripts/test-on-bare-system.sh, scripts/test-packages.sh and scripts/test-portable.sh
#   --linux         scripts/package-linux.sh (with --build)
#   --windows       scripts/build-windows.sh (with --build)
#   --windows-test  scripts/test-windows.sh (with --build --windows)
set -euo pipefail

build_packages=(
  g++                      # the compiler: C++17
  cmake                    # presets of version 5 need 3.25
  ninja-build              # the generator of every preset
  pkg-config               # finds LibRaw, libexif and Little CMS
  ccache                   # makes another build directory or another run cheap
  libopencv-core-dev       # matrices and worker threads
  libopencv-imgproc-dev    # filters and geometry
  libopencv-imgcodecs-dev  # reads and writes JPEG, PNG, TIFF, BMP, WebP
  libraw-dev               # reads camera RAW files
  libexif-dev              # reads EXIF and writes the EXIF block of an exported JPEG
  liblcms2-dev             # color profiles
  libcli11-dev             # command-line options
  nlohmann-json3-dev       # settings files
  libjpeg-dev              # checks of JPEG files
  libpng-dev               # PNG files of previews, masks and histograms
  libxxhash-dev            # fingerprints of files, digests; header-only
  libexiv2-dev             # metadata of exported images, XMP files
  libgtest-dev             # the tests, which are part of a release build
  libgmock-dev             # matchers for the tests
  libbenchmark-dev         # the benchmarks
)
test_packages=(
  clang-format  # formatting
  clang-tidy    # static analysis
  doxygen       # the API reference
  python3       # checks of wording and documents
  abigail-tools # check of the binary interface
  valgrind      # counts instructions
)
bench_packages=(
  libraw-bin # LibRaw's own command
)
picture_packages=(
  imagemagick  # scales and combines the pictures in the documents
)
package_packages=(
  dpkg-dev # finds the packages a library depends on
  git      # time of the commit
  file     # finds the binaries to strip
)
bare_system_packages=(
  debootstrap # makes the bare system
  gpg         # the key of Ubuntu's releases
  git         # clones the tree into it
)
static_packages=(
  dpkg-dev    # unpacks Debian's source packages
  nasm        # SIMD code of the JPEG library
  googletest  # GoogleTest as source
  python3     # makes the relink kit
)
linux_packages=(
  "${static_packages[@]}"
  debian-archive-keyring  # signature of the oldest supported system
  valgrind                # counts the instructions of a start
  xz-utils                # makes the package
)
windows_packages=(
  "${static_packages[@]}"
  g++-mingw-w64-x86-64-posix  # the cross compiler, with std::thread
  llvm                        # import libraries that Microsoft's linker reads
  zip                         # makes the package
)
windows_test_packages=(
  wine      # runs Windows programs
  wine64    # 64-bit ones
  mono-mcs  # C# compiler, for a host in C#
  clang     # hosts for Microsoft's ABI
  lld       # links them
  unzip     # unpacks the package
)
fuzz_packages=(
  clang           # the compiler that has libFuzzer
  libclang-rt-dev # runtimes of the sanitizers, the fuzzer and the coverage, which clang only recommends
  llvm            # coverage reports, symbols in the reports of the sanitizers
)

sets=()
for argument in "$@"; do
  case $argument in
    --build) sets+=("${build_packages[@]}") ;;
    --test) sets+=("${test_packages[@]}") ;;
    --bench) sets+=("${bench_packages[@]}") ;;
    --pictures) sets+=("${picture_packages[@]}") ;;
    --package) sets+=("${package_packages[@]}") ;;
    --bare-system) sets+=("${bare_system_packages[@]}") ;;
    --fuzz) sets+=("${fuzz_packages[@]}") ;;
    --linux) sets+=("${linux_packages[@]}") ;;
    --windows) sets+=("${windows_packages[@]}") ;;
    --windows-test) sets+=("${windows_test_packages[@]}") ;;
    *)
      echo "usage:" >&2
      sed -n 's/^#   /  /p' "$0" >&2
      exit 2
      ;;
  esac
done

if ! command -v apt-get >/dev/null; then
  echo "Not a Debian system; assuming that the equivalents of these packages are installed: ${sets[*]}" >&2
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
