"""Draws the pictures of the drawn cup: outlines of the blanks, and thickness in the simulation and by both models.

usage: verify_pictures.py FOLDER OUTPUT_FOLDER
"""
import csv
import os
import sys

try:
    import matplotlib
except ImportError:
    sys.exit("no pictures: the Debian package python3-matplotlib is missing")
matplotlib.use("Agg")
import matplotlib.pyplot as plt
import numpy as np


def columns(folder, name):
    with open(os.path.join(folder, name)) as lines:
        reader = csv.reader(lines)
        heading = next(reader)
        values = np.array([[float(cell) for cell in line] for line in reader])
    return {key: values[:, k] for k, key in enumerate(heading)}


def around(u, v):
    """Order of the edge's nodes about the origin."""
    return np.argsort(np.arctan2(v, u))


folder, output = sys.argv[1:]
if not os.path.exists(os.path.join(folder, "cup_edge.csv")):
    sys.exit("no pictures: the drawn cup was left out")
edge = columns(folder, "cup_edge.csv")
nodes = columns(folder, "cup_nodes.csv")
elements = columns(folder, "cup_elements.csv")
corners = np.stack([elements["n1"], elements["n2"], elements["n3"]], axis=1).astype(int) - 1

figure, (left, middle, right) = plt.subplots(1, 3, figsize=(14, 4.4), constrained_layout=True)
order = around(edge["true_u"], edge["true_v"])
scale = 10.0  # the deviations are drawn so many times larger
for key, label, colour in (("fixed", "curve 1, energy blank", "tab:orange"),
                           ("best", "curve 1, r = 1.5, energy part", "tab:blue")):
    u = edge["true_u"] + scale * (edge[key + "_u"] - edge["true_u"])
    v = edge["true_v"] + scale * (edge[key + "_v"] - edge["true_v"])
    left.plot(u[order], v[order], color=colour, label=label)
left.plot(edge["true_u"][order], edge["true_v"][order], color="black", linewidth=1, label="true blank")
left.set_title("outer edge of the blank, deviations times %d" % scale)
left.set_xlabel("u (mm)")
left.set_ylabel("v (mm)")
left.set_aspect("equal")
left.legend(loc="lower left", fontsize=8)

low = min(elements["true_thickness_mm"].min(), elements["thickness_mm"].min())
high = max(elements["true_thickness_mm"].max(), elements["thickness_mm"].max())
for axes, key, title in ((middle, "true_thickness_mm", "thickness in the simulation (mm)"),
                         (right, "thickness_mm", "thickness here, r = 1.5, energy part (mm)")):
    field = axes.tripcolor(nodes["u"], nodes["v"], corners, elements[key], vmin=low, vmax=high, cmap="viridis",
                           rasterized=True)
    axes.set_title(title)
    axes.set_xlabel("u (mm)")
    axes.set_aspect("equal")
figure.colorbar(field, ax=[middle, right], shrink=0.9)
figure.savefig(os.path.join(output, "drawn_cup.png"), dpi=72)

fields = columns(folder, "press_fields.csv")
figure, panels = plt.subplots(1, 3, figsize=(14, 4.8), constrained_layout=True)
low = min(fields[key].min() for key in fields)
high = max(fields[key].max() for key in fields)
for axes, key, title in zip(panels, ("simulation_mm", "fixed_mm", "press_mm"),
                            ("thickness in the simulation (mm)", "fixed model", "press model, with its process data")):
    field = axes.tripcolor(nodes["u"], nodes["v"], corners, fields[key], vmin=low, vmax=high, cmap="viridis",
                           rasterized=True)
    axes.set_title(title)
    axes.set_xlabel("u (mm)")
    axes.set_aspect("equal")
figure.colorbar(field, ax=list(panels), shrink=0.9)
figure.savefig(os.path.join(output, "press_thickness.png"), dpi=64)
