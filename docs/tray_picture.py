#!/usr/bin/env python3
"""Draws docs/tray.png: the part of samples/tray.step, coloured by its thickness, and the outline that blank.dxf holds
(Debian: python3-matplotlib, python3-pil). usage: docs/tray_picture.py RESULT_FOLDER PICTURE, after
    tornwalzen solve samples/tray.step --material DC04 --square --csv --out RESULT_FOLDER"""
import csv
import math
import sys

import matplotlib
matplotlib.use("Agg")
import matplotlib.pyplot as plt
import numpy as np
from PIL import Image
from mpl_toolkits.mplot3d.art3d import Poly3DCollection


def table(path, *columns):
    with open(path, newline="") as lines:
        return np.array([[float(row[c]) for c in columns] for row in csv.DictReader(lines)])


def curves(path):
    """The closed polylines of a DXF file with their layers; arcs (bulge = tan of a quarter of the angle) as chords."""
    found, tags = [], open(path, encoding="utf-8").read().splitlines()
    for code, value in zip(tags[0::2], tags[1::2]):
        code = int(code)
        if code == 0:
            found.append(["", []] if value == "LWPOLYLINE" else None)
        elif found and found[-1] is not None:
            layer_points = found[-1]
            if code == 8:
                layer_points[0] = value
            elif code == 10:
                layer_points[1].append([float(value), 0.0, 0.0])
            elif code in (20, 42):
                layer_points[1][-1][1 if code == 20 else 2] = float(value)
    for layer, points in filter(None, found):
        line = []
        for (x, y, bulge), (xe, ye, _) in zip(points, points[1:] + points[:1]):
            turn = 4.0 * math.atan(bulge)
            for k in range(16 if bulge else 1):
                if not bulge:
                    line.append((x, y))
                    continue
                centre = complex(x, y) + complex(xe - x, ye - y) * complex(0.5, 0.5 / math.tan(turn / 2.0))
                at = centre + (complex(x, y) - centre) * np.exp(1j * turn * k / 16)
                line.append((at.real, at.imag))
        yield layer, np.array(line + line[:1])


def main(folder, picture):
    part = table(folder + "/nodes.csv", "part_x_mm", "part_y_mm", "part_z_mm")
    triangles = table(folder + "/triangles.csv", "node_1", "node_2", "node_3").astype(int) - 1
    thickness = table(folder + "/triangles.csv", "thickness_mm")[:, 0]
    colours, scale = plt.get_cmap("coolwarm_r"), plt.Normalize(0.8, 1.2)

    figure = plt.figure(figsize=(9.6, 3.6), dpi=110)
    axes = figure.add_axes([-0.02, -0.1, 0.48, 1.2], projection="3d")
    faces = Poly3DCollection(part[triangles], linewidths=0.1, edgecolors="#40404050")
    faces.set_facecolor(colours(scale(thickness)))
    axes.add_collection3d(faces)
    reach = np.abs(part[:, :2]).max(axis=0)
    axes.set_xlim(-reach[0], reach[0]), axes.set_ylim(-reach[1], reach[1]), axes.set_zlim(0.0, part[:, 2].max())
    axes.set_box_aspect((2 * reach[0], 2 * reach[1], part[:, 2].max()), zoom=0.98)
    axes.view_init(elev=38, azim=-62)
    axes.set_axis_off()
    bar = figure.colorbar(plt.cm.ScalarMappable(scale, colours), cax=figure.add_axes([0.455, 0.2, 0.012, 0.6]))
    bar.set_label("thickness (mm)")

    axes = figure.add_axes([0.6, 0.13, 0.38, 0.82])
    for layer, line in curves(folder + "/blank.dxf"):
        axes.plot(line[:, 0], line[:, 1], color="#1b1f24" if layer == "OUTER" else "#b3261e", linewidth=1.4)
    axes.set_aspect("equal")
    axes.set_xlabel("blank.dxf (mm)")
    for side in ("top", "right"):
        axes.spines[side].set_visible(False)
    figure.canvas.draw()
    image = Image.fromarray(np.asarray(figure.canvas.buffer_rgba())).convert("RGB")
    image.quantize(128, dither=Image.Dither.NONE).save(picture, optimize=True)   # a tenth of the size of full colour


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(*sys.argv[1:])
