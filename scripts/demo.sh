#!/usr/bin/env bash
# Develops a photograph (RAW, JPEG, PNG, TIFF, BMP or WebP) and prints where the result is, installing and building first
# what that takes.
#
#   scripts/demo.sh [PHOTO]
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

photo=${1:-$ROOT/samples/sample_small.ARW}
[[ -f $photo ]] || fail "no such photo: $photo"
photo=$(realpath -- "$photo")

"$ROOT/scripts/install-dependencies.sh" --build
configure release "$ROOT/build/release"
cmake --build "$ROOT/build/release" --target lumvik_cli

name=$(basename -- "$photo")
picture=$ROOT/build/demo/${name%.*}.jpg
mkdir -p "$ROOT/build/demo"
"$ROOT/build/release/apps/lumvik/lumvik" develop "$photo" -o "$picture" --exposure 0.5 --contrast 20
echo "Developed picture: $picture"
