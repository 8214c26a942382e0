#!/usr/bin/env bash
# A bounded load run of the viewer on loopback: starts the built `kygraph serve` on a free
# port of 127.0.0.1, sends it a few thousand hover and full-redraw requests from a second
# process (scripts/load-client.mjs, 4 concurrent clients, at most 120 s), prints the
# latencies, stops the server and exits non-zero on any error.
#   BUILD_DIR   build folder holding bin/kygraph (default: build)
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/lib/viewer.sh
start_viewer load-test

timeout 180 node scripts/load-client.mjs "$url"
