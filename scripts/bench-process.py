#!/usr/bin/env python3
"""Whole-process figures that no in-process benchmark can show, added to kygraph_bench's JSON
output so that bench-table.py prints them with the rest:
- the CPU time (user + system) of `kygraph render -o chart.png` of the default chart, median
  of several runs;
- the instructions of `kygraph state --tdb 25 --rh 50`, start-up and exit included, counted
  by valgrind's callgrind (left out when valgrind is missing).

Usage: bench-process.py BUILD_BIN_DIR RESULTS.json
"""
import json
import os
import re
import resource
import shutil
import statistics
import subprocess
import sys
import tempfile


def cpu_ms(argv):
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    subprocess.run(argv, check=True, stdout=subprocess.DEVNULL)
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return 1000.0 * (after.ru_utime - before.ru_utime + after.ru_stime - before.ru_stime)


def instructions(argv):
    with tempfile.TemporaryDirectory() as tmp:
        out = subprocess.run(["valgrind", "--tool=callgrind", f"--callgrind-out-file={tmp}/cg.out"] + argv,
                             check=True, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True).stderr
    m = re.search(r"Collected\s*:\s*(\d+)", out)
    return int(m.group(1)) if m else None


def entry(name, value, unit):
    # The table reads real_time in time_unit; counts carry their own unit.
    return {"name": name, "run_name": name, "run_type": "iteration", "repetitions": 1, "iterations": 1,
            "real_time": value, "cpu_time": value, "time_unit": unit}


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__.strip())
    kygraph = os.path.join(sys.argv[1], "kygraph")
    with open(sys.argv[2]) as f:
        report = json.load(f)
    with tempfile.TemporaryDirectory() as tmp:
        png = os.path.join(tmp, "chart.png")
        cpu_ms([kygraph, "render", "-o", png])  # warms the file cache and fontconfig's
        runs = [cpu_ms([kygraph, "render", "-o", png]) for _ in range(7)]
    report["benchmarks"].append(entry("BM_Process/render_png_cpu", statistics.median(runs), "ms"))
    if shutil.which("valgrind"):
        count = instructions([kygraph, "state", "--tdb", "25", "--rh", "50"])
        if count is not None:
            report["benchmarks"].append(entry("BM_Process/state_instructions", count / 1e6, "Minstr"))
    with open(sys.argv[2], "w") as f:
        json.dump(report, f)


if __name__ == "__main__":
    main()
