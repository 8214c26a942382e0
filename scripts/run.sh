#!/usr/bin/env bash
# Installs what is needed, builds, and renders the default chart to chart.png.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
cmake --preset default >/dev/null
cmake --build --preset default
./build/bin/kygraph render -o chart.png
echo "wrote $(pwd)/chart.png"
