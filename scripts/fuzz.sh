#!/usr/bin/env bash
# Builds the libFuzzer targets (clang, AddressSanitizer + UndefinedBehaviorSanitizer) in
# build-fuzz/ and runs each for a bounded time on a copy of its seed corpus, so the repository
# is never written to. Fails on any crash, sanitizer report, timeout (an input, such as a
# redraw, taking over a second) or out-of-memory; the inputs that failed are kept in
# build-fuzz/crashes/ for reproduction: build-fuzz/bin/<target> <file>.
# FUZZ_SECONDS sets the time per target (default 60); FUZZ_SEED the random seed (default 1, so
# that a run, and a finding in CI, can be repeated; 0 lets libFuzzer pick one).
set -euo pipefail
cd "$(dirname "$0")/.."

if ! command -v clang++ >/dev/null || ! dpkg-query -W -f='${Status}' libclang-rt-14-dev 2>/dev/null | grep -q "ok installed"; then
  bash scripts/install-deps.sh
fi

cmake --preset fuzz >/dev/null
cmake --build --preset fuzz

seconds=${FUZZ_SECONDS:-60}
seed=${FUZZ_SEED:-1}
targets=(fuzz_state_model fuzz_settings_redraw fuzz_scene_reader fuzz_viewer_api)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
crashes=build-fuzz/crashes
mkdir -p "$crashes"

export LSAN_OPTIONS="suppressions=$PWD/tests/lsan.supp"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"
# Files the targets write (the viewer saves its scene) go where the corpus copies go.
export TMPDIR="$work"

failed=()
for target in "${targets[@]}"; do
  corpus="$work/$target"
  mkdir -p "$corpus" "$work/$target-artifacts"
  cp fuzz/corpus/"$target"/* "$corpus"/
  dict=()
  [ -f fuzz/"$target".dict ] && dict=(-dict=fuzz/"$target".dict)
  log="$work/$target.log"
  echo "fuzz: $target for ${seconds} s"
  status=0
  build-fuzz/bin/"$target" "$corpus" "${dict[@]}" -max_total_time="$seconds" -seed="$seed" -timeout=1 -rss_limit_mb=2048 \
    -artifact_prefix="$work/$target-artifacts/" -print_final_stats=1 >"$log" 2>&1 || status=$?
  # A report that did not stop the run still fails it.
  if [ "$status" -ne 0 ] || grep -qE "ERROR: (AddressSanitizer|LeakSanitizer|libFuzzer)|runtime error:" "$log"; then
    failed+=("$target")
    grep -vE "^(#[0-9]+|INFO:)" "$log" | tail -60
    cp "$work/$target-artifacts"/* "$crashes"/ 2>/dev/null || true
  fi
  runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
  slowest=$(sed -n 's/^stat::slowest_unit_time_sec: *//p' "$log")
  echo "  ${runs:-0} inputs, the slowest ${slowest:-?} s"
done

if [ ${#failed[@]} -gt 0 ]; then
  echo "fuzz: failed: ${failed[*]} (inputs kept in $crashes/)" >&2
  exit 1
fi
echo "fuzz: all ${#targets[@]} targets ran ${seconds} s each without a finding"
