"""Reading a part."""
from __future__ import annotations

import os
from pathlib import Path
from typing import List, Tuple, Union

import numpy as np
from numpy.typing import NDArray

from .errors import InputError


def read_obj(path: Union[str, "os.PathLike[str]"]) -> Tuple[NDArray[np.float64], NDArray[np.int32]]:
    """Nodes and triangles of a Wavefront OBJ file; all other formats read with meshio.

    Returns
    -------
    points : numpy.ndarray
        float64 (n, 3), in the file's unit.
    triangles : numpy.ndarray
        int32 (m, 3), from 0.

    Raises
    ------
    InputError
        A face that is no triangle, a number that is none; names file and line.

    Examples
    --------
    >>> points, triangles = tornwalzen.read_obj("samples/square_cup.obj")
    >>> points.shape[1], triangles.shape[1], triangles.min()
    (3, 3, 0)
    """
    points: List[List[float]] = []
    triangles: List[List[int]] = []
    with open(Path(path), encoding="utf-8", errors="replace") as lines:
        for number, line in enumerate(lines, start=1):
            words = line.split()
            if not words or words[0] not in ("v", "f"):
                continue
            try:
                if words[0] == "v":
                    points.append([float(words[1]), float(words[2]), float(words[3])])
                    continue
                if len(words) != 4:
                    raise InputError(f"{path}, line {number}: a face of {len(words) - 1} corners, wanted 3",
                                     place="path", advice="split it into triangles")
                corners = [int(word.split("/")[0]) for word in words[1:]]
            except (ValueError, IndexError) as problem:
                if isinstance(problem, InputError):
                    raise
                raise InputError(f"{path}, line {number}: {line.strip()[:60]!r} is not read", place="path") from None
            triangles.append([corner - 1 if corner > 0 else len(points) + corner for corner in corners])
    if not points or not triangles:
        raise InputError(f"{path}: no nodes, or no triangles", place="path")
    return np.array(points), np.array(triangles, dtype=np.int32)
