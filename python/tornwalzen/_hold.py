"""Which unknowns of the blank are held, by the host program's rules.

The rigid motion in the plane must be taken out, and planes of symmetry keep their nodes.
"""
from __future__ import annotations

from typing import Union

import numpy as np
from numpy.typing import ArrayLike, NDArray

from ._geometry import Corners, in_order
from .errors import InputError

_PLANE = 1e-6  # of the part's size: what counts as on a plane, or as equally far
_X, _Y = 0, 1

Flags = NDArray[np.int32]
Hold = Union[str, ArrayLike]


class _Part:
    """The mesh with what the rules ask of it."""

    def __init__(self, points: NDArray[np.float64], triangles: NDArray[np.int32], corners: Corners) -> None:
        self.points = points
        self.used = np.zeros(len(points), dtype=bool)
        self.used[triangles.ravel()] = True
        inside = points if self.used.all() else points[self.used]
        self.size = float((inside.max(axis=0) - inside.min(axis=0)).max())
        area = corners.twice_area
        total = in_order(area)
        self.centroid = [in_order(area * (at[0] + at[1] + at[2]) / 3.0) / total for at in (corners.x, corners.y)]

    def first_smallest(self, measure: NDArray[np.float64]) -> int:
        return int(np.argmin(np.where(self.used, measure, np.inf)))

    def from_centroid(self) -> NDArray[np.float64]:
        return np.hypot(self.points[:, _X] - self.centroid[_X], self.points[:, _Y] - self.centroid[_Y])


def flags(points: NDArray[np.float64], triangles: NDArray[np.int32], corners: Corners, hold: Hold) -> Flags:
    """int32 (n, 2): 1 where u or v of a node is held. Nodes in no triangle are held."""
    part = _Part(points, triangles, corners)
    if isinstance(hold, str):
        held = _by_word(part, hold)
    else:
        held = _given(hold, len(points))
    _check_rigid_motion(part, held)
    held[~part.used] = 1
    return held


def _given(hold: ArrayLike, nodes: int) -> Flags:
    array = np.asarray(hold)
    if array.shape != (nodes, 2) or array.dtype.kind not in "biu":
        raise InputError(f"hold is an array of {array.dtype} with the shape {array.shape}, wanted flags ({nodes}, 2) "
                         "or one of 'auto', 'x0', 'y0', 'x0,y0'", place="hold")
    if ((array != 0) & (array != 1)).any():
        raise InputError("hold has entries other than 0 and 1", place="hold")
    return np.array(array, dtype=np.int32, order="C")


def _by_word(part: _Part, rule: str) -> Flags:
    held = np.zeros((len(part.points), 2), dtype=np.int32)
    if rule == "auto":
        _automatically(part, held)
    elif rule in ("x0", "y0"):
        axis = _X if rule == "x0" else _Y
        _plane(part, axis, held)
        along = np.where(held[:, axis] == 1, part.from_centroid(), np.inf)
        held[part.first_smallest(along), 1 - axis] = 1
    elif rule in ("x0,y0", "y0,x0"):
        _plane(part, _X, held)
        _plane(part, _Y, held)
    else:
        raise InputError(f"hold is {rule!r}, wanted 'auto', 'x0', 'y0', 'x0,y0' or an array of flags", place="hold")
    return held


def _automatically(part: _Part, held: Flags) -> None:
    # u and v of the node nearest the centroid and, against rotation, one direction of the node farthest from it.
    middle = part.first_smallest(part.from_centroid())
    held[middle] = 1
    far = [_farthest(part, axis, middle) for axis in (_X, _Y)]
    reach = [abs(part.points[far[axis], axis] - part.points[middle, axis]) for axis in (_X, _Y)]
    if reach[_X] >= reach[_Y]:
        held[far[_X], _Y] = 1
    else:
        held[far[_Y], _X] = 1


def _farthest(part: _Part, axis: int, middle: int) -> int:
    # A straight edge has many nodes as far: the one that lies least to the side.
    distance = np.abs(part.points[:, :2] - part.points[middle, :2])
    first = part.first_smallest(-distance[:, axis])
    reach = distance[first, axis] - _PLANE * part.size
    return part.first_smallest(np.where(distance[:, axis] < reach, np.inf, distance[:, 1 - axis]))


def _plane(part: _Part, axis: int, held: Flags) -> None:
    away = np.abs(part.points[:, axis])
    on = part.used & (away <= _PLANE * part.size)
    if not on.any():
        plane = "xy"[axis]
        raise InputError(f"hold {plane}0: no node lies on the plane {plane} = 0; the nearest is "
                         f"{away[part.used].min():g} mm away", place="hold",
                         advice="move the part to its plane of symmetry, or hold \"auto\"")
    held[on, axis] = 1


def _check_rigid_motion(part: _Part, held: Flags) -> None:
    # Rotation about (x0, y0) moves u by -(y - y0) and v by x - x0: free if all held u lie at one y, all v at one x.
    spread = []
    for axis in (_X, _Y):
        across = part.points[part.used & (held[:, axis] == 1), 1 - axis]
        if len(across) == 0:
            raise InputError(f"the blank can still move in {'xy'[axis]}: no {'uv'[axis]} is held", place="hold")
        spread.append(across.max() - across.min())
    if max(spread) <= _PLANE * part.size:
        raise InputError("the blank can still rotate: all held u have the same y and all held v the same x",
                         place="hold")
