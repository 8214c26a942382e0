#!/usr/bin/env bash
# A bounded load run of the viewer on loopback: starts the built `kygraph serve` on a free
# port of 127.0.0.1, sends it a few thousand hover and full-redraw requests from a second
# process (scripts/load-client.mjs, 4 concurrent clients, at most 120 s), prints the
# latencies, stops the server and exits non-zero on any error.
#   BUILD_DIR   build folder holding bin/kygraph (default: build)
set -euo pipefail
cd "$(dirname "$0")/.."
bin="${BUILD_DIR:-build}/bin/kygraph"
[ -x "$bin" ] || { echo "load-test: $bin is missing; build the program first" >&2; exit 1; }

work=$(mktemp -d)
server_pid=""
cleanup() {
  if [ -n "$server_pid" ] && kill -0 "$server_pid" 2>/dev/null; then
    kill -TERM "$server_pid"
    for _ in $(seq 50); do kill -0 "$server_pid" 2>/dev/null || break; sleep 0.1; done
    kill -KILL "$server_pid" 2>/dev/null || true
  fi
  rm -rf "$work"
}
trap cleanup EXIT

"$bin" serve --host 127.0.0.1 --port 0 >"$work/server.log" 2>&1 &
server_pid=$!
url=""
for _ in $(seq 100); do
  url=$(sed -n 's|^KyGraph viewer: \(http://127\.0\.0\.1:[0-9]*/\)$|\1|p' "$work/server.log")
  [ -n "$url" ] && break
  kill -0 "$server_pid" 2>/dev/null || break
  sleep 0.1
done
[ -n "$url" ] || { echo "load-test: the viewer did not start" >&2; cat "$work/server.log" >&2; exit 1; }

timeout 180 node scripts/load-client.mjs "$url"
