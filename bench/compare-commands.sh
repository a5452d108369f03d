#!/usr/bin/env bash
# Measures whole processes on 24-megapixel ARW files: `lumvik develop` to JPEG in alternation with LibRaw's `dcraw_emu`,
# which does the same processing and writes nothing; `lumvik batch` in alternation with that of another build; and the
# peak memory of a load. Installs dcraw_emu (libraw-bin) if it is missing.
#
#   bench/compare-commands.sh [OTHER_LUMVIK]
#
# OTHER_LUMVIK is the command of another build. ROUNDS (5) and FILES (6, the photos of a batch) can be set. BUILD names
# a folder other than build/release, which must be up to date.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=../scripts/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/../scripts/common.sh"

(($# <= 1)) || fail "usage: bench/compare-commands.sh [OTHER_LUMVIK]"

build=${BUILD:-$ROOT/build/release}
lumvik=$build/apps/lumvik/lumvik
other=${1:-}
rounds=${ROUNDS:-5}
files=${FILES:-6}

command -v dcraw_emu >/dev/null || "$ROOT/scripts/install-dependencies.sh" --bench

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
mkdir "$folder/photos"
"$build/bench/lumvik_write_raw" "$folder/photos/1.arw"
for ((i = 2; i <= files; ++i)); do
  cp "$folder/photos/1.arw" "$folder/photos/$i.arw"
done

# timed NAME COMMAND...: appends wall and CPU time in seconds to the file NAME.
timed() {
  local name=$1 TIMEFORMAT='%R %U %S'
  shift
  { time "$@" >/dev/null 2>"$folder/messages"; } 2>"$folder/time" || { cat "$folder/messages" >&2; fail "failed: $*"; }
  awk '{ print $1, $2 + $3 }' "$folder/time" >>"$folder/$name"
}

# median NAME FIELD: of the wall (1) or CPU (2) times.
median() {
  awk -v field="$2" '{ print $field }' "$folder/$1" | sort -g | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'
}

# report TEXT NAME REFERENCE: the medians of both, and their ratios.
report() {
  awk -v text="$1" -v wall="$(median "$2" 1)" -v cpu="$(median "$2" 2)" -v wall0="$(median "$3" 1)" \
    -v cpu0="$(median "$3" 2)" 'BEGIN {
      printf "%s: wall %.2f s against %.2f s, ratio %.2f; CPU %.2f s against %.2f s, ratio %.2f\n",
        text, wall, wall0, wall / wall0, cpu, cpu0, cpu / cpu0 }'
}

develop() {
  rm -f "$folder/out.jpg"
  timed "$1" "$2" develop "$folder/photos/1.arw" -o "$folder/out.jpg"
}

batch() {
  rm -rf "$folder/out"
  timed "$1" "$2" batch --jobs 2 -o "$folder/out" "$folder/photos"
}

for ((round = 0; round < rounds; ++round)); do
  timed dcraw_emu dcraw_emu -w -o 1 -q 3 -W -6 -g 2.4 12.92 -Z - "$folder/photos/1.arw"
  develop develop "$lumvik"
  if [[ $other ]]; then
    develop other_develop "$other"
    batch other_batch "$other"
    batch batch "$lumvik"
  fi
done

report "lumvik develop against dcraw_emu" develop dcraw_emu
if [[ $other ]]; then
  report "lumvik develop against the other build" develop other_develop
  report "lumvik batch --jobs 2 of $files files against the other build" batch other_batch
fi
for quality in 1 2 4; do
  "$build/bench/lumvik_raw_memory" "$folder/photos/1.arw" "$quality"
done
