"""Lengths and areas of triangles, in the operations of the host program, so that both come to the same bits."""
from __future__ import annotations

from typing import Tuple

import numpy as np
from numpy.typing import NDArray

Real = NDArray[np.float64]


def hypot3(x: Real, y: Real, z: Real) -> Real:
    """Square root of x^2 + y^2 + z^2 without overflow: scaled by the largest, as std::hypot of three arguments."""
    x, y, z = np.abs(x), np.abs(y), np.abs(z)
    largest = np.maximum(np.maximum(x, y), z)
    scale = np.where(largest > 0.0, largest, 1.0)
    a, b, c = x / scale, y / scale, z / scale
    return np.where(largest > 0.0, largest * np.sqrt(a * a + b * b + c * c), largest)


def cross(a: Real, b: Real) -> Tuple[Real, Real, Real]:
    """Components of the cross product of the rows of a and b."""
    return (a[:, 1] * b[:, 2] - a[:, 2] * b[:, 1], a[:, 2] * b[:, 0] - a[:, 0] * b[:, 2],
            a[:, 0] * b[:, 1] - a[:, 1] * b[:, 0])


def part_areas(points: Real, triangles: NDArray[np.int32]) -> Real:
    """Area of each triangle in space (mm^2)."""
    first = points[triangles[:, 0]]
    return 0.5 * hypot3(*cross(points[triangles[:, 1]] - first, points[triangles[:, 2]] - first))


def plane_areas(positions: Real, triangles: NDArray[np.int32]) -> Real:
    """Signed area of each triangle in the plane (mm^2), positive counter-clockwise."""
    first = positions[triangles[:, 0]]
    a, b = positions[triangles[:, 1]] - first, positions[triangles[:, 2]] - first
    return np.asarray(0.5 * (a[:, 0] * b[:, 1] - a[:, 1] * b[:, 0]))


def in_order(values: Real) -> float:
    """The sum of values from the first to the last; numpy's own order depends on the processor."""
    return float(np.cumsum(values)[-1]) if len(values) else 0.0
