#!/usr/bin/env bash
# Builds the benchmark program in build/ (the default preset) and prints one table of every
# benchmark, grouped by section, with the project's targets. About a minute on two cores;
# run it on a quiet machine, since other work inflates the figures.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh

log=$(mktemp)
json=$(mktemp --suffix=.json)
trap 'rm -f "$log" "$json"' EXIT
# Only the table goes to stdout: the build's and the run's own output show when they fail.
if ! { cmake --preset default && cmake --build --preset default --target kygraph_bench -j 2; } >"$log" 2>&1; then
  cat "$log" >&2
  exit 1
fi

echo "running build/bin/kygraph_bench ..." >&2
# Three short repetitions of each: the median shrugs off a moment of load from elsewhere.
# Every repetition goes to the file, so that a failed one cannot hide behind the others.
if ! ./build/bin/kygraph_bench --benchmark_min_time=0.2 --benchmark_repetitions=3 \
  --benchmark_display_aggregates_only=true --benchmark_out="$json" --benchmark_out_format=json >"$log" 2>&1; then
  cat "$log" >&2
  exit 1
fi
python3 scripts/bench-table.py "$json"
