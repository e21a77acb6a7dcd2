"""Will it split? The forming-limit diagram of a cup for three thicknesses of one steel.

    python3 fld.py [PICTURE.png]

The limit curve is the formula for mild steels, FLC0 = (23.3 + 14.13 t) n / 0.21; zones as in the reports of the host
program.
"""
import sys
from pathlib import Path

import numpy as np
from matplotlib.figure import Figure

import tornwalzen

picture = sys.argv[1] if len(sys.argv) > 1 else "fld.png"
points, triangles = tornwalzen.read_obj(Path(__file__).resolve().parents[2] / "samples" / "square_cup.obj")
steel = tornwalzen.law("swift", K=549.03, e0=0.007, n=0.18)
colours = {0: "#2b83ba", 1: "#fdae61", 2: "#a50026", 3: "#8073ac"}

figure = Figure(figsize=(13, 4.4), layout="constrained")
for place, thickness in enumerate((0.5, 1.0, 2.0)):
    result = tornwalzen.solve(points, triangles, material=steel, thickness=thickness, hold="x0,y0", model="fixed",
                              limit=tornwalzen.keeler(thickness, 0.18))
    axes = figure.add_subplot(1, 3, place + 1)
    for zone, colour in colours.items():
        of = result.zones == zone
        share = 100.0 * result.part_area[of].sum() / result.part_area.sum()
        axes.scatter(*result.strains[of, ::-1].T, s=3, color=colour,
                     label=f"{tornwalzen.limits.ZONES[zone]}: {share:.1f} %")
    minor = np.linspace(-0.5, 0.3, 200)
    axes.plot(minor, result.limit.curve.at(minor), color="black")
    axes.set(title=f"{thickness:g} mm, nearest {np.nanmin(result.limit.distance):.1f} % to the curve",
             xlabel="minor strain", ylabel="major strain", xlim=(-0.5, 0.3), ylim=(-0.05, 0.8))
    axes.legend(loc="upper right", fontsize=8)
    print(f"{thickness:g} mm: " + ", ".join(f"{tornwalzen.limits.ZONES[zone]} {np.count_nonzero(result.zones == zone)}"
                                            for zone in colours))
figure.savefig(picture, dpi=110)
print(f"picture in {picture}")
