"""The outline of the blank: its border as closed loops; and the smallest rectangle around it."""
from __future__ import annotations

from dataclasses import dataclass
from typing import List, NamedTuple, Tuple

import numpy as np
from numpy.typing import NDArray

from .errors import InputError

_EQUAL_AREA = 1e-9  # relative: what is rounding of sums of a few coordinates


@dataclass(frozen=True, eq=False)
class Loop:
    """A closed line of the outline, the sheet on its left.

    Attributes
    ----------
    nodes : numpy.ndarray
        int32 (k,), from 0, beginning at the lowest.
    points : numpy.ndarray
        float64 (k, 2), mm: u, v of these nodes. The line closes from the last to the first.
    area : float
        mm^2, signed: positive counter-clockwise, negative for a hole.
    """

    nodes: NDArray[np.int32]
    points: NDArray[np.float64]
    area: float


class Rectangle(NamedTuple):
    """length >= width (mm); angle (degrees) from u to the length, in (-90, 90]."""

    length: float
    width: float
    angle: float


def loops(triangles: NDArray[np.int32], blank: NDArray[np.float64]) -> List[Loop]:
    """The loops of the blank's border, the one with the largest area first.

    At a node where two corners of sheet meet each keeps its own border: from a border edge the next one is found by
    turning round its end through the triangles there.
    """
    start, end = triangles.ravel().astype(np.int64), np.roll(triangles, -1, axis=1).ravel().astype(np.int64)
    span = int(triangles.max()) + 1
    keys, twins = start * span + end, end * span + start
    order = np.argsort(keys, kind="stable")
    ordered = keys[order]
    if (np.diff(ordered) == 0).any():
        edge = int(ordered[:-1][np.diff(ordered) == 0][0])
        raise InputError(f"two triangles run from node {edge // span} to node {edge % span}", place="triangles")
    place = np.minimum(np.searchsorted(ordered, twins), len(ordered) - 1)
    twin = np.where(ordered[place] == twins, order[place], -1)
    following = np.arange(len(keys)).reshape(-1, 3)
    following = np.roll(following, -1, axis=1).ravel()

    taken = set()
    found: List[Loop] = []
    for first in np.flatnonzero(twin < 0):
        if int(first) in taken:
            continue
        line, half = [], int(first)
        while half not in taken:
            taken.add(half)
            line.append(int(start[half]))
            half = int(following[half])
            while twin[half] >= 0:
                half = int(following[twin[half]])
        found.append(_loop(line, blank))
    return sorted(found, key=lambda loop: -abs(loop.area))


def _loop(line: List[int], blank: NDArray[np.float64]) -> Loop:
    lowest = line.index(min(line))
    nodes = np.array(line[lowest:] + line[:lowest], dtype=np.int32)
    points = blank[nodes]
    away = points - points[0]  # keeps the products small
    ahead = np.roll(away, -1, axis=0)
    area = 0.5 * float(np.sum(away[:, 0] * ahead[:, 1] - away[:, 1] * ahead[:, 0]))
    return Loop(nodes, points, area)


def smallest_rectangle(points: NDArray[np.float64]) -> Rectangle:
    """The rectangle of the least area around points (k, 2); of equal ones that whose angle is nearest 0.

    One of its sides lies on a side of the convex hull (H. Freeman, R. Shapira, Comm. ACM 18 (1975) 409).
    """
    hull = _hull(points)
    if len(hull) < 2:
        return Rectangle(0.0, 0.0, 0.0)
    best = Rectangle(1e150, 1e150, 0.0)  # larger than any
    for side in np.roll(hull, -1, axis=0) - hull:
        along = side / np.hypot(*side)
        x, y = hull @ along, hull @ np.array([-along[1], along[0]])
        candidate = _standing(along, float(np.ptp(x)), float(np.ptp(y)))
        if _better(candidate, best):
            best = candidate
    return best


def _hull(points: NDArray[np.float64]) -> NDArray[np.float64]:
    """Counter-clockwise, without points inside its sides (A. M. Andrew's monotone chain, 1979)."""
    ordered: List[Tuple[float, float]] = sorted(set(map(tuple, points.tolist())))  # type: ignore[arg-type]
    if len(ordered) < 3:
        return np.array(ordered)

    def half(way: List[Tuple[float, float]]) -> List[Tuple[float, float]]:
        chain: List[Tuple[float, float]] = []
        for p in way:
            while len(chain) > 1 and not (
                    (chain[-1][0] - chain[-2][0]) * (p[1] - chain[-2][1])
                    - (chain[-1][1] - chain[-2][1]) * (p[0] - chain[-2][0]) > 0.0):
                chain.pop()
            chain.append(p)
        return chain[:-1]

    return np.array(half(ordered) + half(ordered[::-1]))


def _standing(along: NDArray[np.float64], length: float, width: float) -> Rectangle:
    angle = float(np.degrees(np.arctan2(along[1], along[0]))) + (90.0 if width > length else 0.0)
    while angle > 90.0:
        angle -= 180.0
    while angle <= -90.0:
        angle += 180.0
    return Rectangle(max(length, width), min(length, width), angle)


def _better(a: Rectangle, b: Rectangle) -> bool:
    area_a, area_b = a.length * a.width, b.length * b.width
    if abs(area_a - area_b) > _EQUAL_AREA * area_b:
        return area_a < area_b
    return abs(a.angle) < abs(b.angle)
