#!/usr/bin/env bash
# Builds the Debian packages and installs them into a bare Debian, made for the purpose with debootstrap and the
# host's own sources. There the command and hosts in C and C++ are used, and the packages removed again.
#
# Takes root, some minutes and the network; where it cannot be done it says so and exits with 77.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

skip() {
  echo "SKIPPED, the packages are not tested: $*" >&2
  exit 77
}

[[ -e /etc/debian_version ]] || skip "this is no Debian"
((EUID == 0)) || skip "a root of its own takes the rights of root"
step "Packages"
"$ROOT/scripts/package.sh"
command -v debootstrap >/dev/null || skip "there is no debootstrap"

codename=$(sed -n 's/^VERSION_CODENAME=//p' /etc/os-release)
# Debian's own of the sources that the host has, as lines of sources.list.
sources() {
  # shellcheck disable=SC2016 # the names are apt's
  apt-get indextargets --format 'deb $(REPO_URI) $(RELEASE) $(COMPONENT)' \
    'Created-By: Packages' 'Origin: Debian' | sort -u
}
[[ -n $(sources) ]] || apt-get -q update
mirror=$(sources | awk -v release="$codename" '$3 == release && $4 == "main" { print $2; exit }')
[[ -n $mirror ]] || skip "no source of $codename is known to apt"

root=$(mktemp -d)
chmod 755 "$root" # apt fetches as a user of its own
trap 'rm -rf --one-file-system "$root"' EXIT

step "Bare Debian from $mirror"
debootstrap --variant=minbase "$codename" "$root" "$mirror" >"$root.log" || fail "debootstrap failed, see $root.log"
rm "$root.log"
sources >"$root/etc/apt/sources.list"
apt-config dump | grep '^Acquire::[^ ]* "' >"$root/etc/apt/apt.conf.d/00host"
cp /etc/resolv.conf /etc/hosts "$root/etc/"
mkdir "$root/lumvik"
cp -r "$ROOT"/build/package/packages "$ROOT/examples" "$ROOT/tests/install/examples.sh" \
  "$ROOT/samples/sample_small.ARW" "$root/lumvik"

inside() {
  chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive \
    bash -euo pipefail -c "cd /lumvik; $1"
}
install='apt-get -q -o Dpkg::Use-Pty=0 install -y --no-install-recommends'
version=$(sed -n 's/^project(lumvik VERSION \([0-9.]*\).*/\1/p' "$ROOT/CMakeLists.txt")

step "The command"
inside "apt-get -q update && $install ./packages/lumvik_*.deb ./packages/liblumvik1_*.deb" &>"$root/lumvik/log" ||
  fail "$(cat "$root/lumvik/log")"
[[ $(inside 'lumvik --version') == "lumvik $version" ]] || fail "the command has another version than $version"
inside 'lumvik develop sample_small.ARW -o command.jpg --no-exif --exposure 0.5 --contrast 20 --temperature 6000'
inside 'ls /usr/share/man/man1/lumvik.1 /usr/share/bash-completion/completions/lumvik' >/dev/null
! inside 'find /usr -name lumvik.h' | grep . || fail "the headers came with the command"

step "Hosts in C and C++"
inside "$install ./packages/liblumvik-dev_*.deb g++ cmake make pkg-config" &>"$root/lumvik/log" ||
  fail "$(cat "$root/lumvik/log")"
! inside "dpkg-query -W -f '\${Package}\n'" | grep -E '^lib(opencv|raw|exif|lcms).*-dev' ||
  fail "the headers brought those of the libraries that the engine is made with"
inside './examples.sh /lumvik/examples /lumvik/sample_small.ARW /lumvik/hosts'
inside 'cmp command.jpg hosts/develop_c.jpg'

step "Removal"
inside 'apt-get -q purge -y lumvik liblumvik-dev liblumvik1' &>"$root/lumvik/log" || fail "$(cat "$root/lumvik/log")"
! inside 'find /usr /etc -name "*lumvik*"' | grep . || fail "the packages leave files behind"
echo "The packages work."
