"""`solve`: from the mesh of a formed part to its blank, as the host program does it."""
from __future__ import annotations

import warnings
from typing import Optional, Union

import numpy as np
from numpy.typing import ArrayLike, NDArray

from . import _input
from ._analysis import Analysis, Listener, Output
from ._geometry import Corners, plane_areas
from ._hold import Hold, flags
from ._press import Press, gives_loads, lay_on
from ._progress import Listening, Progress
from ._settings import Chosen, MaterialLike, Settings, Tolerance, apply, chosen, from_patch, tighter
from ._structures import STRAIN_COLUMNS, STRAIN_DOUBLES
from ._verdict import (CONVERGED, FINAL_UNCONVERGED, NOT_A_BLANK, NOT_DEVELOPED, SOLVER_FAILED, STEP_TOO_SMALL,
                       SecondStart, Verdict, compared, is_nearer, judged, second_start_may_help, tighter_path_may_help,
                       with_second)
from ._undeveloped import why_not_developed
from .errors import NotABlank, NotConverged, TornwalzenWarning
from .limits import LimitCurve, chosen_curve, classified, margin_of
from .result import Result

_TIGHTER = (0.1, 0.01)  # factors of the tolerance on the way, tried in this order


def solve(points: ArrayLike, triangles: ArrayLike, *, material: MaterialLike = "DC04", thickness: float = 1.5,
          hold: Hold = "auto", path: str = "sure", model: str = "press", threads: Optional[int] = None,
          progress: Progress = None, press: Optional[Press] = None, r: Optional[float] = None, energy: str = "part",
          tolerance: Tolerance = None, limit: Union[str, LimitCurve, None] = "auto") -> Result:
    """Finds the flat blank of a formed part.

    The run is that of the host program with the same settings, to the bit: with ``path="sure"`` a second start where
    the blank is doubtful or the part has undercut, with ``path="fixed"`` repeats with a tighter way where it does not
    converge.

    Parameters
    ----------
    points : array_like
        Real (n, 3), mm: x, y, z of each node. float64 in C order is used as it is, all else is copied once.
    triangles : array_like
        Integers (m, 3): the nodes of each triangle, from 0; one piece of sheet, all turned the same way. int32 in C
        order is used as it is, all else is copied once.
    material : str, int, FlowCurve or Material
        A name of `materials`; a built-in flow curve 0, 1 or 2, or 10 (geometric, no material, with
        ``model="fixed"``); what `law` or `curve` gives.
    thickness : float
        Of the blank, mm.
    hold : str or array_like
        What keeps the blank from floating: ``"auto"``; the planes of symmetry ``"x0"``, ``"y0"`` or ``"x0,y0"``; or flags
        (n, 2), 1 where u or v of a node is held.
    path : str
        ``"sure"``: straight to the equilibrium, whatever way the part lies; ``"fixed"``: by load increments from a
        development of its projection along z (with ``model="fixed"``).
    model : str
        ``"press"``: the work of deformation itself, with what `press` tells of the tools; ``"fixed"``: half its square.
    threads : int, optional
        That the library may work on, 1 to 64; all results are the same for every number. None: one.
    progress : bool or callable, optional
        True: a bar of tqdm; a function: called with each `Step`. What it raises ends the run and is raised here.
    press : Press, optional
        Friction, binder, beads and more of the press model.
    r : float, optional
        Mean normal anisotropy; from the material, else 1.
    energy : str
        What weighs the energy of a triangle: its area on the ``"part"`` or in the ``"blank"``.
    tolerance : float or (float, float), optional
        Factors of the gradient tolerance, at the end and on the way; None: 0.001 and 1, repeated with 0.1 and 0.01 on the
        way where that does not converge.
    limit : "auto", LimitCurve or None
        The limit curve of the forming-limit diagram; ``"auto"``: the formula for mild steels where the material is one.

    Returns
    -------
    Result
        A blank that is good or doubtful: `Result.verdict` says which, and why.

    Raises
    ------
    InputError
        An argument is refused; nothing was computed.
    NotConverged
        The run came to no equilibrium; the partial result is in its `result`.
    NotABlank
        It came to one that is no blank; likewise.
    LibraryError
        No memory, no thread, equations that cannot be set up.
    KeyboardInterrupt
        Ctrl-C; the run ends at its next step.

    Warns
    -----
    TornwalzenWarning
        What stands in for values that the material does not have; also in `Result.remarks`.

    Examples
    --------
    >>> points, triangles = tornwalzen.read_obj("samples/square_cup.obj")
    >>> steel = tornwalzen.law("swift", K=549.03, e0=0.007, n=0.22)
    >>> result = tornwalzen.solve(points, triangles, material=steel, thickness=1.0, hold="x0,y0", model="fixed")
    >>> result.verdict.worth, result.blank.shape == (len(points), 2)
    ('good', True)
    >>> print(f"blank {result.rectangle().length:.1f} mm long, thinnest {result.thickness.min():.2f} mm")
    blank 153.3 mm long, thinnest 0.77 mm
    """
    p, t = _input.mesh(points, triangles)
    choice = chosen(material, thickness, path, model, threads, press, r, energy, tolerance)
    curve = chosen_curve(limit, choice.known, choice.settings.thickness)
    corners = Corners(p, t)
    _input.check_areas(corners, t)
    held = flags(p, t, corners, hold)
    for remark in choice.remarks:
        warnings.warn(remark, TornwalzenWarning, stacklevel=2)
    with Listening(progress) as listener, Analysis() as analysis:
        analysis.set_mesh(p, t)
        analysis.set("holds", held)
        run = _Run(p, t, choice, analysis, listener)
        run.until_converged()
    result = _result(p, 0.5 * corners.twice_area, held, run, curve)
    if not result.verdict.converged:
        raise NotConverged(result.verdict.reason, result=result)
    if result.verdict.worth == NOT_A_BLANK:
        raise NotABlank("; ".join(result.verdict.why), result=result)
    return result


