"""Draws the parts of the sure path's picture: each part, and the blanks of both paths beside it.

usage: sure_pictures.py FOLDER OUTPUT_FOLDER
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
from mpl_toolkits.mplot3d.art3d import Poly3DCollection

PARTS = (("hat", "hat, turned by 45° about y"), ("hem", "hem of 180°"), ("tube", "slit tube of 350°"),
         ("crash_box", "crash box"))


def numbers(folder, name):
    with open(os.path.join(folder, name)) as lines:
        reader = csv.reader(lines)
        heading = next(reader)
        values = np.array([[float(cell) for cell in line] for line in reader])
    return {key: values[:, k] for k, key in enumerate(heading)}


def spatial(axes, points, corners, title):
    """The part, seen from the front left, shaded by the slope of its triangles."""
    faces = points[corners]
    normals = np.cross(faces[:, 1] - faces[:, 0], faces[:, 2] - faces[:, 0])
    normals /= np.linalg.norm(normals, axis=1)[:, None]
    light = 0.35 + 0.65 * np.abs(normals @ np.array([0.3, -0.5, 0.81]))
    axes.add_collection3d(Poly3DCollection(faces, facecolors=plt.cm.Blues_r(0.75 * light), edgecolors="none"))
    low, high = points.min(axis=0), points.max(axis=0)
    axes.set_xlim(low[0], high[0])
    axes.set_ylim(low[1], high[1])
    axes.set_zlim(low[2], high[2])
    axes.set_box_aspect(high - low)
    axes.view_init(25, -60)
    axes.set_axis_off()
    axes.set_title(title, fontsize=11)


def flat(axes, u, v, corners, size, title):
    """The blank's mesh, of about `size` mm; triangles that are turned over in red."""
    e1 = np.stack([u[corners[:, 1]] - u[corners[:, 0]], v[corners[:, 1]] - v[corners[:, 0]]])
    e2 = np.stack([u[corners[:, 2]] - u[corners[:, 0]], v[corners[:, 2]] - v[corners[:, 0]]])
    area = e1[0] * e2[1] - e1[1] * e2[0]
    turned = area * np.sign(np.median(area)) <= 0.0
    axes.triplot(u, v, corners, color="0.45", linewidth=0.25)
    if turned.any():
        axes.tripcolor(u, v, corners[turned], np.ones(turned.sum()), cmap="autumn", alpha=0.7)
        title += ", %d of %d turned over" % (turned.sum(), len(corners))
    reach = 1.5 * size  # what flies farther is cut off
    middle = np.median(u), np.median(v)
    if max(np.ptp(u), np.ptp(v)) > 2.0 * reach:
        axes.set_xlim(middle[0] - reach, middle[0] + reach)
        axes.set_ylim(middle[1] - reach, middle[1] + reach)
    axes.set_title(title, fontsize=9)
    axes.set_aspect("equal")
    axes.tick_params(labelsize=7)
    axes.set_xlabel("u (mm)", fontsize=8)
    axes.set_ylabel("v (mm)", fontsize=8)


folder, output = sys.argv[1:]
figure = plt.figure(figsize=(13, 3.4 * len(PARTS)), constrained_layout=True)
for row, (name, words) in enumerate(PARTS):
    nodes = numbers(folder, "sure_%s.csv" % name)
    elements = numbers(folder, "sure_%s_triangles.csv" % name)
    corners = np.stack([elements[key] for key in ("n1", "n2", "n3")], axis=1).astype(int) - 1
    size = max(np.ptp(nodes["sure_u"]), np.ptp(nodes["sure_v"]))
    spatial(figure.add_subplot(len(PARTS), 3, 3 * row + 1, projection="3d"),
            np.stack([nodes[key] for key in "xyz"], axis=1), corners, words)
    for column, path in ((2, "fixed"), (3, "sure")):
        ends = "converges" if elements[path + "_converged"][0] else "does not converge"
        flat(figure.add_subplot(len(PARTS), 3, 3 * row + column), nodes[path + "_u"], nodes[path + "_v"], corners, size,
             "%s path %s" % (path, ends))
figure.savefig(os.path.join(output, "sure_path.png"), dpi=64)
