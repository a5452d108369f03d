#!/usr/bin/env bash
# Makes the reference of the interface from the comments of the headers in include/. Fails when Doxygen warns. Needs
# Doxygen (scripts/install-dependencies.sh --test).
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

export LUMVIK_REFERENCE=$ROOT/build/reference
LUMVIK_VERSION=$(sed -nE 's/^project\(lumvik VERSION ([0-9.]+).*/\1/p' "$ROOT/CMakeLists.txt")
export LUMVIK_VERSION
mkdir -p "$LUMVIK_REFERENCE"
cd "$ROOT"
doxygen docs/Doxyfile
echo "The reference: $LUMVIK_REFERENCE/html/index.html"
