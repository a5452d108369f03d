#!/usr/bin/env bash
# Downloads Debian's source packages of the libraries in a static build whose licenses require it: LibRaw and libexif
# (LGPL) and Exiv2 (GPL), in the versions that were built.
#
#   scripts/collect-sources.sh PREFIX FOLDER
#
# PREFIX holds versions.txt. Each package is a .dsc file, the original archive and Debian's changes.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
# shellcheck source-path=SCRIPTDIR source=debian-archive.sh
source "$ROOT/scripts/debian-archive.sh"

(($# == 2)) || fail "usage: scripts/collect-sources.sh PREFIX FOLDER"
versions=$(realpath -- "$1/versions.txt")
mkdir -p "$2"
cd "$2"

indexes=$(mktemp -d)
trap 'rm -rf "$indexes"' EXIT
index_sources "$indexes" >/dev/null

for source in libexif libraw exiv2; do
  version=$(sed -n "s/^$source //p" "$versions")
  [[ -n $version ]] || fail "no version of $source in $versions"
  apt-get "${apt_options[@]}" source --download-only --only-source "$source=$version" >/dev/null
done
