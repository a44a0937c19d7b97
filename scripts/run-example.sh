#!/usr/bin/env bash
# Installs what is missing, builds the ohm tool, and runs the main job: the
# cross-references of the bundled relay example, worked out from its drawings.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
cmake --preset release -DOHMUTILS_BUILD_TESTS=OFF -DOHMUTILS_BUILD_BENCHMARKS=OFF >/dev/null
cmake --build --preset release -j "$(nproc)" --target ohm
build/release/bin/ohm update --dry-run examples/relay
