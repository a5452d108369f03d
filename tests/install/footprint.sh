#!/usr/bin/env bash
# Installs a build into an empty folder and compares what it costs to load with footprint_debian.txt.
#
#   footprint.sh BUILD SOURCE
set -euo pipefail

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cmake --install "$1" --prefix "$folder" --strip >/dev/null
ln -s "$(dirname "$(find "$folder" -name liblumvik.so)")" "$folder/libraries"
"$2/scripts/check-footprint.sh" "$folder" "$2/tests/install/footprint_debian.txt"
