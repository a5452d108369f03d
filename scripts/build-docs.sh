#!/usr/bin/env bash
# Generates the API reference from the headers in include/. A Doxygen warning is an error. Needs Doxygen
# (scripts/install-dependencies.sh --test).
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

export LUMVIK_REFERENCE=$ROOT/build/reference
LUMVIK_VERSION=$(sed -nE 's/^project\(lumvik VERSION ([0-9.]+).*/\1/p' "$ROOT/CMakeLists.txt")
export LUMVIK_VERSION
mkdir -p "$LUMVIK_REFERENCE"
cd "$ROOT"
doxygen docs/Doxyfile
echo "API reference: $LUMVIK_REFERENCE/html/index.html"
