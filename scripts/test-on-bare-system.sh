#!/usr/bin/env bash
# Runs the README's two commands on a fresh clone of the current commit in a bare Debian, so that a package missing
# from scripts/install-dependencies.sh is noticed. Where a bare system cannot be made, says so and runs the two
# commands in place.
#
#   scripts/test-on-bare-system.sh
#
# The bare system is in $TMPDIR or /var/tmp and is removed at the end. It takes 6 GB.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
# shellcheck source-path=SCRIPTDIR source=bare-system.sh
source "$ROOT/scripts/bare-system.sh"

(($# == 0)) || fail "usage: scripts/test-on-bare-system.sh"

commands='scripts/demo.sh; scripts/test.sh'
root=$(mktemp -d -p "${TMPDIR:-/var/tmp}" bare-debian.XXXXXX)
trap 'rm -rf --one-file-system "$root"' EXIT

step "Bare Debian in $root"
if make_bare_root "$root" && git clone -q --no-hardlinks "$ROOT" "$root/lumvik"; then
  in_bare_root "$root" "cd /lumvik; $commands"
else
  echo "No bare system: the commands run in place, where packages may be installed that the scripts do not list." >&2
  cd "$ROOT"
  bash -euo pipefail -c "$commands"
fi