class _Run:
    """The runs that lead to one result. settings, output: of the one that is kept."""

    def __init__(self, points: NDArray[np.float64], triangles: NDArray[np.int32], choice: Chosen, analysis: Analysis,
                 listener: Optional[Listener]) -> None:
        self._triangles = len(triangles)
        z = points[triangles, 2]
        self.flat = bool((z == z[0, 0]).all())
        self.choice = choice
        self._loads_given = choice.settings.model == "press" and gives_loads(choice.press)
        self._analysis = analysis
        self._listener = listener
        self.settings: Settings = choice.settings
        self.second: Optional[SecondStart] = None
        self.runs = 0
        self.output = self._once(choice.settings)

    def verdict(self, output: Output) -> Verdict:
        return judged(output.report, output.press, self.flat, self._loads_given)

    def _once(self, settings: Settings) -> Output:
        apply(settings, self.choice, self._analysis)
        if settings.model == "press":
            lay_on(self.choice.press, self._analysis, self._triangles)
        self.runs += 1
        return self._analysis.run(self._listener)

    def until_converged(self) -> None:
        """Sure path: the better of two starts where one alone is doubtful. Fixed path: a tighter way."""
        if self.settings.path == "sure" and second_start_may_help(self.verdict(self.output), self.output.report,
                                                                  self.output.press, self._loads_given):
            self._start_again()
        for factor in _TIGHTER:
            if not (self.settings.may_repeat and tighter_path_may_help(self.output.report, self.flat)):
                break
            self.settings = tighter(self.settings, factor)
            self.output = self._once(self.settings)

    def _start_again(self) -> None:
        first, settings = self.output, from_patch(self.settings, True)
        other = self._once(settings)
        better = other.report.converged == 1 and (
            first.report.converged == 0 or is_nearer(other.report, other.press, first.report, first.press)
            or (self.verdict(first).worth == NOT_A_BLANK and self.verdict(other).worth != NOT_A_BLANK))
        if better:
            self.settings, self.output = settings, other
        taken, left = (other, first) if better else (first, other)
        self.second = compared(taken.report, left.report, better)


def _result(points: NDArray[np.float64], part_area: NDArray[np.float64], held: NDArray[np.int32], run: _Run,
            curve: Optional[LimitCurve]) -> Result:
    output, settings = run.output, run.settings
    n, triangles = len(points), output.triangles
    blank = _or_nan(output.blank, n, 2)
    start = _or_nan(output.starting_blank, n, 2)
    developed = output.report.reason in (CONVERGED, STEP_TOO_SMALL, FINAL_UNCONVERGED, SOLVER_FAILED)
    strains = _or_nan(output.strains if developed else None, len(triangles), STRAIN_DOUBLES)
    of = {name: strains[:, column] for name, column in STRAIN_COLUMNS.items()}
    table = _or_nan(output.table, len(triangles), 5)
    blank_area = plane_areas(blank, triangles)
    ratio = np.full(len(triangles), np.nan)
    if developed:
        np.divide(blank_area, part_area, out=ratio, where=blank_area > 0.0)
    limit = None if curve is None else classified(of["strains"], curve, margin_of(run.choice.known))
    zones = np.full(len(triangles), -1, dtype=np.int8) if limit is None else limit.zone
    verdict = with_second(run.verdict(output), run.second)
    if output.report.reason == NOT_DEVELOPED:
        verdict = Verdict(verdict.worth, verdict.why, False,
                          why_not_developed(points, triangles, start, held, part_area))
    return Result(
        points=points, triangles=triangles, blank=blank, starting_blank=start, strains=of["strains"],
        directions=of["directions"], directions_blank=of["directions_blank"], equivalent=of["equivalent"],
        flow_stress=of["flow_stress"], thickness=settings.thickness * ratio, thickness_ratio=ratio,
        part_area=part_area, blank_area=blank_area, smallest_angle=table[:, 2], minus_trace=table[:, 0],
        density=table[:, 1], zones=zones, limit=limit, contact_pressure=output.contact_pressure,
        binder_pressure=output.binder_pressure, held=held.astype(bool), verdict=verdict, report=output.report,
        press=output.press if settings.model == "press" else None, settings=settings, second_start=run.second,
        runs=run.runs, remarks=run.choice.remarks, messages=output.messages)


def _or_nan(values: Optional[NDArray[np.float64]], *shape: int) -> NDArray[np.float64]:
    return np.full(shape, np.nan) if values is None else values
