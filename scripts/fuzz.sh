#!/usr/bin/env bash
# Builds the libFuzzer targets (clang, AddressSanitizer + UndefinedBehaviorSanitizer) in
# build-fuzz/ and runs each for a bounded time on a copy of its seed corpus, so the repository
# is never written to. Fails on any crash, sanitizer report, timeout (an input, such as a
# redraw, taking over a second) or out-of-memory; the inputs that failed are kept in
# build-fuzz/crashes/ for reproduction: build-fuzz/bin/<target> <file>.
# Each target runs twice: with the fixed seed FUZZ_SEED (default 1), so that a run and a finding
# in CI can be repeated, and then with a fresh seed (FUZZ_FRESH_SEED, else random), printed, so
# that new ground is covered and what it finds can be repeated too:
#   build-fuzz/bin/<target> <corpus> -seed=<printed seed>
# FUZZ_SECONDS sets the time of each run (default 30).
set -euo pipefail
cd "$(dirname "$0")/.."

if ! command -v clang++ >/dev/null || ! dpkg-query -W -f='${Status}' libclang-rt-14-dev 2>/dev/null | grep -q "ok installed"; then
  bash scripts/install-deps.sh
fi

cmake --preset fuzz >/dev/null
cmake --build --preset fuzz

seconds=${FUZZ_SECONDS:-30}
seed=${FUZZ_SEED:-1}
fresh=${FUZZ_FRESH_SEED:-$(( ($(od -An -N4 -tu4 /dev/urandom) % 2147483646) + 1 ))}
echo "fuzz: fixed seed $seed, fresh seed $fresh"
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
# run TARGET SEED: one bounded run on a copy of the target's corpus.
run() {
  local target=$1 runSeed=$2 fatal=$3
  local corpus="$work/$target-$runSeed" artifacts="$work/$target-$runSeed-artifacts"
  mkdir -p "$corpus" "$artifacts"
  cp fuzz/corpus/"$target"/* "$corpus"/
  local dict=()
  [ -f fuzz/"$target".dict ] && dict=(-dict=fuzz/"$target".dict)
  local log="$work/$target-$runSeed.log"
  echo "fuzz: $target for ${seconds} s, seed $runSeed"
  local status=0
  build-fuzz/bin/"$target" "$corpus" "${dict[@]}" -max_total_time="$seconds" -seed="$runSeed" -timeout=1 \
    -rss_limit_mb=2048 -artifact_prefix="$artifacts/" -print_final_stats=1 >"$log" 2>&1 || status=$?
  # A report that did not stop the run still fails it.
  if [ "$status" -ne 0 ] || grep -qE "ERROR: (AddressSanitizer|LeakSanitizer|libFuzzer)|runtime error:" "$log"; then
    if [ "$fatal" = 1 ]; then failed+=("$target (seed $runSeed)"); else found+=("$target (seed $runSeed)"); fi
    grep -vE "^(#[0-9]+|INFO:)" "$log" | tail -60
    cp "$artifacts"/* "$crashes"/ 2>/dev/null || true
  fi
  local runs slowest
  runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
  slowest=$(sed -n 's/^stat::slowest_unit_time_sec: *//p' "$log")
  echo "  ${runs:-0} inputs, the slowest ${slowest:-?} s"
}

# In CI a finding of the fresh seed is reported, with its seed and input, but does not fail
# the run: CI must give the same verdict for the same tree. Elsewhere (or with
# FUZZ_FRESH_FATAL=1) it fails like any other.
fresh_fatal=${FUZZ_FRESH_FATAL:-$([ "${CI:-}" = true ] && echo 0 || echo 1)}
found=()
for target in "${targets[@]}"; do
  run "$target" "$seed" 1
  run "$target" "$fresh" "$fresh_fatal"
done
if [ ${#found[@]} -gt 0 ]; then
  echo "fuzz: FINDING with a fresh seed (not failing CI): ${found[*]} (inputs kept in $crashes/)" >&2
fi

if [ ${#failed[@]} -gt 0 ]; then
  echo "fuzz: failed: ${failed[*]} (inputs kept in $crashes/)" >&2
  exit 1
fi
echo "fuzz: all ${#targets[@]} targets ran ${seconds} s with seed $seed and with seed $fresh without a finding"
