#!/usr/bin/env bash
# Runs `lumvik batch` twice at once over the same photographs, into the same folder, and kills one of the two with SIGKILL
# at a random moment. Afterwards every output must equal that of a single run, nothing else may have changed, and nothing
# may be left over. Prints a table, and fails if a round does.
#
#   scripts/stress-batch.sh [ROUNDS [PHOTOGRAPHS]]      default: 10 rounds of 200 photographs
#
# LUMVIK names the command, PHOTO the RAW file that the photographs are made from, SEED the random numbers.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

rounds=${1:-10}
photographs=${2:-200}
lumvik=$(realpath -- "${LUMVIK:-$ROOT/build/release/apps/lumvik/lumvik}")
photo=$(realpath -- "${PHOTO:-$ROOT/samples/sample_small.ARW}")
RANDOM=${SEED:-1}
[[ -x $lumvik ]] || fail "no command: $lumvik"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

# RAW files with some bytes after their end: different photographs for lumvik.
mkdir in
for ((i = 1; i <= photographs; ++i)); do
  name=$(printf 'in/%04d.ARW' "$i")
  cp "$photo" "$name"
  printf '%s' "$i" >>"$name"
done

# The names and checksums of all files in the folder, hidden ones too.
sums() {
  (cd "$1" && find . -type f -print0 | sort -z | xargs -0 -r sha256sum)
}

# To be called in a subshell, which becomes the command.
batch() {
  exec "$lumvik" batch in -o "$1" --resume --quality 4 --exposure 0.3 --json
}

# count STATE REPORT
count() {
  sed -n "s/^  \"$1\": \([0-9]*\),\?$/\1/p" "$2"
}

outputs() {
  find out -maxdepth 1 -name '*.jpg' | wc -l
}

mkdir expected
echo "not an output" >expected/notes.txt
(batch expected >single.json 2>single.err) || fail "a single run failed: $(tail -n 1 single.err)"
sums in >in.sums
sums expected >expected.sums

printf '%-5s  %-6s  %-9s  %-13s  %-13s  %-13s  %s\n' round killed "after" survivor developed skipped result
bad=0
for ((round = 1; round <= rounds; ++round)); do
  rm -rf out
  mkdir out
  cp expected/notes.txt out
  batch out >first.json 2>first.err &
  first=$!
  batch out >second.json 2>second.err &
  second=$!
  if ((RANDOM % 2)); then
    killed=first victim=$first survivor=second waits_for=$second
  else
    killed=second victim=$second survivor=first waits_for=$first
  fi
  goal=$((RANDOM % (photographs * 9 / 10)))
  while (($(outputs) < goal)) && kill -0 "$victim" 2>/dev/null; do sleep 0.01; done
  sleep "0.0$((RANDOM % 10))"
  after=$(outputs)
  kill -KILL "$victim" 2>/dev/null || true
  victim_status=0
  wait "$victim" 2>/dev/null || victim_status=$?
  status=0
  wait "$waits_for" || status=$?
  result=ok
  # A run that is killed last leaves its work folder to the next one.
  sums out | grep -v ' \./\.lumvik/' >survivor.sums
  cmp -s survivor.sums expected.sums || result="outputs of the survivor differ"
  (batch out >resumed.json 2>resumed.err) || result="resuming failed"
  (($(count developed resumed.json) == 0)) || result="$(count developed resumed.json) developed again"
  sums out >resumed.sums
  cmp -s resumed.sums expected.sums || result="outputs differ, or something is left over"
  [[ ! -e out/.lumvik ]] || result="the work folder is left over"
  sums in | cmp -s - in.sums || result="the photographs changed"
  ((status == 0)) || result="the survivor exited with status $status"
  ((victim_status == 137)) || result="over before it was killed"
  [[ $result == ok ]] || bad=1
  [[ $result == ok ]] || diff survivor.sums expected.sums >&2 || true
  printf '%-5s  %-6s  %-9s  %-13s  %-13s  %-13s  %s\n' "$round" "$killed" "$after" "$survivor, $status" \
    "$(count developed "$survivor.json")" "$(count skipped "$survivor.json")" "$result"
done
exit "$bad"
