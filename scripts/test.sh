#!/usr/bin/env bash
# Builds with warnings as errors and runs every test, first in the default
# preset, then under AddressSanitizer and UndefinedBehaviorSanitizer; then
# the tests of the subsystems that promise work on several threads (cross
# references, configuration, drawings, and the test of them side by side)
# under ThreadSanitizer; then each fuzz target for a minute on top of its
# corpus (clang, libFuzzer).
# Installs missing packages first. Exits non-zero when anything fails.
set -euo pipefail
cd "$(dirname "$0")/.."

OHM_WITH_FUZZ=1 scripts/setup.sh
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

echo "== fuzz: each target for 60 s, two at a time" >&2
fuzzers=(dxf dxf_drawing project_file settings_file)
cmake --preset fuzz -DOHMUTILS_WERROR=ON >/dev/null
cmake --build --preset fuzz -j "$jobs" --target "${fuzzers[@]/#/fuzz_}"
root=$(pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
run_fuzzer() {
  mkdir -p "$work/$1"
  (cd "$work" && "$root/build/fuzz/bin/fuzz_$1" -max_total_time=60 -rss_limit_mb=2048 -print_final_stats=1 \
     "$work/$1" "$root/tests/fuzz/corpus/$1" >"$work/$1.log" 2>&1) || { tail -n 40 "$work/$1.log" >&2; return 1; }
  grep -h "stat::number_of_executed_units" "$work/$1.log" | sed "s/^/$1: /" >&2
}
for ((i = 0; i < ${#fuzzers[@]}; i += 2)); do
  run_fuzzer "${fuzzers[i]}" & first=$!
  run_fuzzer "${fuzzers[i + 1]}" & second=$!
  wait "$first"
  wait "$second"
done
