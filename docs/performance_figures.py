#!/usr/bin/env python3
"""Puts the figures of a benchmark run into docs/performance.md, between its marks, and draws docs/roofline.png
(Debian: python3-matplotlib). usage: docs/performance_figures.py BENCH_CSV; `scripts/bench --docs` does both."""
import csv
import pathlib
import sys

HERE = pathlib.Path(__file__).parent
BEGIN, END = "<!-- figures: begin -->", "<!-- figures: end -->"
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


def ratios(f):
    phases = list(dict.fromkeys(r["quantity"] for r in f.rows if r["phase"] == "ratio"))
    sizes = sorted({r["subject"] for r in f.rows if r["phase"] == "ratio"},
                   key=lambda s: float(s.replace("k", "e3").replace("M", "e6")))
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


def main():
    f = Figures(sys.argv[1])
    generated = "\n".join([BEGIN, ""] + machine(f) + ratios(f) + solver(f) + phases(f) + runs(f) + [END])
    page = HERE / "performance.md"
    text = page.read_text()
    page.write_text(text[:text.index(BEGIN)] + generated + text[text.index(END) + len(END):])
    if f.subjects("kernel"):
        picture(f, HERE / "roofline.png")


main()
