#!/usr/bin/env bash
# Fails if a program or library in the archive for Linux needs more than glibc 2.31 and GCC 10's C++ library, exports
# more than its interface, depends on the folder it is in, or is larger or slower to start than its bounds.
#
#   scripts/check-portable.sh TREE
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

(($# == 1)) || fail "usage: scripts/check-portable.sh TREE"
tree=$1

# The newest versions in Debian 11 and Ubuntu 20.04.
declare -A newest=([GLIBC]=2.31 [GLIBCXX]=3.4.28 [CXXABI]=1.3.12 [GCC]=7.0.0)
system='(libc|libm)\.so\.6|libpthread\.so\.0|libdl\.so\.2|ld-linux-x86-64\.so\.2|libstdc\+\+\.so\.6|libgcc_s\.so\.1'

# `lumvik --version` under valgrind: about 6 ms. The time itself depends on the load.
max_start_instructions=21000000

check_versions() {
  local symbol version
  while IFS=_ read -r symbol version; do
    [[ -v newest[$symbol] ]] || fail "$1 needs an unknown version: ${symbol}_$version"
    [[ $(printf '%s\n' "$version" "${newest[$symbol]}" | sort -V | tail -n 1) == "${newest[$symbol]}" ]] ||
      fail "$1 needs ${symbol}_$version, which is newer than ${newest[$symbol]}"
  done < <(objdump -T "$1" | sed -nE 's/.*\((GLIBC|[A-Z]+)_([0-9.]+)\).*/\1_\2/p' | sort -u)
}

check_needed() {
  local allowed=$system
  [[ $1 != */bin/lumvik ]] || allowed+='|liblumvik_host\.so\.1'
  [[ $1 != */liblumvik_host.so* ]] || allowed+='|liblumvik\.so\.1'
  ! objdump -p "$1" | sed -n 's/^ *NEEDED *//p' | grep -vxE "$allowed" || fail "$1 needs these libraries"
  ! objdump -p "$1" | sed -nE 's/^ *(RPATH|RUNPATH) *//p' | grep -v '^\$ORIGIN' || fail "$1 searches in these folders"
}

# check_exports FILE COUNT PATTERN
check_exports() {
  local names
  names=$(nm -D --defined-only "$1" | cut -d ' ' -f 3)
  ! grep -vE "$3" <<<"$names" || fail "$1 exports these names"
  [[ $(wc -l <<<"$names") == "$2" ]] || fail "$1 does not export $2 names"
}

mapfile -t binaries < <(find "$tree" -type f -exec sh -c 'head -c 4 "$1" | grep -q ELF' sh {} \; -print | sort)
((${#binaries[@]} == 4)) || fail "not the command, the two libraries and the module: ${binaries[*]}"
for binary in "${binaries[@]}"; do
  check_versions "$binary"
  check_needed "$binary"
  ! readelf -S "$binary" | grep -qE '\.(symtab|debug_info)' || fail "$binary is not stripped"
done
check_exports "$tree/lib/liblumvik.so" 68 '^lumvik_[a-z0-9_]+$'
check_exports "$tree/lib/liblumvik_host.so" 73 '^lumvik_host_[a-z0-9_]+$'
check_exports "$tree/lib/lumvik/liblumvik_metadata.so" 1 '^lumvik_metadata_'
"$ROOT/scripts/check-footprint.sh" "$tree" "$ROOT/tests/install/footprint_archive.txt"
start=$(valgrind --tool=callgrind --callgrind-out-file=/dev/null "$tree/bin/lumvik" --version 2>&1 >/dev/null |
  sed -n 's/.*Collected : //p')
[[ $start ]] || fail "valgrind counted nothing"
((start <= max_start_instructions)) || fail "a start takes $start instructions, more than $max_start_instructions"

echo "$tree needs glibc ${newest[GLIBC]} and the C++ library of GCC 10, and nothing else. A start takes $start instructions."
