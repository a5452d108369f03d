#!/usr/bin/env bash
# Runs clang-tidy over the engine and its hosts, with the commands of the release build, which must be up to
# date. A file is not looked at again as long as nothing it is made of has changed: itself, our headers it
# includes, its command, the checks, clang-tidy. The digest of all these names the stamp that says it passed.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

BUILD=$ROOT/build/release
STAMPS=$ROOT/build/tidy
export ROOT BUILD STAMPS

digest() {
  {
    clang-tidy --version
    analyzer_options "$1"
    cat "$ROOT/.clang-tidy"
    grep -B 1 -F "\"file\": \"$1\"" "$BUILD/compile_commands.json"
    # Ninja's record of an object: a line with its name, then its files, indented, the source first.
    awk -v source="$1" -v root="$ROOT/" '
      !sub(/^ +/, "") { heading = 1; next }
      heading { ours = $0 == source; heading = 0 }
      ours && index($0, root) == 1' "$STAMPS/dependencies" | sort | xargs -d '\n' sha256sum
  } | sha256sum | cut -d ' ' -f 1
}

# Of a file that includes others (so is the command line compiled) the analyzer shall look at these too; but not, with
# each of their functions, at all of CLI11's templates that it calls, which would take most of the time.
analyzer_options() {
  [[ $1 == "$BUILD"/* ]] || return 0
  printf -- '--extra-arg=%s\n' -Xclang -analyzer-opt-analyze-headers -Xclang -analyzer-config -Xclang mode=shallow
}

check() {
  local stamp options
  stamp=$STAMPS/$(digest "$1")
  [[ -e $stamp ]] && return
  echo "${1#"$ROOT"/}"
  mapfile -t options < <(analyzer_options "$1")
  clang-tidy --quiet -p "$BUILD" "${options[@]}" "$1" 2> >(grep -v 'warnings\? generated' >&2)
  touch "$stamp"
}
export -f digest analyzer_options check

mkdir -p "$STAMPS"
ninja -C "$BUILD" -t deps >"$STAMPS/dependencies"
# shellcheck disable=SC2016 # $0 is for the inner shell
awk -F '"' -v src="$ROOT/src/" -v apps="$ROOT/apps/" -v together="$BUILD/apps/" '
  $2 == "file" && (index($4, src) == 1 || index($4, apps) == 1 || index($4, together) == 1) { print $4 }' \
  "$BUILD/compile_commands.json" |
  sort -u | xargs -d '\n' -P "$JOBS" -I {} bash -euo pipefail -c 'check "$0"' {}
