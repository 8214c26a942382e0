#!/usr/bin/env bash
# Installs what is needed, builds, and runs every test: once normally, once under
# AddressSanitizer + UndefinedBehaviorSanitizer.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh

cmake --preset default >/dev/null
cmake --build --preset default
ctest --preset default -j2

cmake --preset asan >/dev/null
cmake --build --preset asan
ctest --preset asan -j2
