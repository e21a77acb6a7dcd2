#!/usr/bin/env python3
"""Draws docs/cup.png: the sample cup and its blank, coloured by thickness strain (Debian: python3-vtk9,
python3-matplotlib). usage: docs/cup_picture.py RESULT_FOLDER PICTURE, after scripts/demo."""
import sys

import matplotlib
matplotlib.use("Agg")
import matplotlib.pyplot as plt
import numpy as np
from PIL import Image
from mpl_toolkits.mplot3d.art3d import Poly3DCollection
from vtk import vtkXMLUnstructuredGridReader
from vtk.util.numpy_support import vtk_to_numpy

STRAIN = "thickness_strain_ln_Ablank_by_Apart"


def read(path):
    reader = vtkXMLUnstructuredGridReader()
    reader.SetFileName(path)
    reader.Update()
    grid = reader.GetOutput()
    points = vtk_to_numpy(grid.GetPoints().GetData())
    triangles = vtk_to_numpy(grid.GetCells().GetConnectivityArray()).reshape(-1, 3)
    return points, triangles, vtk_to_numpy(grid.GetCellData().GetArray(STRAIN))


def main(folder, picture):
    part, triangles, strain = read(folder + "/part.vtu")
    blank, _, _ = read(folder + "/blank.vtu")
    colours = plt.get_cmap("coolwarm_r")
    limit = 0.35
    scale = plt.Normalize(-limit, limit)

    figure = plt.figure(figsize=(9.0, 3.9), dpi=110)
    axes = figure.add_axes([-0.02, -0.16, 0.52, 1.32], projection="3d")
    faces = Poly3DCollection(part[triangles], linewidths=0.15, edgecolors="#40404060")
    faces.set_facecolor(colours(scale(strain)))
    axes.add_collection3d(faces)
    reach = np.abs(part[:, :2]).max()
    axes.set_xlim(-reach, reach), axes.set_ylim(-reach, reach), axes.set_zlim(0.0, part[:, 2].max())
    axes.set_box_aspect((2 * reach, 2 * reach, part[:, 2].max()), zoom=1.0)
    axes.view_init(elev=32, azim=-58)
    axes.set_axis_off()

    axes = figure.add_axes([0.53, 0.11, 0.34, 0.78])
    drawn = axes.tripcolor(blank[:, 0], blank[:, 1], triangles, facecolors=strain, cmap=colours, norm=scale,
                           edgecolors="#40404060", linewidth=0.15)
    axes.set_aspect("equal")
    axes.set_xlabel("u (mm)"), axes.set_ylabel("v (mm)")
    for side in ("top", "right"):
        axes.spines[side].set_visible(False)
    bar = figure.colorbar(drawn, cax=figure.add_axes([0.9, 0.15, 0.015, 0.7]))
    bar.set_label("thickness strain ln(t/t0)")
    figure.canvas.draw()
    image = Image.fromarray(np.asarray(figure.canvas.buffer_rgba())).convert("RGB")
    image.quantize(128, dither=Image.Dither.NONE).save(picture, optimize=True)   # a tenth of the size of full colour


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(*sys.argv[1:])
