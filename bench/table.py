#!/usr/bin/env python3
"""Prints the benchmark table from the JSON files bench/run collected.

Every benchmark binary ran several times (one process each); a figure is the
median over those runs. Ratios come from one process each: the measured path
and its baseline were timed in alternating blocks (bench/paired.h).

usage: table.py RESULTS_DIR
RESULTS_DIR holds <binary>.<run>.json from Google Benchmark and, optionally,
build.json from bench/run (clean build time, library size, export count).
"""

import glob
import json
import os
import statistics
import sys


def load_runs(results):
    """{benchmark name: [entry of each run]} and the first run's context."""
    runs, context = {}, None
    for path in sorted(glob.glob(os.path.join(results, "bench_*.json"))):
        with open(path, encoding="utf-8") as f:
            data = json.load(f)
        context = context or data.get("context", {})
        for entry in data.get("benchmarks", []):
            if entry.get("run_type", "iteration") != "iteration":
                continue
            name = entry["run_name"] if "run_name" in entry else entry["name"]
            name = name.split("/iterations:")[0].split("/real_time")[0]
            runs.setdefault(name, []).append(entry)
    return runs, context


class Figures:
    def __init__(self, runs):
        self.runs = runs
        self.errors = sorted({e["error_message"] for es in runs.values() for e in es if e.get("error_occurred")})

    def get(self, name, field):
        """Median of a field over the runs, or None when it was not measured."""
        values = [e[field] for e in self.runs.get(name, []) if field in e and not e.get("error_occurred")]
        return statistics.median(values) if values else None


def duration(ns):
    if ns is None:
        return "-"
    for unit, scale in (("s", 1e9), ("ms", 1e6), ("us", 1e3)):
        if ns >= scale:
            return f"{ns / scale:.3g} {unit}"
    return f"{ns:.3g} ns"


def ratio_text(r):
    if r is None:
        return "-"
    return f"{r:.2f}x" if r >= 0.1 else f"{r:.1e}x"


def verdict(value, target):
    if value is None or target is None:
        return ""
    op, bound = target
    met = value <= bound if op == "<=" else value >= bound if op == ">=" else value < bound
    return "met" if met else "NOT MET"


