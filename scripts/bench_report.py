#!/usr/bin/env python3
"""Run the benchmark programs and write a readable comparison report.

Every case is named "<area>/<kernel>/<impl>/<size>" (see bench/bench_common.hpp).
The script runs each bench_* program with repetitions, takes the median time of
each case, and writes one Markdown table per area and kernel with this
library's time, each peer's time and the ratio, plus PNG plots.

Usage: bench_report.py BENCH_DIR OUT_MD [--repetitions N] [--min-time S] [--filter RE]
"""
import argparse
import collections
import datetime
import glob
import json
import math
import os
import platform
import subprocess
import sys

# Kernels plotted from the element-wise area, in order of preference.
ELEMENTWISE_PLOTS = ["add_32f", "mul_32f", "convert_32f16s_near", "convert_16s32f", "add_16s_sfs0"]
SELF = "orvspx"


def cpu_model():
    try:
        for line in open("/proc/cpuinfo"):
            if line.startswith("model name"):
                return line.split(":", 1)[1].strip()
    except OSError:
        pass
    return platform.processor() or "unknown"


def run_program(path, reps, min_time, flt):
    cmd = [path, "--benchmark_format=json", f"--benchmark_repetitions={reps}",
           "--benchmark_report_aggregates_only=true", f"--benchmark_min_time={min_time}"]
    if flt:
        cmd.append(f"--benchmark_filter={flt}")
    print("running", " ".join(cmd), file=sys.stderr, flush=True)
    out = subprocess.run(cmd, check=True, capture_output=True, text=True).stdout
    return json.loads(out)


UNIT = {"ns": 1e-3, "us": 1.0, "ms": 1e3, "s": 1e6}


def collect(bench_dir, reps, min_time, flt):
    # results[area][kernel][size][impl] = median microseconds
    results = collections.defaultdict(lambda: collections.defaultdict(dict))
    for prog in sorted(glob.glob(os.path.join(bench_dir, "bench_*"))):
        if not os.access(prog, os.X_OK) or os.path.isdir(prog):
            continue
        data = run_program(prog, reps, min_time, flt)
        for b in data["benchmarks"]:
            if b.get("aggregate_name") != "median":
                continue
            parts = b["run_name"].split("/")
            if len(parts) < 4 or not parts[3].isdigit():
                continue  # not a named comparison case
            area, kernel, impl, size = parts[:4]
            t = b["real_time"] * UNIT[b["time_unit"]]
            results[area][kernel].setdefault(int(size), {})[impl] = t
    return results


def fft_flops(kernel, n):
    """Nominal floating-point operations of one transform of n points."""
    if n < 2:
        return None
    real = kernel.startswith("r2c") or kernel.startswith("real")
    return (2.5 if real else 5.0) * n * math.log2(n)


def fmt_time(us):
    if us is None:
        return "–"
    if us >= 1000:
        return f"{us / 1000:.2f} ms"
    if us >= 1:
        return f"{us:.2f} µs"
    return f"{us * 1000:.1f} ns"


def write_report(results, out_md, plot_dir, reps, min_time):
    lines = []
    verdicts = []
    lines.append("# Benchmarks\n")
    lines.append(f"Measured {datetime.date.today().isoformat()} on **{cpu_model()}** "
                 f"({os.cpu_count()} logical CPUs), {platform.system()} {platform.machine()}.")
    lines.append(f"Each figure is the **median of {reps} repetitions** "
                 f"(each repetition runs at least {min_time} s); all implementations of a row ran "
                 "in the same process on the same data. The ratio is this library's time divided "
                 "by the peer's: below 1 means orvspx is faster.\n")
    lines.append("Columns: `orvspx` is this library; `plain` a straightforward loop doing the same "
                 "work, compiled with -O3 in the same program; `memcpy`/`memset` the C library; "
                 "`fftw` FFTW 3 with FFTW_MEASURE plans; `kissfft` KissFFT; `volk` VOLK's "
                 "run-time dispatched kernels; `liquid` liquid-dsp. Times are per call.\n")
    lines.append("Regenerate with `make bench` (it installs the peers from Debian's packages when "
                 "it can, builds in Release and rewrites this file and its plots).\n")
    lines.append("SUMMARY_PLACEHOLDER\n")
    plots = []
    for area in sorted(results):
        lines.append(f"## {area}\n")
        for kernel in sorted(results[area]):
            rows = results[area][kernel]
            impls = sorted({i for r in rows.values() for i in r if i != SELF})
            lines.append(f"### {kernel}\n")
            head = ["size", SELF] + [x for p in impls for x in (p, f"{SELF}/{p}")]
            if area == "fft":
                head += [f"MFLOPS {SELF}"] + [f"MFLOPS {p}" for p in impls]
            lines.append("| " + " | ".join(head) + " |")
            lines.append("|" + "---|" * len(head))
            for size in sorted(rows):
                r = rows[size]
                mine = r.get(SELF)
                cells = [str(size), fmt_time(mine)]
                for p in impls:
                    t = r.get(p)
                    cells.append(fmt_time(t))
                    if mine is not None and t:
                        ratio = mine / t
                        cells.append(f"{ratio:.2f}")
                        verdicts.append((area, kernel, p, size, ratio))
                    else:
                        cells.append("–")
                if area == "fft":
                    for impl in [SELF] + impls:
                        t = r.get(impl)
                        fl = fft_flops(kernel, size)
                        cells.append(f"{fl / t:.0f}" if t and fl else "–")
                lines.append("| " + " | ".join(cells) + " |")
            lines.append("")
            if area == "fft" or (area == "elementwise" and kernel in ELEMENTWISE_PLOTS):
                plots.append((area, kernel, rows))
    # Keep at most two element-wise plots, in the preferred order.
    ew = sorted([p for p in plots if p[0] == "elementwise"], key=lambda p: ELEMENTWISE_PLOTS.index(p[1]))
    plots = [p for p in plots if p[0] != "elementwise"] + ew[:2]
    images = make_plots(plots, plot_dir, out_md)
    if images:
        lines.append("## Plots\n")
        for title, rel in images:
            lines.append(f"![{title}]({rel})\n")
    lines[lines.index("SUMMARY_PLACEHOLDER\n")] = summary(verdicts)
    with open(out_md, "w") as fh:
        fh.write("\n".join(lines) + "\n")
    print(f"wrote {out_md}", file=sys.stderr)


