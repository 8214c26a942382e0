#!/usr/bin/env bash
# Browser tests of the viewer: starts the built `kygraph serve` on a free loopback port with a
# throw-away scene file, runs tests/browser with Debian's Chromium (headless, through
# playwright-core, installed from npm into tests/browser/node_modules when missing), stops
# the server, and exits non-zero when a test fails.
#   BUILD_DIR   build folder holding bin/kygraph (default: build)
set -euo pipefail
cd "$(dirname "$0")/.."
root=$(pwd)
if [ ! -x /usr/bin/chromium ]; then
  echo "browser-test: /usr/bin/chromium is missing (apt-get install chromium)" >&2
  exit 1
fi
if [ ! -d tests/browser/node_modules/playwright-core ]; then
  (cd tests/browser && npm install --no-audit --no-fund --loglevel=error)
fi

source scripts/lib/viewer.sh
start_viewer browser-test "$work/scene.json"

status=0
KYGRAPH_VIEWER_URL="$url" timeout 300 node --test --test-concurrency=1 "$root/tests/browser/viewer.test.mjs" || status=$?
if [ "$status" -ne 0 ]; then
  echo "browser-test: failed; server log:" >&2
  cat "$work/server.log" >&2
fi
exit "$status"
