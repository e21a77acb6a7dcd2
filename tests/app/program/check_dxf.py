#!/usr/bin/env python3
"""Audits a DXF file of a blank with ezdxf and compares its curves with the border of the blank's mesh.
usage: check_dxf.py blank.dxf blank.obj TOLERANCE_MM UNIT_MM [ANGLE_DEG SHIFT_X_MM SHIFT_Y_MM]"""
import math
import sys

import ezdxf
import ezdxf.path
import numpy as np
from shapely.geometry import LineString, Polygon

dxf, obj, tolerance, unit = sys.argv[1], sys.argv[2], float(sys.argv[3]), float(sys.argv[4])
angle, sx, sy = [float(x) for x in sys.argv[5:8]] if len(sys.argv) > 5 else (0.0, 0.0, 0.0)


def fail(message):
    print(message)
    sys.exit(1)


points, faces = [], []
for line in open(obj):
    word = line.split()
    if word and word[0] == "v":
        x, y = float(word[1]) * unit, float(word[2]) * unit
        c, s = math.cos(math.radians(angle)), math.sin(math.radians(angle))
        points.append((c * x - s * y + sx, s * x + c * y + sy))
    elif word and word[0] == "f":
        faces.append([int(w.split("/")[0]) - 1 for w in word[1:]])
after = {}
edges = {(f[k], f[(k + 1) % 3]) for f in faces for k in range(3)}
for a, b in edges:
    if (b, a) not in edges:
        after[a] = b
loops = []
while after:
    start, b = after.popitem()
    loop = [start]
    while b != start:
        loop.append(b)
        b = after.pop(b)
    loops.append([points[k] for k in loop])

document = ezdxf.readfile(dxf)
audit = document.audit()
if audit.errors or audit.fixes:
    fail("audit: " + "; ".join(e.message for e in audit.errors + audit.fixes))
release = document.dxfversion
if release == "AC1015" and document.header["$INSUNITS"] != 4:
    fail("not in millimetres")
curves = []
for entity in document.modelspace():
    if entity.dxftype() not in ("LWPOLYLINE", "POLYLINE"):
        continue
    if not entity.is_closed if entity.dxftype() == "POLYLINE" else not entity.closed:
        fail("a curve is open")
    path = ezdxf.path.make_path(entity)
    curves.append((entity.dxf.layer, [(p.x, p.y) for p in path.flattening(tolerance / 50)]))
outer = [c for layer, c in curves if layer == "OUTER"]
inner = [c for layer, c in curves if layer == "INNER"]
if len(outer) != 1 or len(inner) != len(loops) - 1:
    fail("%d outer and %d inner curves for %d loops" % (len(outer), len(inner), len(loops)))
loops.sort(key=lambda l: -abs(Polygon(l).area))
rings = [LineString(c + c[:1]) for c in outer + inner]
worst = 0.0
for k, loop in enumerate(loops):
    border = LineString(loop + loop[:1])
    ring = rings[0] if k == 0 else min(rings[1:], key=lambda r: r.centroid.distance(border.centroid))
    # both ways, from evenly spread points and from all corners
    for a, b in ((border, ring), (ring, border)):
        far = max(b.distance(a.interpolate(t, normalized=True)) for t in np.linspace(0, 1, 500))
        worst = max(worst, far, a.hausdorff_distance(b))
# the flattening and the six digits of the file
if worst > tolerance * 1.03 + 2e-6:
    fail("the curves lie up to %g mm from the mesh's outline" % worst)
print("%s clean, %d loops within %.6f mm" % (release, len(loops), worst))
