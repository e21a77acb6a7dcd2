#!/usr/bin/env python3
"""Puts the figures of a benchmark run into docs/performance.md, between their marks, and draws docs/roofline.png and
docs/threads.png; parts that did not run, or only in small sizes, stay as they are (Debian: python3-matplotlib). usage: docs/performance_figures.py BENCH_CSV; `scripts/bench --docs` does both."""
import csv
import pathlib
import sys

HERE = pathlib.Path(__file__).parent
THREADED = " t2"  # ends the size of a ratio of two threads to one
SIZES = ["1k", "10k", "100k", "500k", "1M"]


class Figures:
    def __init__(self, path):
        with open(path) as file:
            self.rows = list(csv.DictReader(file))

    def value(self, phase, subject, who, quantity):
        for r in self.rows:
            if (r["phase"], r["subject"], r["who"], r["quantity"]) == (phase, subject, who, quantity):
                return float(r["value"])
        return None

    def subjects(self, phase):
        return list(dict.fromkeys(r["subject"] for r in self.rows if r["phase"] == phase))

    def who(self, phase, subject):
        return list(dict.fromkeys(r["who"] for r in self.rows if (r["phase"], r["subject"]) == (phase, subject)))


def table(head, rows):
    out = ["| " + " | ".join(head) + " |", "|" + "---|" + "--:|" * (len(head) - 1)]
    return out + ["| " + " | ".join(r) + " |" for r in rows] + [""]


def shown(value, pattern="{:.3g}", scale=1.0):
    return "" if value is None else pattern.format(value * scale)


def machine(f):
    name = next((r["subject"] for r in f.rows if r["phase"] == "machine" and r["who"] == "fma"), "?")
    core = next((r["subject"] for r in f.rows if r["phase"] == "machine" and r["who"] == "dgemm"), "none")
    return [f"Machine: {name}, one core; FMA peak {shown(f.value('machine', name, 'fma', 'peak'))} GFLOP/s, OpenBLAS' "
            f"DGEMM {shown(f.value('machine', core, 'dgemm', 'peak'))} GFLOP/s with its kernels for {core}, reading "
            f"memory {shown(f.value('machine', 'memory', 'read', 'bandwidth'))} GB/s. Medians of processor times.", ""]


def triangles(size):
    """What a size is sorted by; a part goes first."""
    number = size.replace("k", "e3").replace("M", "e6")
    return float(number) if number[0].isdigit() else 0.0


def ratios(f):
    rows = [r for r in f.rows if r["phase"] == "ratio" and not r["subject"].endswith(THREADED)]
    phases = list(dict.fromkeys(r["quantity"] for r in rows))
    sizes = sorted({r["subject"] for r in rows}, key=triangles)
    rows = [[p] + [shown(f.value("ratio", s, "tornwalzen", p), "{:.2f}") for s in sizes] for p in phases]
    return ["### Ratios", ""] + table(["phase"] + sizes, rows)


def solver(f):
    out = ["### Solver", ""]
    for s in f.subjects("numeric"):
        rows = []
        for who in f.who("numeric", s):
            ms = [shown(f.value(p, s, who, "cpu"), "{:.4g}", 1e3) for p in ("analyse", "numeric-first", "numeric", "solve")]
            rows.append([who] + ms + [shown(f.value("numeric", s, who, "rate")), shown(f.value("solve", s, who, "rate")),
                        shown(f.value("memory", s, who, "peak"), "{:.1f}", 1e-6),
                        shown(f.value("fill", s, who, "nnz(L)"), "{:.0f}", 1e-3),
                        shown(f.value("fill", s, who, "flops"), "{:.4g}", 1e-9)])
        out += [f"`{s}`", ""] + table(["", "analyse ms", "first ms", "repeat ms", "solve ms", "GFLOP/s", "solve GB/s",
                                       "peak MB", "nnz(L) 1000", "Gflop"], rows)
    return out


def phases(f):
    out, names = ["### Phases per element, unknown or node (ns)", ""], ["tangent", "residual", "energy",
                                                                      "held-unknowns", "factorization", "pattern"]
    subjects = [s for s in SIZES if any(f.value(n, f"{k}-{s}", "tornwalzen", "cpu") for n in names
                                        for k in ("phases", "pattern"))]
    def per(name, size):
        for item in ("element", "unknown", "node"):
            for kind in ("phases", "pattern"):
                v = f.value(name, f"{kind}-{size}", "tornwalzen", f"per {item}")
                if v is not None:
                    return shown(v, "{:.1f}")
        return ""
    return out + table(["nodes"] + subjects, [[n] + [per(n, s) for s in subjects] for n in names])


def runs(f):
    out, subjects = ["### Whole runs (s)", ""], f.subjects("run")
    parts = ["OSMAIN", "development", "tangent passes", "factorizations", "solves", "residual passes",
             "rest of Newton steps", "other", "cholmod-supernodal"]
    rows = [[s] + [shown(f.value("run", s, p, "cpu")) for p in parts] for s in subjects]
    return out + table(["", "all", "development"] + parts[2:-1] + ["CHOLMOD's share alone"], rows)


