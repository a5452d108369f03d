#!/usr/bin/env bash
# Checks the package that scripts/build-windows.sh made: what is in it, how its binaries are protected and described, and
# that programs link with it. These are built for Microsoft's ABI with clang and lld, and for MinGW, and run under Wine.
#
#   scripts/check-windows-package.sh
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

PACKAGE=$ROOT/build/windows/package
TESTS=$ROOT/tests/install/windows
export WINEPREFIX=${WINEPREFIX:-$ROOT/build/windows/wine}
export WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml,winedbg.exe=' LC_ALL=C.UTF-8

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
version=$(sed -n 's/^project(lumvik VERSION \([0-9.]*\).*/\1/p' "$ROOT/CMakeLists.txt")
name=lumvik-$version-windows-x86_64
unzip -q "$PACKAGE/$name.zip" -d "$folder"
cd "$folder/$name"

step "Files"
binaries=(bin/lumvik.dll bin/lumvik_host.dll bin/lumvik/lumvik_metadata.dll bin/lumvik.exe)
for file in "${binaries[@]}" lib/lumvik{,_host}.{def,lib} include/lumvik{,_host}.{h,hpp} README.txt \
  lib/cmake/lumvik/lumvik-config.cmake lib/pkgconfig/lumvik{,_host}.pc share/lumvik/utf8.manifest \
  licenses/{NOTICES,versions,opencv,libraw,exiv2,common/LGPL-2.1,common/GPL-2}.txt; do
  [[ -s $file ]] || fail "$file is missing"
done
! grep -rl /usr/share/common-licenses . || fail "a license refers to a file of Debian"
! grep -rlaF -e "$ROOT" -e "${LUMVIK_WINDOWS_CACHE:-$ROOT}" . || fail "a file contains a path of this machine"
mapfile -t with_exiv2 < <(grep -rlaE --include='*.dll' --include='*.exe' 'N5Exiv2' .)
[[ ${with_exiv2[*]} == ./bin/lumvik/lumvik_metadata.dll ]] || fail "Exiv2, under the GPL, is in: ${with_exiv2[*]}"

for binary in "${binaries[@]}"; do
  imports=$(llvm-readobj --coff-imports "$binary" | sed -n 's/^  Name: //p')
  others=$(grep -vxiE '(ADVAPI32|KERNEL32|msvcrt|PSAPI|SHELL32|WS2_32|lumvik|lumvik_host)\.dll' <<<"$imports" || true)
  [[ -n $imports && -z $others ]] || fail "$binary imports:" $others
done

# Protection that the toolchain has; README.txt names what it has not.
step "Protection"
for binary in "${binaries[@]}"; do
  headers=$(llvm-readobj --file-headers "$binary")
  for flag in DYNAMIC_BASE HIGH_ENTROPY_VA NX_COMPAT; do
    grep -q "IMAGE_DLL_CHARACTERISTICS_$flag " <<<"$headers" || fail "$binary: no $flag"
  done
  ! grep -q 'BaseRelocationTableSize: 0x0$' <<<"$headers" || fail "$binary cannot be relocated"
  grep -q 'TimeDateStamp: 2000-01-01' <<<"$headers" || fail "$binary contains the time of the build"
done

step "Debug symbols"
unzip -q "$PACKAGE/$name-debug.zip" -d "$folder"
for binary in "${binaries[@]}"; do
  ! llvm-readobj --sections "$binary" | grep 'Name: .debug_info' || fail "$binary is not stripped"
  # Found through the link in the binary, which has no symbols itself.
  symbols=$(x86_64-w64-mingw32-nm "$binary.debug")
  function=$(llvm-readobj --coff-exports "$binary" | sed -n '0,/^  Name: /s/^  Name: //p')
  address=0x$(sed -n "s/ T ${function:-main}\$//p" <<<"$symbols")
  line=$(x86_64-w64-mingw32-addr2line --exe "$binary" "$address")
  [[ $line =~ ^(\./)+(src|host|apps)/.*\.cpp:[0-9]+ ]] || fail "$binary: the source of ${function:-main} is $line"
  grep -q ' T __stack_chk_fail$' <<<"$symbols" || fail "$binary has no stack protector"
  ! grep -aqF -e "$ROOT" -e "${LUMVIK_WINDOWS_CACHE:-$ROOT}" "$binary.debug" ||
    fail "$binary.debug contains a path of this machine"
done

step "Version resources"
run() {
  setarch -R wine "$@"
}
x86_64-w64-mingw32-gcc-posix -std=c11 -municode -static "$TESTS/file_version.c" -lversion -o "$folder/file_version.exe"
for binary in "${binaries[@]}"; do
  type=2 # a DLL
  [[ $binary != *.exe ]] || type=1
  resource=$(run "$folder/file_version.exe" "$binary" | tr -d '\r')
  expected="$version.0 type $type language 0409 code page 1200"$'\n'"FileDescription: Photo-development engine"
  [[ $resource == "$expected"* ]] || fail "$binary: not '$expected' but '$resource'"
  for line in "FileVersion: $version" "OriginalFilename: ${binary##*/}" "ProductName: lumvik" \
    "ProductVersion: $version"; do
    grep -qxF "$line" <<<"$resource" || fail "$binary: no '$line' in '$resource'"
  done
done

step "Hosts for Microsoft's ABI"
mkdir "$folder/tools"
ln -s "$(command -v clang)" "$folder/tools/clang-cl" # clang takes its role from its name
PATH=$folder/tools:$PATH cmake -S "$TESTS" -B "$folder/host" -G Ninja --toolchain "$TESTS/clang_cl.cmake" \
  -D CMAKE_PREFIX_PATH="$PWD" >/dev/null
cmake --build "$folder/host"
for library in host lumvik; do
  run "$folder/host/$library/uses_$library.exe" || fail "the host for Microsoft's ABI that links lumvik::$library failed"
done
# Merged as Microsoft's tool does; CMake calls llvm's in a way that this version does not support.
manifest=$folder/host/CMakeFiles/uses_host.dir/embed.manifest
llvm-mt /manifest "$manifest" /manifest share/lumvik/utf8.manifest "/out:$folder/merged.manifest"
for element in requestedExecutionLevel activeCodePage; do
  grep -q "$element" "$folder/merged.manifest" || fail "no $element in the merged manifest"
done

step "A host for MinGW"
read -ra flags <<<"$(PKG_CONFIG_LIBDIR=$PWD/lib/pkgconfig pkg-config --cflags --libs lumvik_host)"
x86_64-w64-mingw32-gcc-posix "$ROOT/examples/c/host_inspect.c" "${flags[@]}" -static -o bin/host_inspect.exe
run bin/host_inspect.exe "$ROOT/samples/sample_small.ARW" >"$folder/inspected" || fail "the host for MinGW failed"
grep -q whole "$folder/inspected" || fail "the sample seems damaged: $(<"$folder/inspected")"

step "The command"
run bin/lumvik.exe develop "$ROOT/samples/sample_small.ARW" -o "$folder/developed.jpg"
grep -qaF 'FE 24-105mm F4 G OSS' "$folder/developed.jpg" || fail "the developed image has no metadata"
