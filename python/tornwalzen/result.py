"""What a run leaves: arrays over the nodes and triangles of the part, the verdict, the library's report."""
from __future__ import annotations

import os
from dataclasses import dataclass
from typing import TYPE_CHECKING, Any, List, Optional, Tuple, Union

import numpy as np
from numpy.typing import NDArray

from ._outline import Loop, Rectangle, loops, smallest_rectangle
from ._settings import Settings
from ._structures import PressResult, Report
from ._verdict import SecondStart, Verdict
from .limits import FormingLimit

if TYPE_CHECKING:
    from matplotlib.figure import Figure

__all__ = ["Result"]

Real = NDArray[np.float64]


@dataclass(frozen=True, eq=False, repr=False)
class Result:
    """The blank of a part, and what it stands on.

    Nodes (n) and triangles (m) in the order of the part, both counted from 0. Lengths in mm, stresses in MPa, strains
    logarithmic and dimensionless. Values that are not known are NaN: all strains where the run came to no blank, those of
    a triangle that is turned over in the blank, ...

    Attributes
    ----------
    points : numpy.ndarray
        float64 (n, 3), mm: the part, the array that was given where its layout allowed that.
    triangles : numpy.ndarray
        int32 (m, 3), counter-clockwise in the blank.
    blank : numpy.ndarray
        float64 (n, 2), mm: u, v of each node.
    starting_blank : numpy.ndarray
        float64 (n, 2), mm: where the iteration began.
    strains : numpy.ndarray
        float64 (m, 2): major and minor strain in the sheet's plane.
    directions : numpy.ndarray
        float64 (m, 3): unit vector of the major strain on the part.
    directions_blank : numpy.ndarray
        float64 (m, 2): the same in the blank.
    equivalent : numpy.ndarray
        float64 (m,): equivalent strain, with the anisotropy of the run.
    flow_stress : numpy.ndarray
        float64 (m,), MPa: at the equivalent strain, of the flow curve of the run.
    thickness : numpy.ndarray
        float64 (m,), mm: of the formed sheet, `thickness_ratio` times the blank's thickness.
    thickness_ratio : numpy.ndarray
        float64 (m,): t/t0 = area in the blank over area on the part.
    part_area, blank_area : numpy.ndarray
        float64 (m,), mm^2; in the blank not positive where a triangle is turned over.
    smallest_angle : numpy.ndarray
        float64 (m,), degrees: smallest corner of the part's triangle.
    minus_trace, density : numpy.ndarray
        float64 (m,): -(E11 + E22) and the density of the potential.
    zones : numpy.ndarray
        int8 (m,): 0 safe, 1 marginal, 2 split, 3 wrinkling tendency, -1 no strains or no limit curve.
    limit : FormingLimit or None
        The forming-limit diagram behind `zones`: its curve, distances and margin.
    contact_pressure, binder_pressure : numpy.ndarray or None
        float64 (m,), MPa, of the press model with tools: positive at the punch, negative at the die.
    held : numpy.ndarray
        bool (n, 2): which of u and v were held.
    verdict : Verdict
        Whether one can stand behind the blank, with reasons and places.
    report : Report
        The library's report of the run.
    press : PressResult or None
        What the press model did; None for the fixed model.
    settings : Settings
        What the run was made with, that of the repeats included.
    second_start : SecondStart or None
        What a second start told, where one was made.
    runs : int
        Runs made until one converged, or to the last.
    remarks : tuple of str
        What stands in for values that are not known.
    messages : tuple of str
        The library's messages of the run whose blank this is.
    """

    points: Real
    triangles: NDArray[np.int32]
    blank: Real
    starting_blank: Real
    strains: Real
    directions: Real
    directions_blank: Real
    equivalent: Real
    flow_stress: Real
    thickness: Real
    thickness_ratio: Real
    part_area: Real
    blank_area: Real
    smallest_angle: Real
    minus_trace: Real
    density: Real
    zones: NDArray[np.int8]
    limit: Optional[FormingLimit]
    contact_pressure: Optional[Real]
    binder_pressure: Optional[Real]
    held: NDArray[np.bool_]
    verdict: Verdict
    report: Report
    press: Optional[PressResult]
    settings: Settings
    second_start: Optional[SecondStart]
    runs: int
    remarks: Tuple[str, ...]
    messages: Tuple[str, ...]

    def __repr__(self) -> str:
        return f"<Result of {len(self.points)} nodes and {len(self.triangles)} triangles: {self.verdict}>"

    def outline(self) -> List[Loop]:
        """The blank's border as closed loops: the outer one first, then the holes, larger ones first.

        Each `Loop` has `nodes` (k,), `points` (k, 2) in mm and a signed `area` in mm^2.

        Examples
        --------
        >>> [(len(loop.nodes), loop.area > 0.0) for loop in cup.outline()]
        [(72, True)]
        """
        return loops(self.triangles, self.blank)

    def rectangle(self) -> Rectangle:
        """The smallest rectangle around the blank: length and width in mm, angle of the length in degrees."""
        return smallest_rectangle(self.blank[np.unique(self.triangles)])

    def save(self, folder: Union[str, "os.PathLike[str]"], *, replace: bool = False) -> List[str]:
        """Writes the result into a folder, which is made if there is none, and returns the names of the files.

        ``blank.obj`` (the blank, nodes in the order of the part), ``result.npz`` (every array under its name here),
        ``summary.json`` (verdict, settings, report). All of them appear, or none.

        Parameters
        ----------
        replace : bool
            Whether files of these names may be replaced that are not results of the same part.

        Raises
        ------
        FileExistsError
            The folder holds another part's results, or files of these names that are none.
        """
        from ._files import save
        return save(self, folder, replace)

    def plot(self, *, field: str = "thickness_ratio") -> "Figure":
        """A picture: the part, the blank with its outline, the strain diagram with the limit curve.

        Parameters
        ----------
        field : str
            Which array over the triangles colours part and blank: ``"thickness_ratio"``, ``"thickness"``,
            ``"equivalent"``, ``"flow_stress"``, ``"smallest_angle"``, ``"zones"``, ``"major"`` or ``"minor"``.

        Returns
        -------
        matplotlib.figure.Figure
            Not shown; ``figure.savefig(name)`` writes it.

        Raises
        ------
        InputError
            matplotlib is not installed, or there is no such field.
        """
        from ._plot import plot
        return plot(self, field)

    def to_meshio(self, shape: str = "part") -> Any:
        """A ``meshio.Mesh`` of the part or of the blank (``shape="blank"``) with the arrays of this result.

        Raises
        ------
        InputError
            meshio is not installed, or `shape` is neither.
        """
        from ._files import to_meshio
        return to_meshio(self, shape)
