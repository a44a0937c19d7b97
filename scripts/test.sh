#!/usr/bin/env bash
# Builds with warnings as errors and runs every test, first in the default
# preset, then under AddressSanitizer and UndefinedBehaviorSanitizer; then
# the tests of the subsystems that promise work on several threads (cross
# references, configuration, drawings, and the test of them side by side)
# under ThreadSanitizer.
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

echo "== tsan: configure, build and run the thread-safe subsystems' tests" >&2
cmake --preset tsan -DOHMUTILS_WERROR=ON >/dev/null
cmake --build --preset tsan -j "$jobs" --target ohm_tests_xref ohm_tests_config ohm_tests_dwg ohm_tests_threads
ctest --preset tsan -j "$jobs"
