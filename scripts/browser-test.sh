#!/usr/bin/env bash
# Browser tests of the viewer: starts the built `kygraph serve` on a free loopback port with a
# throw-away scene file, runs tests/browser with Debian's Chromium (headless, through
# playwright-core, installed from npm into tests/browser/node_modules when missing), stops
# the server, and exits non-zero when a test fails.
#   BUILD_DIR   build folder holding bin/kygraph (default: build)
set -euo pipefail
cd "$(dirname "$0")/.."
root=$(pwd)
bin="${BUILD_DIR:-build}/bin/kygraph"

if [ ! -x "$bin" ]; then
  echo "browser-test: $bin is missing; build the program first" >&2
  exit 1
fi
if [ ! -x /usr/bin/chromium ]; then
  echo "browser-test: /usr/bin/chromium is missing (apt-get install chromium)" >&2
  exit 1
fi
if [ ! -d tests/browser/node_modules/playwright-core ]; then
  (cd tests/browser && npm install --no-audit --no-fund --loglevel=error)
fi

work=$(mktemp -d)
server_pid=""
cleanup() {
  if [ -n "$server_pid" ] && kill -0 "$server_pid" 2>/dev/null; then
    kill -TERM "$server_pid"
    # Bounded wait for a clean stop, then make sure.
    for _ in $(seq 50); do kill -0 "$server_pid" 2>/dev/null || break; sleep 0.1; done
    kill -KILL "$server_pid" 2>/dev/null || true
  fi
  rm -rf "$work"
}
trap cleanup EXIT

"$bin" serve "$work/scene.json" --host 127.0.0.1 --port 0 >"$work/server.log" 2>&1 &
server_pid=$!

url=""
for _ in $(seq 100); do
  url=$(sed -n 's|^KyGraph viewer: \(http://127\.0\.0\.1:[0-9]*/\)$|\1|p' "$work/server.log")
  [ -n "$url" ] && break
  kill -0 "$server_pid" 2>/dev/null || break
  sleep 0.1
done
if [ -z "$url" ]; then
  echo "browser-test: the viewer did not start:" >&2
  cat "$work/server.log" >&2
  exit 1
fi

status=0
KYGRAPH_VIEWER_URL="$url" timeout 300 node --test --test-concurrency=1 "$root/tests/browser/viewer.test.mjs" || status=$?
if [ "$status" -ne 0 ]; then
  echo "browser-test: failed; server log:" >&2
  cat "$work/server.log" >&2
fi
exit "$status"
