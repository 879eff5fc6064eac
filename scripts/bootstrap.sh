#!/usr/bin/env bash
# First command on a fresh machine: installs the missing Debian packages,
# builds ppdforge and writes the example product's PPD (English, French and
# German) to build/qv-inkjet-500.ppd.
set -euo pipefail
cd "$(dirname "$0")/.."

./scripts/install-dependencies.sh

build="${PPDFORGE_BUILD_DIR:-build}"
cmake -S . -B "$build" "$@"
cmake --build "$build" -j"$(nproc)" --target ppdforge_tool

"$build/ppdforge" generate examples/inkjet/qv-inkjet-500.plist \
  --strings examples/inkjet/qv-inkjet-500.bundle --languages en,fr,de \
  -o "$build/qv-inkjet-500.ppd"
echo "Wrote $build/qv-inkjet-500.ppd"