def picture(f, path):
    import matplotlib
    matplotlib.use("Agg")
    import matplotlib.pyplot as plt
    figure, axes = plt.subplots(figsize=(7, 4.2))
    sizes = sorted(map(int, f.subjects("kernel")))
    for who in f.who("kernel", str(sizes[0])):
        axes.plot(sizes, [f.value("kernel", str(c), who, "rate") for c in sizes], marker="o", ms=3, label=who)
    for who, style in (("fma", "k-"), ("dgemm", "k--")):
        peak = next((float(r["value"]) for r in f.rows if r["phase"] == "machine" and r["who"] == who), None)
        if peak:
            axes.plot(sizes, [peak] * len(sizes), style, lw=1, label=who.upper() + " peak")
    axes.set(xscale="log", yscale="log", xlabel="rows of the front, half of them eliminated", ylabel="GFLOP/s, one core")
    axes.grid(True, which="both", alpha=0.3)
    axes.legend(fontsize=8)
    figure.savefig(path, dpi=110, bbox_inches="tight")


def threaded(f):
    """(phase, size, ratio) of two threads to one, and to the peers on two."""
    return [(r["quantity"], r["subject"][:-len(THREADED)], float(r["value"])) for r in f.rows
            if r["phase"] == "ratio" and r["subject"].endswith(THREADED)]


def threads(f):
    rows = []
    for phase, size, ratio in threaded(f):
        quiet = f.value("threads", size, phase, "undisturbed")
        ms = [f.value("threads", size, phase, "wall " + n) if quiet != 0 else None for n in "12"]
        cpu = [f.value("threads", size, phase, "cpu " + n) for n in "12"]
        busy = 0.5 * cpu[1] / cpu[0] if all(cpu) else None
        rows.append([f"{phase} {size}"] + [shown(v, "{:.4g}", 1e3) for v in ms] +
                    [f"{ratio:.2f}" if quiet != 0 else "", shown(busy, "{:.2f}"), shown(quiet, "{:.0f}")])
    memory = [[f"{n} threads" if n != "1" else "1 thread"] +
              [shown(f.value("thread-memory", size, n, q), "{:.0f}", 1e-6) for q in ("peak", "own")]
              for size in f.subjects("thread-memory") for n in f.who("thread-memory", size)]
    return (table(["", "one thread, ms", "two, ms", "ratio", "half of the processor times' ratio", "undisturbed runs"],
                  rows) + table(["sure run", "peak of the process, MB", "told as `thread_bytes`, MB"], memory))


def peers(f):
    rows = []
    for size in f.subjects("numeric-mumps"):
        for who in f.who("numeric-mumps", size):
            rows.append([f"{who}, {size} nodes"] + [shown(f.value(p + "-mumps", size, who, "cpu"), "{:.4g}", 1e3)
                                                  for p in ("analyse", "numeric", "solve")])
    return table(["processor times, ms", "analyse", "repeat", "solve"], rows)


def program(f):
    rows = []
    for size in f.subjects("program"):
        for n in f.who("program", size):
            stages = [f.value("program", size, n, q) for q in ("reading", "run", "results", "writing", "whole")]
            rows.append([f"{n} threads" if n != "1" else "1 thread"] + [shown(v, "{:.3f}") for v in stages] +
                        [shown((stages[0] + stages[3]) / stages[4], "{:.1f} %", 1e2)])
    return table(["wall times, s", "reading, checking", "run", "its results", "writing", "process",
                  "reading and writing of it"], rows)


def threads_picture(f, path):
    import matplotlib
    matplotlib.use("Agg")
    import matplotlib.pyplot as plt
    figure, (left, right) = plt.subplots(1, 2, figsize=(9, 3.6))
    for phase, size, ratio in reversed([t for t in threaded(f) if f.value("threads", t[1], t[0], "cpu 1")]):
        busy = 2.0 * f.value("threads", size, phase, "cpu 1") / f.value("threads", size, phase, "cpu 2")
        left.barh(f"{phase} {size}", busy, color="tab:blue", alpha=0.3)
        if f.value("threads", size, phase, "undisturbed"):
            left.barh(f"{phase} {size}", 1.0 / ratio, color="tab:blue", height=0.5)
    left.set(xlabel="speed-up of two threads over one; pale: were both\nalways at work (from processor times)", xlim=(0, 2))
    for size in f.subjects("thread-memory"):
        n = f.who("thread-memory", size)
        right.plot([int(k) for k in n], [1e-6 * f.value("thread-memory", size, k, "peak") for k in n], marker="o",
                   label="process")
        right.plot([int(k) for k in n], [1e-6 * f.value("thread-memory", size, k, "own") for k in n], marker="s",
                   label="of it the threads'")
        right.set(title=f"sure run, {size} triangles", xlabel="threads", ylabel="MB", ylim=(0, None))
    right.grid(alpha=0.3)
    right.legend(fontsize=8)
    figure.tight_layout()
    figure.savefig(path, dpi=110)


def replaced(text, name, lines):
    begin, end = f"<!-- {name}: begin -->", f"<!-- {name}: end -->"
    return text[:text.index(begin)] + "\n".join([begin, ""] + lines + [end]) + text[text.index(end) + len(end):]


def main():
    f = Figures(sys.argv[1])
    page = HERE / "performance.md"
    text = page.read_text()
    if "jittered-500k-mesher" in f.subjects("numeric") and f.subjects("run"):
        text = replaced(text, "figures", machine(f) + ratios(f) + solver(f) + phases(f) + runs(f))
    if f.subjects("numeric-mumps"):
        text = replaced(text, "peers", peers(f))
    if threaded(f) and f.subjects("thread-memory"):
        text = replaced(text, "threads", threads(f))
        threads_picture(f, HERE / "threads.png")
    if f.subjects("program"):
        text = replaced(text, "program", program(f))
    page.write_text(text)
    if f.subjects("kernel"):
        picture(f, HERE / "roofline.png")


main()
