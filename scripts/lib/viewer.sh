# Sourced by the scripts that drive a served viewer: starts the built `kygraph serve` on a
# free loopback port and stops it again when the script exits.
#   start_viewer NAME [SCENE]   sets $url (the page's address), $work (a scratch folder that
#                                goes with the server) and $server_pid; exits on failure.
#   BUILD_DIR                    build folder holding bin/kygraph (default: build)

work=$(mktemp -d)
server_pid=""
stop_viewer() {
  if [ -n "$server_pid" ] && kill -0 "$server_pid" 2>/dev/null; then
    kill -TERM "$server_pid"
    # Bounded wait for a clean stop, then make sure.
    for _ in $(seq 50); do kill -0 "$server_pid" 2>/dev/null || break; sleep 0.1; done
    kill -KILL "$server_pid" 2>/dev/null || true
  fi
  rm -rf "$work"
}
trap stop_viewer EXIT

start_viewer() {
  local name=$1
  local bin="${BUILD_DIR:-build}/bin/kygraph"
  if [ ! -x "$bin" ]; then
    echo "$name: $bin is missing; build the program first" >&2
    exit 1
  fi
  "$bin" serve ${2:+"$2"} --host 127.0.0.1 --port 0 >"$work/server.log" 2>&1 &
  server_pid=$!
  url=""
  for _ in $(seq 100); do
    url=$(sed -n 's|^KyGraph viewer: \(http://127\.0\.0\.1:[0-9]*/\)$|\1|p' "$work/server.log")
    [ -n "$url" ] && break
    kill -0 "$server_pid" 2>/dev/null || break
    sleep 0.1
  done
  if [ -z "$url" ]; then
    echo "$name: the viewer did not start:" >&2
    cat "$work/server.log" >&2
    exit 1
  fi
}
