#!/usr/bin/env bash
# Builds the benchmark program in build/ (the default preset) and prints one table of every
# benchmark, grouped by section, with the project's targets. About a minute on two cores;
# run it on a quiet machine, since other work inflates the figures.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh

log=$(mktemp)
json=$(mktemp --suffix=.json)
trap 'rm -f "$log" "$log.time" "$json"' EXIT
# Only the table goes to stdout: the build's and the run's own output show when they fail.
if ! { cmake --preset default && cmake --build --preset default --target kygraph_bench kygraph -j 2; } >"$log" 2>&1; then
  cat "$log" >&2
  exit 1
fi

echo "running build/bin/kygraph_bench ..." >&2
# The machine's busy CPU time (user, nice, system, irq, softirq, steal) in clock ticks: what is
# left after the benchmark's own share is the other work that may have slowed the run.
busy() { awk '/^cpu /{print $2 + $3 + $4 + $7 + $8 + $9}' /proc/stat; }
busy0=$(busy)
start=$(date +%s.%N)
TIMEFORMAT='%U %S'
# Three short repetitions of each: the median shrugs off a moment of load from elsewhere.
# Every repetition goes to the file, so that a failed one cannot hide behind the others.
if ! { time ./build/bin/kygraph_bench --benchmark_min_time=0.2 --benchmark_repetitions=3 \
  --benchmark_display_aggregates_only=true --benchmark_out="$json" --benchmark_out_format=json >"$log" 2>&1; } 2>"$log.time"; then
  cat "$log" >&2
  exit 1
fi
others=$(awk -v b0="$busy0" -v b1="$(busy)" -v t0="$start" -v t1="$(date +%s.%N)" -v hz="$(getconf CLK_TCK)" \
  -v cpus="$(nproc)" '{ o = (b1 - b0) / hz - $1 - $2; printf "%.0f", 100 * (o > 0 ? o : 0) / ((t1 - t0) * cpus) }' "$log.time")
# Whole processes, after the load figure: valgrind's slowness is no load on the benchmarks.
echo "measuring whole kygraph processes ..." >&2
python3 scripts/bench-process.py build/bin "$json"
python3 scripts/bench-table.py "$json" "$others"
