#!/usr/bin/env bash
# Builds with warnings as errors and runs every test, first in the default
# preset, then under AddressSanitizer and UndefinedBehaviorSanitizer.
# Installs missing packages first. Exits non-zero when anything fails.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
jobs=$(nproc)
for preset in default asan; do
  echo "== ${preset}: configure, build, test" >&2
  cmake --preset "$preset" -DOHMUTILS_WERROR=ON >/dev/null
  cmake --build --preset "$preset" -j "$jobs"
  ctest --preset "$preset" -j "$jobs"
done
