#!/usr/bin/env python3
"""Prints kygraph_bench's JSON output as one table, grouped by section, with the figure
(median wall-clock time per call), its unit and the project's target where there is one.

Usage: bench-table.py RESULTS.json [OTHERS]
OTHERS: the share of the machine's CPU, in per cent, that other processes used during the run.
"""
import json
import os
import platform
import re
import sys

# Sections in print order; a benchmark goes to the first whose pattern matches its name.
# A benchmark no pattern knows is still printed, under "Other".
SECTIONS = [
    ("State model", r"^(Setter/|Getter/|SetBy_|SetterRealGas/|GetterRealGas_)"),
    ("Mapping between pixels and states (1000x800)", r"^BM_Convert"),
    ("Redraw: whole chart, line families, furniture", r"^BM_(FullRedraw|ReplayRedraw|Isotherms|Constant|RelativeHumidity|DrawAlone)"),
    ("Drawing primitives (1000x800 raster)", r"^BM_(LineTo|Polyline|Arc|Ellipse|TextOut|GetTextExtent)"),
    ("Export of the default chart (1000x800), as kygraph render", r"^BM_Export"),
    ("Viewer: in process (Serve*), over HTTP on loopback (ViewerHttp)", r"^BM_(Serve|ViewerHttp)"),
    ("Whole processes: CPU time, instructions (callgrind)", r"^BM_Process/"),
]

UNIT_NS = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}
# Figures that are counts, not times: printed in their own unit, bounds in the same unit.
COUNT_UNITS = {"Minstr"}

# The project's targets: upper bounds on the time per call, and the benchmarks they bound.
TARGETS = {
    name: bound
    for bound, names in [
        ((100, "ns"), ["Setter/SetBy_TdbandRH", "Setter/SetBy_DandTdb", "Setter/SetBy_HandD"]),
        ((500, "ns"), ["Setter/SetBy_HandRH", "SetBy_HandRH_Saturated", "Setter/SetBy_DandRH",
                       "Setter/SetBy_TdbandTwb", "Setter/SetBy_HandTdb"]),
        ((300, "ns"), ["Getter/GetTwb"]),
        ((1, "us"), [f"SetterRealGas/SetBy_{pair}" for pair in
                     ("TdbandRH", "TdbandTwb", "HandD", "HandTdb", "DandTdb", "DandRH", "HandRH", "TdbandTdp",
                      "TdbandPv")]),
        ((2, "us"), ["GetterRealGas_GetTwb"]),
        ((150, "ns"), ["Getter/GetTdp"]),
        ((200, "ns"), ["BM_ConvertPixelToState", "BM_ConvertStateToPixel"]),
        ((2, "ms"), ["BM_FullRedraw/1000x800"]),
        ((6, "ms"), ["BM_FullRedraw/3840x2160"]),
        ((5, "ms"), ["BM_ExportEncodePng", "BM_Export/svg"]),
        ((10, "ms"), ["BM_ServeOverlayChange"]),
        ((100, "us"), ["BM_ServeHover/0", "BM_ServeHover/50"]),
        ((20, "ms"), ["BM_Process/render_png_cpu"]),
        ((3, "Minstr"), ["BM_Process/state_instructions"]),
    ]
    for name in names
}


def label(name):
    name = re.sub(r"/real_time$", "", name)
    return re.sub(r"^(BM_|Setter/|Getter/)", "", name)


def scaled(ns):
    """The time in the largest unit that keeps it at 1 or more, with three significant figures."""
    unit = next((u for u in ("s", "ms", "us") if ns >= UNIT_NS[u]), "ns")
    value = ns / UNIT_NS[unit]
    digits = 0 if value >= 100 else 1 if value >= 10 else 2
    return f"{value:.{digits}f}", unit


