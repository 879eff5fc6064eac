#!/usr/bin/env bash
# Builds everything and runs the whole test suite with CTest. Extra
# arguments are CMake options (e.g. -DPPDFORGE_SANITIZE=ON); the build
# directory is build/, or $PPDFORGE_BUILD_DIR.
set -euo pipefail
cd "$(dirname "$0")/.."

./scripts/install-dependencies.sh

build="${PPDFORGE_BUILD_DIR:-build}"
jobs="${PPDFORGE_JOBS:-$(nproc)}"
cmake -S . -B "$build" "$@"
cmake --build "$build" -j"$jobs"
ctest --test-dir "$build" --output-on-failure -j"$jobs"
