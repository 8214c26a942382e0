#!/usr/bin/env bash
# Checks the installed package the way a host uses it: installs a configured, non-sanitizer
# build into a scratch prefix, configures and builds tests/consumer and examples/ against it
# with find_package(KyGraph CONFIG) and the consumer once more with pkg-config, runs the consumer check and the minimal host (which
# writes a PNG). Exits non-zero on any failure.
#
#     scripts/check-install.sh [build-dir]      (default: build)
# KYGRAPH_CHECK_PNG=<path> keeps a copy of the example's PNG.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build}
if [ ! -f "$build/CMakeCache.txt" ]; then
  echo "check-install: $build is not a configured build directory" >&2
  exit 2
fi

work=$(mktemp -d "${TMPDIR:-/tmp}/kygraph-install.XXXXXX")
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix
generator=()
command -v ninja >/dev/null && generator=(-G Ninja)

cmake --build "$build" -j2
cmake --install "$build" --prefix "$prefix" >/dev/null

for project in tests/consumer examples; do
  dir=$work/$(basename "$project")
  cmake -S "$project" -B "$dir" "${generator[@]}" -DCMAKE_BUILD_TYPE=Release -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
  cmake --build "$dir" -j2 >/dev/null
done

# Run from outside the source and build trees, so nothing but the prefix can be found.
cd "$work"
"$work/consumer/consumer_check"
"$work/examples/minimal_host" "$work/minimal_host.png"
if [ "$(head -c 8 "$work/minimal_host.png" | od -An -tx1 | tr -d ' \n')" != "89504e470d0a1a0a" ]; then
  echo "check-install: minimal_host.png is not a PNG" >&2
  exit 1
fi

# The same check built the pkg-config way, from the installed kygraph.pc alone.
pc=$(find "$prefix" -name kygraph.pc -print -quit)
libdir=$(PKG_CONFIG_PATH=$(dirname "$pc") pkg-config --variable=libdir kygraph)
c++ -std=c++20 "$OLDPWD/tests/consumer/consumer_check.cpp" -o "$work/pc_check" \
  -DKYGRAPH_EXPECTED_VERSION="\"$(PKG_CONFIG_PATH=$(dirname "$pc") pkg-config --modversion kygraph)\"" \
  $(PKG_CONFIG_PATH=$(dirname "$pc") pkg-config --cflags --libs kygraph) -Wl,-rpath,"$libdir"
"$work/pc_check"

if [ -n "${KYGRAPH_CHECK_PNG:-}" ]; then
  cp "$work/minimal_host.png" "$KYGRAPH_CHECK_PNG"
fi
echo "check-install: OK"
