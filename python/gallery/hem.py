"""A hem: sheet folded back under itself opens exactly, whatever way it lies.

    python3 hem.py [PICTURE.png]

A flat flange, a bend of 180 degrees and a return flange: a developable part, whose blank is known to the last digit. Shows
that undercut needs no special care on the sure path, and how far the blank is from the exact one.
"""
import sys

import numpy as np

import tornwalzen

picture = sys.argv[1] if len(sys.argv) > 1 else "hem.png"

# 1. The profile of the hem: 60 mm flat, a bend of radius 3 mm, 20 mm back; its arc length is the exact blank.
radius, flat, back, width = 3.0, 60.0, 20.0, 80.0
bend = np.radians(np.linspace(0.0, 180.0, 25))
x = np.concatenate((np.linspace(0.0, flat, 25)[:-1], flat + radius * np.sin(bend),
                    np.linspace(flat, flat - back, 11)[1:]))
z = np.concatenate((np.zeros(24), radius * (np.cos(bend) - 1.0), np.full(10, -2.0 * radius)))
exact = np.concatenate(([0.0], np.cumsum(np.hypot(np.diff(x), np.diff(z)))))

# 2. The sheet along y, two triangles per cell.
y = np.linspace(0.0, width, 21)
i, j = np.meshgrid(np.arange(len(x) - 1), np.arange(len(y) - 1), indexing="ij")
a = (i * len(y) + j).ravel()
triangles = np.vstack((np.column_stack((a, a + len(y), a + len(y) + 1)), np.column_stack((a, a + len(y) + 1, a + 1))))
points = np.column_stack((np.repeat(x, len(y)), np.tile(y, len(x)), np.repeat(z, len(y))))

# 3. The blank, and its distance from the exact one once both lie on one another (Procrustes, without mirror).
result = tornwalzen.solve(points, triangles, material=1, thickness=1.0, model="fixed")
wanted = np.column_stack((np.repeat(exact, len(y)), np.tile(y, len(x))))
blank, wanted = result.blank - result.blank.mean(axis=0), wanted - wanted.mean(axis=0)
left, _, right = np.linalg.svd(blank.T @ wanted)
turn = left @ np.diag([1.0, np.sign(np.linalg.det(left @ right))]) @ right
error = float(np.abs(blank @ turn - wanted).max())
print(f"verdict {result.verdict}")
print(f"blank {exact[-1]:.4f} x {width:g} mm, farthest node {error:.1e} mm from its exact place")
assert error < 1e-6, "a developable part opens exactly"

figure = result.plot(field="smallest_angle")
figure.axes[0].view_init(elev=6, azim=-84)  # along the fold, which lies underneath
figure.savefig(picture, dpi=110)
print(f"picture in {picture}")
