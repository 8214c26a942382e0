#!/usr/bin/env bash
# Installs what is needed, builds, and runs every test: the suites once normally and once
# under AddressSanitizer + UndefinedBehaviorSanitizer, the installed package as a host uses
# it, the viewer in a browser, the Windows DLLs under Wine, and each fuzz target for a
# bounded time.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh

cmake --preset default >/dev/null
cmake --build --preset default
ctest --preset default -j2
bash scripts/check-install.sh build
bash scripts/browser-test.sh
bash scripts/windows-test.sh

cmake --preset asan >/dev/null
cmake --build --preset asan
ctest --preset asan -j2

if [ -f scripts/fuzz.sh ]; then
  bash scripts/fuzz.sh
fi
