"""A drawn cup: part, blank and strain diagram in one picture.

    python3 cup.py [PART.obj [PICTURE.png]]

Shows a run from the file to the picture, with a hardening law, planes of symmetry and a limit curve.
"""
import sys
from pathlib import Path

import tornwalzen

# 1. The part, in mm; without one, the square cup of the samples.
sample = Path(__file__).resolve().parents[2] / "samples" / "square_cup.obj"
part = sys.argv[1] if len(sys.argv) > 1 else sample
picture = sys.argv[2] if len(sys.argv) > 2 else "cup.png"
points, triangles = tornwalzen.read_obj(part)

# 2. The blank: a deep-drawing steel after Swift, 1 mm thick; the cup lies symmetric to x = 0 and y = 0.
steel = tornwalzen.law("swift", K=549.03, e0=0.007, n=0.22)
result = tornwalzen.solve(points, triangles, material=steel, thickness=1.0, hold="x0,y0", model="fixed",
                          limit=tornwalzen.keeler(1.0, 0.22))

# 3. What came out.
length, width, angle = result.rectangle()
print(f"verdict {result.verdict}")
print(f"blank {length:.1f} x {width:.1f} mm, sheet {result.thickness.min():.3f} to {result.thickness.max():.3f} mm")
result.plot().savefig(picture, dpi=110)
print(f"picture in {picture}")