def machine():
    cpu = platform.processor() or platform.machine()
    try:
        with open("/proc/cpuinfo") as f:
            info = dict(l.split(":", 1) for l in f.read().split("\n\n")[0].splitlines() if ":" in l)
        info = {k.strip(): v.strip() for k, v in info.items()}
        cpu = info.get("model name", cpu) + (f" at {float(info['cpu MHz']):.0f} MHz" if "cpu MHz" in info else "")
    except (OSError, ValueError):
        pass
    memory = ""
    try:
        with open("/proc/meminfo") as f:
            kib = int(next(l for l in f if l.startswith("MemTotal")).split()[1])
            memory = f", {kib / 1024 / 1024:.1f} GiB memory"
    except (OSError, StopIteration):
        pass
    system = platform.system()
    try:
        with open("/etc/os-release") as f:
            system = next(l for l in f if l.startswith("PRETTY_NAME=")).split("=", 1)[1].strip().strip('"')
    except (OSError, StopIteration):
        pass
    return f"{cpu}, {os.cpu_count()} cores{memory}, {system}, Linux {platform.release()}"


def results(report):
    """One entry per benchmark, in run order: the median of its repetitions, else its single
    run; a repetition that failed is kept instead, so that no median hides a failure."""
    runs = {}
    for b in report["benchmarks"]:
        name = b.get("run_name", b["name"])
        if b.get("run_type") == "aggregate" and b.get("aggregate_name") != "median":
            continue
        if runs.get(name, {}).get("error_occurred"):
            continue
        runs[name] = b  # the median comes after the repetitions it sums up
    return runs


def main():
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__.strip())
    with open(sys.argv[1]) as f:
        report = json.load(f)
    context = report["context"]
    runs = results(report)

    sections = {title: [] for title, _ in SECTIONS}
    sections["Other"] = []
    for name, b in runs.items():
        title = next((t for t, pattern in SECTIONS if re.search(pattern, name)), "Other")
        sections[title].append((name, b))

    repetitions = max((b.get("repetitions", 1) for b in runs.values()), default=1)
    load = " ".join(f"{x:.2f}" for x in context.get("load_avg", []))
    print(f"KyGraph benchmarks, {context.get('date', '')}")
    print(f"Machine: {machine()}")
    print(f"Load average at start: {load or 'unknown'}")
    if len(sys.argv) == 3:
        others = float(sys.argv[2])
        verdict = "figures inflated, rerun when it is quiet" if others >= 5 else "the machine was quiet"
        print(f"Other processes used {others:.0f}% of the CPU during the run: {verdict}.")
    how = f"median of {repetitions} runs" if repetitions > 1 else "one run"
    print(f"Figures: wall-clock time per call, {how}; target: the project's upper bound.")

    width = max(len(label(n)) for n in runs) + 2
    met_count = over = failed = 0
    for title, rows in sections.items():
        if not rows:
            continue
        print()
        print(f"{title}")
        print(f"  {'benchmark':<{width}}{'time':>10}  {'unit':<4}  target")
        for name, b in rows:
            if b.get("error_occurred"):
                print(f"  {label(name):<{width}}  failed: {b.get('error_message', '')}")
                failed += 1
                continue
            count = b["time_unit"] in COUNT_UNITS
            ns = b["real_time"] if count else b["real_time"] * UNIT_NS[b["time_unit"]]
            value, unit = (f"{ns:.2f}", b["time_unit"]) if count else scaled(ns)
            line = f"  {label(name):<{width}}{value:>10}  {unit:<4}"
            target = TARGETS.get(name)
            if target:
                bound, bound_unit = target
                met = ns < bound * (1 if count else UNIT_NS[bound_unit])
                met_count += met
                over += not met
                line += f"  {'< ' + str(bound) + ' ' + bound_unit:<10}  {'ok' if met else 'OVER'}"
            print(line.rstrip())
    print()
    print(f"Targets met: {met_count} of {met_count + over}." + (f" Benchmarks failed: {failed}." if failed else ""))
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