def summary(verdicts):
    if not verdicts:
        return "## Summary\n\nNo comparison cases were run.\n"
    by = collections.defaultdict(list)
    for area, kernel, peer, size, ratio in verdicts:
        by[(area, kernel, peer)].append((size, ratio))
    ahead, behind, even = [], [], []
    for (area, kernel, peer), rs in sorted(by.items()):
        lo = min(r for _, r in rs)
        hi = max(r for _, r in rs)
        text = f"`{kernel}` vs {peer}: {SELF}/{peer} from {lo:.2f} to {hi:.2f}"
        if hi < 0.95:
            ahead.append(text)
        elif lo > 1.05:
            behind.append(text)
        else:
            even.append(text)
    out = ["## Summary\n"]
    for title, items in (("Ahead (faster than the peer at every size)", ahead),
                         ("Mixed or even (within 5 % of the peer, or ahead at some sizes and behind at others)", even),
                         ("Behind (slower than the peer at every size)", behind)):
        out.append(f"**{title}:**\n")
        out.extend(f"- {t}" for t in items) if items else out.append("- none")
        out.append("")
    return "\n".join(out)


def make_plots(plots, plot_dir, out_md):
    if not plots:
        return []
    try:
        import matplotlib
        matplotlib.use("Agg")
        import matplotlib.pyplot as plt
    except ImportError:
        print("matplotlib not found: no plots", file=sys.stderr)
        return []
    os.makedirs(plot_dir, exist_ok=True)
    images = []
    for area, kernel, rows in plots:
        impls = sorted({i for r in rows.values() for i in r})
        fig, ax = plt.subplots(figsize=(6.4, 4.0))
        for impl in impls:
            pts = sorted((s, r[impl]) for s, r in rows.items() if impl in r)
            ax.plot([p[0] for p in pts], [p[1] for p in pts], marker="o",
                    linewidth=2.2 if impl == SELF else 1.2, label=impl)
        ax.set_xscale("log", base=2)
        ax.set_yscale("log")
        ax.set_xlabel("size (elements or points)")
        ax.set_ylabel("time per call (µs, median)")
        ax.set_title(f"{area}: {kernel}")
        ax.grid(True, which="both", alpha=0.3)
        ax.legend()
        fig.tight_layout()
        path = os.path.join(plot_dir, f"{area}_{kernel}.png")
        fig.savefig(path, dpi=90)
        plt.close(fig)
        images.append((f"{area}: {kernel}", os.path.relpath(path, os.path.dirname(out_md))))
    return images


def main():
    ap = argparse.ArgumentParser()
    ap.add_argument("bench_dir")
    ap.add_argument("out_md")
    ap.add_argument("--repetitions", type=int, default=5)
    ap.add_argument("--min-time", type=float, default=0.1)
    ap.add_argument("--filter", default="")
    a = ap.parse_args()
    results = collect(a.bench_dir, a.repetitions, a.min_time, a.filter)
    plot_dir = os.path.join(os.path.dirname(os.path.abspath(a.out_md)), "bench")
    write_report(results, a.out_md, plot_dir, a.repetitions, a.min_time)


if __name__ == "__main__":
    main()
