#!/usr/bin/env bash
# Builds the Debian packages and installs them on a bare Debian. Uses the command and builds hosts in C and C++ there,
# then removes the packages again.
#
#   scripts/test-packages.sh
#
# Needs root, the network and a few minutes. Where no bare system can be made, says so and exits with 77.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

# shellcheck source-path=SCRIPTDIR source=bare-system.sh
source "$ROOT/scripts/bare-system.sh"

(($# == 0)) || fail "usage: scripts/test-packages.sh"

root=$(mktemp -d -p "${TMPDIR:-/var/tmp}" bare-debian.XXXXXX)
trap 'rm -rf --one-file-system "$root"' EXIT

step "Bare Debian in $root"
make_bare_root "$root" || { echo "SKIPPED: the packages are not tested" >&2; exit 77; }

step "Packages"
"$ROOT/scripts/package.sh"
mkdir "$root/lumvik"
cp -r "$ROOT"/build/package/packages "$ROOT/examples" "$ROOT/tests/install/examples.sh" \
  "$ROOT/samples/sample_small.ARW" "$root/lumvik"

inside() {
  in_bare_root "$root" "cd /lumvik; $1"
}
install='apt-get -q -o Dpkg::Use-Pty=0 install -y --no-install-recommends'
version=$(sed -n 's/^project(lumvik VERSION \([0-9.]*\).*/\1/p' "$ROOT/CMakeLists.txt")

step "The command"
packages='./packages/lumvik_*.deb ./packages/lumvik-metadata_*.deb ./packages/liblumvik1_*.deb'
inside "apt-get -q update && $install $packages" &>"$root/lumvik/log" || fail "$(cat "$root/lumvik/log")"
[[ $(inside 'lumvik --version') == "lumvik $version" ]] || fail "the version of the command is not $version"
inside 'lumvik develop sample_small.ARW -o command.jpg --no-exif --exposure 0.5 --contrast 20'
inside 'ls /usr/share/man/man1/lumvik.1 /usr/share/bash-completion/completions/lumvik' >/dev/null
! inside 'find /usr -name "lumvik*.h"' | grep . || fail "the command installs the headers"
! inside "dpkg-query -W -f '\${Depends}\n' liblumvik1" | grep exiv2 || fail "the libraries depend on exiv2"

step "Hosts in C and C++"
inside "$install ./packages/liblumvik-dev_*.deb g++ cmake make pkg-config" &>"$root/lumvik/log" ||
  fail "$(cat "$root/lumvik/log")"
! inside "dpkg-query -W -f '\${Package}\n'" | grep -E '^lib(opencv|raw|exi|lcms|png|jpeg).*-dev' ||
  fail "the headers pulled in those of the libraries that the engine uses"
inside './examples.sh /lumvik/examples /lumvik/sample_small.ARW /lumvik/hosts'
inside 'cmp command.jpg hosts/develop_c.jpg'

step "Removal"
inside 'apt-get -q purge -y lumvik liblumvik-dev lumvik-metadata liblumvik1' &>"$root/lumvik/log" || fail "$(cat "$root/lumvik/log")"
! inside 'find /usr /etc -name "*lumvik*"' | grep . || fail "files are left after the removal"
echo "The packages work."
