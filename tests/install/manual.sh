#!/usr/bin/env bash
# Checks the installed manual page and completions against the help of the installed command.
#
#   manual.sh TREE
set -euo pipefail

tree=$1
command=$tree/bin/lumvik
page=$tree/share/man/man1/lumvik.1
zsh=$tree/share/zsh/vendor-completions/_lumvik
fish=$tree/share/fish/vendor_completions.d/lumvik.fish
# shellcheck source=/dev/null
source "$tree/share/bash-completion/completions/lumvik"

fail() {
  echo "$*" >&2
  exit 1
}

# expect_completions WORDS... EXPECTED: what is offered for the last word.
expect_completions() {
  local expected=${*: -1}
  COMP_WORDS=(lumvik "${@:1:$#-1}")
  COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
  _lumvik
  [[ ${COMPREPLY[*]} == "$expected" ]] || fail "${COMP_WORDS[*]}: offered ${COMPREPLY[*]}, not $expected"
}

# listed HEADING COMMAND...: what the help lists under the heading, or the long options for an empty heading.
listed() {
  local heading=$1
  shift
  "$command" "$@" --help | if [[ $heading ]]; then
    awk -v heading="$heading:" '/^[^ ]/ { inside = $0 == heading } inside && /^  [^ ]/ { print $1 }'
  else
    awk '/^  -/ { print $1 }' | tr , '\n' | grep -e '^--' | sed 's/{.*//'
  fi
}

check_page() {
  local name option names options
  options=$(listed '' "$@")
  names=$(listed Subcommands "$@")
  for option in $options; do
    expect_completions "$@" "$option" "$(grep "^$option" <<<"$options" | paste -s -d ' ')"
    grep -qF -e "\\fB${option//-/\\-}\\fR" "$page" || fail "the manual page does not describe $option"
    grep -qF -e "'$option" "$zsh" || fail "the zsh completion lacks $option"
    grep -qF -e " -l ${option#--} " "$fish" || fail "the fish completion lacks $option"
  done
  for name in $names; do
    expect_completions "$@" "$name" "$(grep "^$name" <<<"$names" | paste -s -d ' ')"
    grep -q "^\\.SS lumvik ${*:+$* }$name\\b" "$page" || fail "the manual page does not describe ${*:+$* }$name"
    check_page "$@" "$name"
  done
}

check_page
[[ $(listed Subcommands | wc -l) -ge 8 && $(listed '' develop | wc -l) -ge 50 ]] || fail "the help was not parsed"
expect_completions develop --exp --exposure
expect_completions develop --tone-curve-r --tone-curve-red
expect_completions develop DSC ''   # files
expect_completions develop -o '' '' # likewise
