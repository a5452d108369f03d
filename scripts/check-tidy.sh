#!/usr/bin/env bash
# Runs clang-tidy on the engine and its hosts, as unity builds, since parsing headers takes most of the time. A file that
# has passed is skipped until one of its inputs changes: its sources, our headers, its command line, the checks,
# clang-tidy. The digest of these inputs names the stamp file that marks it as passed.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

BUILD=$ROOT/build/tidy
STAMPS=$BUILD/stamps
# The analyzer must also look at the files that a unity file includes, but not into the CLI11 templates that every
# function of the command calls, which would take most of the time.
options_of() {
  printf -- '--extra-arg=%s\n' -Xclang -analyzer-opt-analyze-headers
  [[ $1 != */apps/* ]] || printf -- '--extra-arg=%s\n' -Xclang -analyzer-config -Xclang mode=shallow
}

digest() {
  {
    clang-tidy --version
    cat "$ROOT/.clang-tidy" "${BASH_SOURCE[0]}"
    grep -B 1 -F "\"file\": \"$1\"" "$BUILD/compile_commands.json"
    find "$ROOT"/{include,src,host,apps} \( -name '*.h*' -o -name '*.inc' \) -print0 | sort -z | xargs -0 sha256sum
    sed -n 's/^#include "\(.*\.cpp\)"$/\1/p' "$1" | xargs -d '\n' sha256sum "$1"
  } | sha256sum | cut -d ' ' -f 1
}

check() {
  local stamp options
  stamp=$STAMPS/$(digest "$1")
  [[ -e $stamp ]] && return
  echo "${1#"$BUILD"/}"
  mapfile -t options < <(options_of "$1")
  clang-tidy --quiet -p "$BUILD" "${options[@]}" "$1" 2> >(grep -v 'warnings\? generated' >&2)
  touch "$stamp"
}

if (($# == 1)); then # called by the run below
  check "$1"
  exit
fi

cmake -S "$ROOT" --preset tidy >/dev/null
mkdir -p "$STAMPS"
awk -F '"' '$2 == "file" { print $4 }' "$BUILD/compile_commands.json" |
  sort -u | xargs -d '\n' -n 1 -P "$JOBS" "${BASH_SOURCE[0]}"
