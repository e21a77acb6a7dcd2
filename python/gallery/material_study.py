"""What the material decides: one cup over hardening exponent and anisotropy.

    python3 material_study.py [PICTURE.png]

Solves the sample cup for several Swift exponents n and mean anisotropies r, in threads, and draws the thinnest place and the
blank's size over them. Each run has a handle of its own; the library works beside the interpreter.
"""
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

import numpy as np
from matplotlib.figure import Figure

import tornwalzen

picture = sys.argv[1] if len(sys.argv) > 1 else "material_study.png"
points, triangles = tornwalzen.read_obj(Path(__file__).resolve().parents[2] / "samples" / "square_cup.obj")

exponents = [0.10, 0.15, 0.20, 0.25, 0.30]
anisotropies = [0.7, 1.0, 1.5, 2.0]


def of(variant):
    """Thinnest place and blank of one material."""
    n, r = variant
    steel = tornwalzen.law("swift", K=550.0, e0=0.007, n=n)
    result = tornwalzen.solve(points, triangles, material=steel, r=r, thickness=1.0, hold="x0,y0", model="fixed")
    return result.thickness.min(), result.rectangle().length


with ThreadPoolExecutor() as threads:
    table = np.array(tornwalzen.map(of, [(n, r) for r in anisotropies for n in exponents], threads))
table = table.reshape(len(anisotropies), len(exponents), 2)

figure = Figure(figsize=(10, 4), layout="constrained")
for place, label in enumerate(("thinnest place (mm)", "length of the blank (mm)")):
    axes = figure.add_subplot(1, 2, place + 1)
    for row, r in enumerate(anisotropies):
        axes.plot(exponents, table[row, :, place], marker="o", label=f"r = {r:g}")
    axes.set(xlabel="hardening exponent n", ylabel=label)
    axes.grid(alpha=0.3)
    axes.legend()
figure.suptitle("square cup, 1 mm: what hardening and anisotropy do")
figure.savefig(picture, dpi=110)
for row, r in enumerate(anisotropies):
    print(f"r {r:g}: thinnest {table[row, :, 0].min():.3f} to {table[row, :, 0].max():.3f} mm")
print(f"picture in {picture}")
