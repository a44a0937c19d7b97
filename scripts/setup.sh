#!/usr/bin/env bash
# Installs the Debian packages the build and the tests need, where missing.
# Runs without questions; needs root (or sudo) only when something is missing.
set -euo pipefail

packages=(cmake ninja-build g++ pkg-config libgtest-dev libgmock-dev libbenchmark-dev
          libpugixml-dev libsqlite3-dev libicu-dev nlohmann-json3-dev libcli11-dev)
# clang builds the fuzzing preset only; install it when asked.
if [[ "${OHM_WITH_FUZZ:-0}" == 1 ]]; then packages+=(clang libclang-rt-14-dev); fi

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
[[ ${#missing[@]} -eq 0 ]] && exit 0

sudo=""
[[ $(id -u) -ne 0 ]] && sudo="sudo"
echo "setup: installing ${missing[*]}" >&2
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -q
$sudo apt-get install -y -q --no-install-recommends "${missing[@]}"
