"""Why a part was not developed onto the plane: where the starting blank is worst, and what the user can do."""
from __future__ import annotations

import numpy as np
from numpy.typing import NDArray

from ._geometry import plane_areas
from ._verdict import counted


def why_not_developed(points: NDArray[np.float64], triangles: NDArray[np.int32], start: NDArray[np.float64],
                      held: NDArray[np.int32], part_area: NDArray[np.float64]) -> str:
    """A sentence without full stop, for a run of the fixed path that ended in its development. Triangles from 1."""
    with np.errstate(invalid="ignore", divide="ignore"):
        ratio = plane_areas(start, triangles) / part_area
    closed = ~(ratio > 0.0)
    worst = int(np.argmax(np.isnan(ratio))) if np.isnan(ratio).any() else int(np.argmin(ratio))
    x, y, z = points[triangles[worst]].mean(axis=0)
    place = f"element {worst + 1} at ({x:.3f}, {y:.3f}, {z:.3f}) mm"
    share = f"{100.0 * ratio[worst]:.1f} %"
    sentence = "the part could not be developed onto the plane: "
    if closed.any():
        sentence += (f"{counted(int(closed.sum()), 'triangle')} of the starting blank stayed inverted or closed, worst "
                     f"{place} ({share} of its area)")
    else:
        sentence += (f"no triangle of the starting blank is inverted, but {place} stayed at {share} of its area, too "
                     "close to a line")
    if int(held[triangles[worst]].any(axis=1).sum()) >= 2:
        return sentence + "; its nodes are held, so hold fewer unknowns there, or try hold=\"auto\""
    return sentence + ("; turn the part so that z is its drawing direction and look there for an undercut, a wall that "
                       "leans over, or slivers of the mesh")
