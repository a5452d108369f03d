#!/usr/bin/env bash
# Fails if RAW decodes or renders take 3 % more or fewer instructions than recorded in bench/instruction_counts.txt.
# Unlike times, counts do not depend on the load or the speed of the machine. They do depend on the compiler and the
# libraries, so the file has a section for each combination; an unknown one is an error on Debian 12, and elsewhere a
# notice. The release build must be up to date.
#
#   scripts/check-speed.sh            check
#   scripts/check-speed.sh --update   record the counts of this combination after an intended change
#
# BUILD names a folder other than build/release.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

readonly TOLERANCE=3 # percent

build=${BUILD:-$ROOT/build/release}
program=$build/bench/lumvik_instruction_counts
recorded=$ROOT/bench/instruction_counts.txt

case ${1:-} in
  '' | --update) ;;
  *) fail "usage: scripts/check-speed.sh [--update]" ;;
esac
[[ -x $program ]] || fail "$program is missing: configure the release build with valgrind installed"

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# count SET: prints lines of set, work and count. callgrind writes a file for each piece of work. The variable limits
# LibRaw's own calls to one thread.
count() {
  local set=$1 environment=(OMP_NUM_THREADS=1)
  # The libraries choose their kernels by the processor, too.
  [[ $set != baseline ]] ||
    environment+=(OPENCV_CPU_DISABLE=AVX2,FMA3,AVX,FP16 GLIBC_TUNABLES=glibc.cpu.hwcaps=-AVX2,-AVX,-FMA)
  env "${environment[@]}" valgrind --quiet --tool=callgrind --instr-atstart=no --callgrind-out-file="$folder/$set" \
    "$program" "$set" >&2
  awk -v set="$set" '
    /^desc: Trigger: Client Request: / { work = $5 }
    /^totals: / && work { print set, work, $2; work = "" }' "$folder/$set".*
}

sets=(baseline)
if grep -qw avx2 /proc/cpuinfo; then
  sets+=(avx2)
else
  echo "This processor lacks AVX2; only the baseline is checked."
fi
for set in "${sets[@]}"; do
  count "$set"
done >"$folder/actual"
[[ -s $folder/actual ]] || fail "nothing was counted"

versions=$("$program" --versions)

# section: the recorded counts of this combination.
section() {
  awk -v header="[$versions]" '/^\[/ { inside = $0 == header; next } inside && NF' "$recorded"
}

if [[ ${1:-} == --update ]]; then
  {
    awk -v header="[$versions]" '/^\[/ { inside = $0 == header } !inside' "$recorded"
    printf '[%s]\n' "$versions"
    # What this processor cannot count stays as it is.
    { section | awk -v sets=" ${sets[*]} " '!index(sets, " " $1 " ")'; cat "$folder/actual"; } | sort
  } >"$folder/updated"
  cp "$folder/updated" "$recorded"
  exit
fi

section >"$folder/recorded"
if [[ ! -s $folder/recorded ]]; then
  message="bench/instruction_counts.txt has no counts for [$versions]; scripts/check-speed.sh --update adds them"
  # shellcheck source=/dev/null
  [[ $(. /etc/os-release && echo "$ID $VERSION_ID") != "debian 12" ]] || fail "$message"
  echo "Not checked: $message"
  exit
fi
awk -v tolerance=$TOLERANCE -v sets=" ${sets[*]} " '
  FNR == NR { if (index(sets, " " $1 " ")) expected[$1 " " $2] = $3; next }
  {
    name = $1 " " $2
    if (!(name in expected)) { printf "%s: not recorded\n", name; bad = 1; next }
    change = ($3 / expected[name] - 1) * 100
    is_bad = change > tolerance || change < -tolerance
    bad = bad || is_bad
    printf "%s: %d instructions, %+.2f %%%s\n", name, $3, change, is_bad ? sprintf(" of the recorded %d", expected[name]) : ""
    delete expected[name]
  }
  END { for (name in expected) { printf "%s: recorded, but not counted\n", name; bad = 1 } exit bad }
' "$folder/recorded" "$folder/actual" ||
  fail "instruction counts differ from the recorded ones by more than $TOLERANCE %; if that is intended, run scripts/check-speed.sh --update and commit bench/instruction_counts.txt"
