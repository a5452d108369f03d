#!/usr/bin/env bash
# Fails if an installed, stripped program or library is larger or gives the loader more to do than its bounds allow.
# Unlike the time of a start, none of this depends on the machine.
#
#   scripts/check-footprint.sh TREE BOUNDS
#
# BOUNDS has a line for each file in TREE: its name, the largest numbers of bytes, of libraries it links, of relocations
# and of functions that run when it is loaded. Prints the actual numbers.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

(($# == 2)) || fail "usage: scripts/check-footprint.sh TREE BOUNDS"
tree=$1
bounds=$2

# measure FILE: the numbers, in the order of BOUNDS.
measure() {
  local initializers
  initializers=$(readelf -SW "$1" | sed -nE 's/.* \.init_array +[A-Z_]+ +[0-9a-f]+ [0-9a-f]+ ([0-9a-f]+) .*/\1/p')
  stat -Lc %s "$1"
  readelf -dW "$1" | grep -c '(NEEDED)'
  readelf -rW "$1" | grep -cE '^[0-9a-f]{16} '
  echo $((16#${initializers:-0} / 8))
}

names=(bytes libraries relocations initializers)
checked=0
while read -r file limits; do
  [[ -n $file && $file != '#'* ]] || continue
  read -ra limits <<<"$limits"
  ((${#limits[@]} == ${#names[@]})) || fail "$bounds: $file does not have ${#names[@]} bounds"
  [[ -e $tree/$file ]] || fail "there is no $tree/$file"
  mapfile -t actual < <(measure "$tree/$file")
  printf '%s:' "$file"
  for i in "${!names[@]}"; do
    printf '  %s %s (at most %s)' "${actual[i]}" "${names[i]}" "${limits[i]}"
  done
  echo
  for i in "${!names[@]}"; do
    ((actual[i] <= limits[i])) || fail "$file has ${actual[i]} ${names[i]}, more than ${limits[i]}"
  done
  checked=$((checked + 1))
done <"$bounds"
((checked)) || fail "$bounds bounds nothing"
