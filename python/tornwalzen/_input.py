"""Checks what a caller gives before the library is entered. Nothing is rounded or guessed."""
from __future__ import annotations

from typing import Any, Tuple

import numpy as np
from numpy.typing import ArrayLike, NDArray

from ._geometry import Corners
from .errors import InputError

_SMALLEST_HEIGHT = 1e-10  # of the longest side: so little is rounding of the coordinates (as the host program has it)


def real_array(values: ArrayLike, name: str) -> NDArray[np.float64]:
    """`values` as float64, C-contiguous; the same array where it is one. Complex, text and objects are refused."""
    array = np.asarray(values)
    if array.dtype.kind not in "fiu":
        raise InputError(f"{name} has the type {array.dtype}, wanted real numbers", place=name)
    return np.ascontiguousarray(array, dtype=np.float64)


def index_array(values: ArrayLike, name: str) -> NDArray[np.int32]:
    """`values` as int32, C-contiguous; the same array where it is one. Other types than integers are refused."""
    array = np.asarray(values)
    if array.dtype.kind not in "iu":
        raise InputError(f"{name} has the type {array.dtype}, wanted integers", place=name)
    limits = np.iinfo(np.int32)
    if array.size and (array.min() < limits.min or array.max() > limits.max):
        raise InputError(f"{name} holds numbers beyond 32 bits", place=name)
    return np.ascontiguousarray(array, dtype=np.int32)


def mesh(points: ArrayLike, triangles: ArrayLike) -> Tuple[NDArray[np.float64], NDArray[np.int32]]:
    """Coordinates (n, 3) and triangles (m, 3) as the library takes them."""
    p, t = real_array(points, "points"), index_array(triangles, "triangles")
    if p.ndim != 2 or p.shape[1] != 3:
        raise InputError(f"points has the shape {p.shape}, wanted (n, 3): x, y, z of each node in mm", place="points")
    if t.ndim != 2 or t.shape[1] != 3:
        raise InputError(f"triangles has the shape {t.shape}, wanted (m, 3): the nodes of each triangle, from 0",
                         place="triangles")
    if len(p) == 0 or len(t) == 0:
        empty = "points" if len(p) == 0 else "triangles"
        raise InputError(f"{empty} is empty", place=empty)
    if not np.isfinite(p).all():
        node, axis = np.argwhere(~np.isfinite(p))[0]
        raise InputError(f"the {'xyz'[axis]} of node {node} is {p[node, axis]}", place=f"points[{node}, {axis}]",
                         advice="give finite coordinates")
    if t.min() < 0 or t.max() >= len(p):
        row, corner = np.argwhere((t < 0) | (t >= len(p)))[0]
        raise InputError(f"triangle {row} names node {t[row, corner]}, but the nodes run from 0 to {len(p) - 1}",
                         place=f"triangles[{row}, {corner}]", advice="count the nodes from 0")
    return p, t


def check_areas(corners: Corners, triangles: NDArray[np.int32]) -> None:
    """Refuses a triangle without area."""
    flat = ~(corners.twice_area > _SMALLEST_HEIGHT * corners.longest_square)
    if flat.any():
        row = int(np.argmax(flat))
        raise InputError(f"triangle {row} with the nodes {', '.join(map(str, triangles[row]))} has no area",
                         place=f"triangles[{row}]", advice="leave it out, or mend the mesh there")


def positive(value: Any, name: str, unit: str) -> float:
    """A finite number above 0."""
    number = finite(value, name, unit)
    if not number > 0.0:
        raise InputError(f"{name} is {number:g}, wanted more than 0 {unit}".rstrip(), place=name)
    return number


def finite(value: Any, name: str, unit: str) -> float:
    """A finite number."""
    if isinstance(value, (bool, str, bytes)) or not np.isscalar(value):
        raise InputError(f"{name} is {value!r}, wanted a number {unit and 'in ' + unit}".rstrip(), place=name)
    try:
        number = float(value)  # type: ignore[arg-type]
    except TypeError:
        raise InputError(f"{name} is {value!r}, wanted a real number", place=name) from None
    if not np.isfinite(number):
        raise InputError(f"{name} is {number}, wanted a finite number", place=name)
    return number


def one_of(value: Any, name: str, words: Tuple[str, ...]) -> int:
    """The place of a word in `words`."""
    if isinstance(value, str) and value in words:
        return words.index(value)
    raise InputError(f"{name} is {value!r}, wanted {' or '.join(repr(word) for word in words)}", place=name)
