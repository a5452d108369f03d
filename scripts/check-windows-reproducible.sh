#!/usr/bin/env bash
# Fails if the zips of scripts/build-windows.sh differ from those of a copy of the tree in another folder, which is
# compiled without ccache.
#
#   scripts/check-windows-reproducible.sh              with the libraries of the cache
#   scripts/check-windows-reproducible.sh --libraries  the copy builds them too, in its own folder
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cache=${LUMVIK_WINDOWS_CACHE:-$ROOT/build/windows-cache}
case ${1:-} in
  '') ;;
  --libraries) cache=$folder/cache ;;
  *) fail "usage: scripts/check-windows-reproducible.sh [--libraries]" ;;
esac

"$ROOT/scripts/build-windows.sh"
mkdir "$folder/copy"
(cd "$ROOT" && git ls-files -z --cached --others --exclude-standard | xargs -0 cp --parents -t "$folder/copy")
CCACHE_DISABLE=1 LUMVIK_WINDOWS_CACHE=$cache "$folder/copy/scripts/build-windows.sh"

for zip in "$ROOT"/build/windows/package/*.zip; do
  other=$folder/copy/build/windows/package/${zip##*/}
  sha256sum "$zip" "$other"
  cmp "$zip" "$other" || fail "${zip##*/} depends on the folder it is built in, or on the time"
done
