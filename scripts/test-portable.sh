#!/usr/bin/env bash
# Builds the archive for Linux and uses it on bare systems, from the oldest supported to the newest: the command gives
# the same bytes on each, and on Debian 11 hosts in C and C++ are built.
#
#   scripts/test-portable.sh [CODENAME...]
#
# CODENAME is one of bullseye, bookworm and trixie (Debian 11 to 13), focal, jammy and noble (Ubuntu 20.04, 22.04 and
# 24.04); by default all. Needs root, the network, 1 GB and some minutes for each. A system that cannot be made is
# reported, and the script exits with 77 if none can.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
# shellcheck source-path=SCRIPTDIR source=bare-system.sh
source "$ROOT/scripts/bare-system.sh"
# shellcheck source-path=SCRIPTDIR source=debian-archive.sh
source "$ROOT/scripts/debian-archive.sh"

systems=("$@")
(($#)) || systems=(bullseye bookworm trixie focal jammy noble)

work=$(mktemp -d -p "${TMPDIR:-/var/tmp}" bare-systems.XXXXXX)
trap 'rm -rf --one-file-system "$work"' EXIT

"$ROOT/scripts/package-linux.sh"
archives=("$ROOT"/build/portable/package/lumvik-*-linux-x86_64.tar.xz)
((${#archives[@]} == 1)) || fail "not one archive: ${archives[*]}"

ubuntu=http://archive.ubuntu.com/ubuntu

# ubuntu_keyring: prints the file with the key that signs all these releases of Ubuntu. Debian has no package of it: it
# is from Ubuntu's server and known by its fingerprint.
ubuntu_keyring() {
  local key=F6ECB3762474EDA9D21B7022871920D1991BC93C folder=$work/ubuntu
  if [[ ! -e $folder/key.gpg ]]; then
    mkdir -m 700 -p "$folder/gnupg"
    /usr/lib/apt/apt-helper -o APT::Sandbox::User=root download-file \
      "$ubuntu/pool/main/u/ubuntu-keyring/ubuntu-keyring_2021.03.26_all.deb" "$folder/package.deb" >&2
    dpkg-deb --extract "$folder/package.deb" "$folder"
    gpg --no-autostart --homedir "$folder/gnupg" --quiet --import "$folder/usr/share/keyrings/ubuntu-archive-keyring.gpg"
    gpg --no-autostart --homedir "$folder/gnupg" --export "$key" >"$folder/key.gpg"
  fi
  [[ -s $folder/key.gpg ]] || fail "Ubuntu's keyring lacks the key $key"
  echo "$folder/key.gpg"
}

make_system() {
  case $1 in
    bullseye | bookworm | trixie)
      make_bare_root "$2" "$1" "$(debian_mirror)" /usr/share/keyrings/debian-archive-keyring.gpg
      ;;
    focal | jammy | noble)
      # All of Ubuntu's releases since then have this script.
      make_bare_root "$2" "$1" "$ubuntu" "$(ubuntu_keyring)" gutsy
      ;;
    *) fail "unknown system: $1" ;;
  esac
}

# Run in the system. The folder is not where the archive was unpacked first, and its name takes quoting.
# shellcheck disable=SC2016 # expanded within
try_command='
  cd /lumvik
  cp -r unpacked "/opt/any folder"
  PATH="/opt/any folder/bin:$PATH"
  lumvik --version
  mkdir out
  lumvik develop sample_small.ARW -o out/default.jpg
  lumvik develop sample_small.ARW -o out/edited.png --bits 16 --exposure 0.5 --contrast 20 --clarity 15 --dehaze 10
  lumvik develop cat.jpg -o out/cat.tif --vibrance 30 --rotation 3
  lumvik thumb sample_small.ARW -o out/thumb.jpg
  lumvik info sample_small.ARW >out/info.txt
  lumvik histogram cat.jpg >out/histogram.txt
  lumvik batch cat.jpg sample_small.ARW -o out/batch --clarity 10 >batch.txt 2>&1 || { cat batch.txt >&2; exit 1; }
  mkdir similar && cp *.jpg *.ARW similar && cp cat.jpg similar/cat2.jpg
  lumvik similar similar >out/similar.txt
  grep -qaF "FE 24-105mm F4 G OSS" out/default.jpg || { echo "the saved photo has no metadata" >&2; exit 1; }
  find out -type f | LC_ALL=C sort | xargs sha256sum >sums
'

tried=()
for system in "${systems[@]}"; do
  step "$system"
  root=$work/$system
  mkdir "$root"
  if ! make_system "$system" "$root"; then
    echo "SKIPPED: $system" >&2
    continue
  fi
  mkdir -p "$root/lumvik/unpacked"
  tar -C "$root/lumvik/unpacked" --strip-components=1 -xf "${archives[0]}"
  cp "$ROOT/samples/sample_small.ARW" "$ROOT/tests/data/cat.jpg" "$root/lumvik"
  in_bare_root "$root" "$try_command"
  cp "$root/lumvik/sums" "$work/$system.sums"
  if ((${#tried[@]})); then
    diff "$work/${tried[0]}.sums" "$work/$system.sums" || fail "$system gives other bytes than ${tried[0]}"
  fi
  tried+=("$system")

  if [[ $system == bullseye ]]; then
    step "Hosts in C and C++ on $system"
    cp -r "$ROOT/examples" "$ROOT/tests/install/examples.sh" "$root/lumvik"
    in_bare_root "$root" 'apt-get -q update
      apt-get -q -o Dpkg::Use-Pty=0 install -y --no-install-recommends g++ cmake make pkg-config' &>"$work/log" ||
      fail "$(cat "$work/log")"
    in_bare_root "$root" 'cd /lumvik
      export CMAKE_PREFIX_PATH="/opt/any folder" PKG_CONFIG_PATH=/lumvik/unpacked/lib/pkgconfig
      ./examples.sh /lumvik/examples /lumvik/sample_small.ARW hosts'
  fi
  rm -rf --one-file-system "$root"
done
((${#tried[@]})) || { echo "SKIPPED: no bare system can be made" >&2; exit 77; }
cat "$work/${tried[0]}.sums"
echo "The archive works and gives these bytes on: ${tried[*]}"
