#!/usr/bin/env bash
# Packs what must be offered next to a static build of lumvik: the relink kit, with the licenses and the sources of the
# libraries under the LGPL and the GPL. docs/licences.md has the reasons.
#
#   scripts/package-relink-kit.sh BUILD PREFIX ARCHIVE
#
# BUILD is the folder of the build, PREFIX that of its static libraries; ARCHIVE ends in .tar.xz. The same build gives the
# same bytes.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

(($# == 3)) || fail "usage: scripts/package-relink-kit.sh BUILD PREFIX ARCHIVE"
name=$(basename "$3" .tar.xz)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

"$ROOT/scripts/make-relink-kit.py" "$1" "$2" "$work/$name"
"$ROOT/scripts/collect-licences.sh" "$2" "$work/$name/licenses"
"$ROOT/scripts/collect-sources.sh" "$2" "$work/$name/sources"
# How the libraries were built is part of their sources.
mkdir "$work/$name/scripts" "$work/$name/cmake"
cp "$ROOT"/scripts/{common,debian-archive,linux-sysroot,static-*}.sh "$work/$name/scripts"
cp "$ROOT"/cmake/{MingwW64,PortableLinux}.cmake "$work/$name/cmake"
tar -C "$work" --sort=name --owner=0 --group=0 --numeric-owner --mode=u+w,go-w --mtime="@${SOURCE_DATE_EPOCH:-0}" \
  --format=gnu -cf - "$name" | xz -6 --threads=1 >"$3"
