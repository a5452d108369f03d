#!/usr/bin/env bash
# Measures the package and the tests for Windows: the part of docs/windows.md between the two comments. Run
# scripts/test-windows.sh first.
#
#   scripts/windows-figures.sh            print
#   scripts/windows-figures.sh --check    fail unless the page has these figures
#   scripts/windows-figures.sh --update   write them into the page
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

BUILD=$ROOT/build/windows
PAGE=$ROOT/docs/windows.md
readonly BEGIN='<!-- figures of scripts/windows-figures.sh -->' END='<!-- end of figures -->'

megabytes() {
  stat -c %s "$1" | awk '{ printf "%.1f MB", $1 / 1e6 }'
}

# names OPTION BINARY: what llvm-readobj lists, sorted.
names() {
  llvm-readobj "$@" | sed -n 's/^  Name: //p' | sort -f
}

package_table() {
  local binary zip
  echo "| | size | exported functions | imports |"
  echo "|---|---|---|---|"
  for binary in lumvik.dll lumvik_host.dll lumvik/lumvik_metadata.dll lumvik.exe; do
    echo "| \`bin/$binary\` | $(megabytes "$1/bin/$binary") | $(names --coff-exports "$1/bin/$binary" | wc -l) |" \
      "$(names --coff-imports "$1/bin/$binary" | sed 's/\.dll$//I' | paste -sd , | sed 's/,/, /g') |"
  done
  for zip in "$1" "$1-debug"; do
    echo "| \`${zip##*/}.zip\` | $(megabytes "$zip.zip") | | |"
  done
}

test_counts() {
  local tests excluded
  tests=$(ctest --test-dir "$BUILD" -N | sed -n 's/^ *Test *#[0-9]*: //p')
  excluded=$(grep '^[^#]' "$ROOT/tests/windows/not_run.txt" | paste -sd '|')
  ! grep -q _NOT_BUILT <<<"$tests" || fail "the tests are not built"
  echo "Of $(wc -l <<<"$tests") tests, $(grep -cxE -- "$excluded" <<<"$tests") are not run."
}

case ${1:-} in
  '' | --check | --update) ;;
  *) fail "usage: scripts/windows-figures.sh [--check|--update]" ;;
esac
zip=("$BUILD"/package/*-x86_64.zip)
[[ -e ${zip[0]} ]] || fail "there is no package: run scripts/test-windows.sh"
figures=$(package_table "${zip[0]%.zip}" && echo && test_counts)
page=$(<"$PAGE")
[[ $page == *"$BEGIN"*"$END"* ]] || fail "$PAGE does not have the comments"
before=${page%%"$BEGIN"*}
after=${page#*"$END"}
measured=$before$BEGIN$'\n'$figures$'\n'$END$after
case ${1:-} in
  '') echo "$figures" ;;
  --check) diff <(echo "$page") <(echo "$measured") || fail "docs/windows.md has other figures: --update writes these" ;;
  --update) echo "$measured" >"$PAGE" ;;
esac
