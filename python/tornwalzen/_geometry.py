"""Lengths and areas of triangles, in the operations of the host program, so that both come to the same bits."""
from __future__ import annotations

import numpy as np
from numpy.typing import NDArray

Real = NDArray[np.float64]


def hypot3(x: Real, y: Real, z: Real) -> Real:
    """Square root of x^2 + y^2 + z^2 without overflow: scaled by the largest, as std::hypot of three arguments."""
    x, y, z = np.abs(x), np.abs(y), np.abs(z)
    largest = np.maximum(np.maximum(x, y), z)
    scale = np.where(largest > 0.0, largest, 1.0)
    a, b, c = x / scale, y / scale, z / scale
    return np.asarray(largest * np.sqrt(a * a + b * b + c * c))


class Corners:
    """The corners of triangles in space, coordinate by coordinate, with what several rooms ask of them.

    Attributes
    ----------
    x, y, z : list of numpy.ndarray
        float64 (m,), mm: of the first, second and third corners.
    twice_area : numpy.ndarray
        float64 (m,), mm^2: twice the area of each triangle. The order of the second and third corner does not matter.
    """

    def __init__(self, points: Real, triangles: NDArray[np.int32]) -> None:
        nodes = [np.ascontiguousarray(triangles[:, k]) for k in range(3)]
        self.x, self.y, self.z = ([column.take(node) for node in nodes]
                                  for column in (np.ascontiguousarray(points[:, axis]) for axis in range(3)))
        ax, ay, az = (c[1] - c[0] for c in (self.x, self.y, self.z))
        bx, by, bz = (c[2] - c[0] for c in (self.x, self.y, self.z))
        self.twice_area = hypot3(ay * bz - az * by, az * bx - ax * bz, ax * by - ay * bx)
        cx, cy, cz = bx - ax, by - ay, bz - az
        squares = np.maximum(ax * ax + ay * ay + az * az, bx * bx + by * by + bz * bz)
        self.longest_square = np.maximum(squares, cx * cx + cy * cy + cz * cz)


def plane_areas(positions: Real, triangles: NDArray[np.int32]) -> Real:
    """Signed area of each triangle in the plane (mm^2), positive counter-clockwise."""
    nodes = [np.ascontiguousarray(triangles[:, k]) for k in range(3)]
    u, v = ([column.take(node) for node in nodes]
            for column in (np.ascontiguousarray(positions[:, axis]) for axis in range(2)))
    return np.asarray(0.5 * ((u[1] - u[0]) * (v[2] - v[0]) - (v[1] - v[0]) * (u[2] - u[0])))


def in_order(values: Real) -> float:
    """The sum of values from the first to the last; numpy's own order depends on the processor."""
    return float(np.cumsum(values)[-1]) if len(values) else 0.0
