#!/usr/bin/env bash
# Installs what is missing, builds, and runs the main job on the bundled example.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
cmake --preset release -DOHMUTILS_BUILD_TESTS=OFF -DOHMUTILS_BUILD_BENCHMARKS=OFF >/dev/null
cmake --build --preset release -j "$(nproc)" --target ohm_xref_text_example
build/release/bin/ohm_xref_text_example examples/xref_text/records.json
