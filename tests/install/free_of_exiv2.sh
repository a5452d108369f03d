#!/usr/bin/env bash
# Fails if a binary contains Exiv2 or needs its library: its license would apply to every host. Exiv2 lives in a namespace
# of this name, so that the names of its types are in every binary that contains it, stripped or not.
#
#   free_of_exiv2.sh MODULE BINARY...
#
# MODULE is the metadata module, for which both must be found.
set -euo pipefail

fail() {
  echo "$*" >&2
  exit 1
}

# needed BINARY: the libraries that it needs; for ELF and PE.
needed() {
  objdump -p "$1" | sed -nE 's/^\s*(NEEDED|DLL Name:)\s*//p'
}

uses_exiv2() {
  grep -aq '5Exiv2' "$1" || [[ $(needed "$1") == *[Ee]xiv2* ]]
}

(($# > 1)) || fail "usage: free_of_exiv2.sh MODULE BINARY..."
for binary in "$@"; do
  [[ -n $(needed "$binary") ]] || fail "$binary is not a shared binary"
done
uses_exiv2 "$1" || fail "$1 does not use Exiv2: this test sees nothing"
for binary in "${@:2}"; do
  ! uses_exiv2 "$binary" || fail "$binary uses Exiv2"
done