def main():
    results = sys.argv[1]
    runs, context = load_runs(results)
    f = Figures(runs)
    build = {}
    build_path = os.path.join(results, "build.json")
    if os.path.exists(build_path):
        with open(build_path, encoding="utf-8") as fh:
            build = json.load(fh)

    rows = []  # (figure, measured, baseline, ratio, target text, verdict)

    def section(title):
        rows.append((title,))

    def paired(label, name, target):
        r = f.get(name, "ratio")
        rows.append((label, duration(f.get(name, "measured_ns")), duration(f.get(name, "baseline_ns")),
                     ratio_text(r), f"{target[0]} {target[1]}x" if target else "", verdict(r, target)))

    section("1. Call frame: export / the same host calls by hand")
    paired("scalar getter     IDrawingObject_GetLayerNumber", "frame/scalar_getter", ("<=", 1.25))
    paired("text getter       ITavraDocument_GetName", "frame/text_getter", ("<=", 1.25))
    paired("object getter     IDrawingObject_GetCurve2D", "frame/object_getter", ("<=", 1.25))
    paired("out-parameters    ICurve2D_PointOn", "frame/out_parameters", ("<=", 1.25))
    paired("vector result     ICurve2D_CalculatePolygon", "frame/vector_result", ("<=", 1.25))
    paired("scalar getter / one bare virtual call", "frame/bare_virtual_call", None)

    section("1b. Checked mode: the same export with checking on / off; the difference is its cost per call")
    for label, name in (("scalar getter", "scalar_getter"), ("text getter", "text_getter"),
                        ("object getter + IAPIObject_Release", "object_getter"),
                        ("out-parameters", "out_parameters"), ("vector result + DoubleVector_Delete", "vector_result")):
        on, off = f.get(f"checked/{name}", "measured_ns"), f.get(f"checked/{name}", "baseline_ns")
        cost = "-" if on is None or off is None else ("+" if on >= off else "") + duration(on - off)
        rows.append((label, duration(on), duration(off), ratio_text(f.get(f"checked/{name}", "ratio")), cost, ""))

    section("2. Converters, 100,000 elements: converter / by hand")
    paired("double vector argument  (memcpy)", "convert/double_argument", ("<=", 1.5))
    paired("double vector result    (memcpy)", "convert/double_result", ("<=", 1.5))
    paired("object vector argument  (query + AddRef loop)", "convert/object_argument", ("<=", 1.5))
    paired("object vector result    (AddRef + query loop)", "convert/object_result", ("<=", 1.5))

    section("3. API Server: IDrawingObject_GetLayerNumber, one call per connection / bare Asio server")
    b = "server/get_layer_number"
    lib_cps, bare_cps, r = f.get(b, "library_calls_per_s"), f.get(b, "bare_calls_per_s"), f.get(b, "ratio")
    rows.append(("calls per second", f"{lib_cps:,.0f}/s" if lib_cps else "-", f"{bare_cps:,.0f}/s" if bare_cps else "-",
                 ratio_text(r), ">= 0.9x", verdict(r, (">=", 0.9))))
    for p in ("p50", "p99"):
        lib, bare = f.get(b, f"library_{p}_us"), f.get(b, f"bare_{p}_us")
        rows.append((f"latency {p}", duration(lib and lib * 1e3), duration(bare and bare * 1e3), "", "", ""))
    b = "server/four_clients"
    four, one, r = f.get(b, "four_clients_calls_per_s"), f.get(b, "one_client_calls_per_s"), f.get(b, "ratio")
    rows.append(("calls per second, four clients at once / one client", f"{four:,.0f}/s" if four else "-",
                 f"{one:,.0f}/s" if one else "-", ratio_text(r), ">= 1.5x", verdict(r, (">=", 1.5))))

    section("3b. Main thread per remote call: time in the posted call / the export alone")
    for label, name in (("scalar getter IDrawingObject_GetLayerNumber", "main_thread/scalar_getter"),
                        ("64 KiB text argument IApplication_SetCurrentDirectory", "main_thread/text_64k")):
        posted, alone = f.get(name, "main_thread_us"), f.get(name, "export_us")
        extra = f.get(name, "overhead_us")
        rows.append((label, duration(posted and posted * 1e3), duration(alone and alone * 1e3),
                     f"+{extra:.2f} us" if extra is not None else "-", "<= export + 2 us", verdict(extra, ("<=", 2.0))))

    section("4. Name table: FindName over every name / linear scan of the same table")
    sweep, scan = f.get("dispatch/find_handler", "cpu_time"), f.get("dispatch/linear_scan", "cpu_time")
    names = f.get("dispatch/find_handler", "names")
    rows.append((f"lookup, shuffled sweep of {names:,.0f} names" if names else "lookup, shuffled sweep",
                 duration(sweep), duration(scan), ratio_text(sweep / scan if sweep and scan else None), "", ""))
    p50 = f.get("dispatch/find_handler_per_name", "p50_ns")
    p99 = f.get("dispatch/find_handler_per_name", "p99_ns")
    rows.append(("lookup, median per name", duration(p50), "", "", "< 100 ns", verdict(p50, ("<", 100))))
    rows.append(("lookup, 99th percentile per name", duration(p99), "", "", "", ""))

    section("5. Load and build")
    paired("dlopen (lazy) + dlsym + dlclose  (one-function library)", "load/dlopen_and_resolve", None)
    if build.get("clean_build_s") is not None:
        rows.append((f"clean build (generator, host stand-ins, library), {build['jobs']} jobs",
                     f"{build['clean_build_s']:.0f} s", "", "", "", ""))
    if "library_bytes" in build:
        rows.append(("library size (of which code)",
                     f"{build['library_bytes'] / 1e6:.2f} MB ({build['text_bytes'] / 1e6:.2f} MB)", "", "", "", ""))
        rows.append(("exports", f"{build['exports']:,}", "", "", "", ""))

    runs_per_binary = max((len(v) for v in runs.values()), default=0)
    context = context or {}
    print(f"tvAPIC benchmarks, {context.get('date', '')}: {build.get('cpu', 'unknown CPU')}, "
          f"{context.get('num_cpus', '?')} CPUs")
    if "load_before" in build:
        print(f"load average (1, 5, 15 min): {build['load_before']} before, {build['load_after']} after")
    print(f"Each figure is the median of {runs_per_binary} runs; each ratio is measured / baseline "
          "within one process, the two timed in alternating blocks.")
    if "pinned" in build:
        print(f"Processes pinned to one CPU: {build['pinned']}")
    print()
    widths = [60, 14, 14, 8, 9, 8]
    header = ("figure", "measured", "baseline", "ratio", "target", "")
    print("  ".join(h.ljust(w) for h, w in zip(header, widths)).rstrip())
    for row in rows:
        if len(row) == 1:
            print(row[0])  # a section title
            continue
        cells = ("  " + row[0],) + tuple(row[1:])
        print("  ".join(str(c).ljust(w) for c, w in zip(cells, widths)).rstrip())
    for e in f.errors:
        print(f"ERROR: {e}")
    return 1 if f.errors else 0


if __name__ == "__main__":
    sys.exit(main())
