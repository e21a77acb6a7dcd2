"""The structures of the C headers: Python's view of each, and the ctypes layout that follows from it.

A dataclass names the fields in the order of the header; `int` is int32 unless it is named here as int64, `float` is
double. tests/python/test_structures.py compares every offset with what a C compiler makes of the header.
"""
from __future__ import annotations

import ctypes
from dataclasses import dataclass, fields
from typing import Any, Dict, List, Tuple, Type

_LONG = {"factor_entries", "crossings", "thread_bytes"}  # int64
_FATAL_TEXT = 160  # bytes
#: Fields of the headers that mean nothing, each behind the field it follows.
_RESERVED = {"beyond_curve": "reserved", "first_beyond_one": "reserved2", "threads": "reserved3"}
_RESERVED_PRESS_RESULT = {"loads_held": "reserved"}


@dataclass(frozen=True)
class Report:
    """The library's own report of a run: ``TornwalzenReport`` of ``tornwalzen_ext.h``, which explains each field.

    Lengths in mm, areas in mm^2, times in processor seconds over all threads. **Triangles and nodes count from 1**, 0
    is none: the figures are the library's, unchanged. `Result.verdict` puts them into words.
    """

    converged: int
    reason: int
    increments: int
    repeats: int
    accepted_unconverged: int
    newton_iterations: int
    line_search_trials: int
    factorizations: int
    negative_pivots: int
    unfolding_iterations: int
    inverted_elements: int
    beyond_curve: int
    factor_entries: int
    factor_flops: float
    smallest_pivot: float
    progress: float
    last_gradient: float
    gradient_limit: float
    largest_measure: float
    largest_strain: float
    time_structure: float
    time_ordering: float
    time_symbolic: float
    time_development: float
    time_assembly: float
    time_factorization: float
    time_solve: float
    time_line_search: float
    time_analysis: float
    fatal_text: str
    path: int
    flat_patch_start: int
    solves: int
    laplace_factorizations: int
    hinged_elements: int
    start_inverted: int
    blank_inverted: int
    minimum_certified: int
    smallest_stretch: float
    energy: float
    refusal: int
    checked: int
    topology: int
    not_finite: int
    first_not_finite: int
    first_inverted: int
    smallest_stretch_triangle: int
    sheet_checked: int
    open_nodes: int
    first_open_node: int
    crossings_complete: int
    misplaced_loops: int
    first_misplaced_node: int
    first_beyond_curve: int
    first_beyond_one: int
    crossings: int
    crossing_u: float
    crossing_v: float
    overlapped_area: float
    part_area: float
    blank_area: float
    undercut_area: float
    undercut_share: float
    share_beyond_curve: float
    share_beyond_one: float
    time_checks: float
    threads: int
    thread_bytes: int


@dataclass(frozen=True)
class PressResult:
    """What the press model did: ``TornwalzenPressResult`` of ``tornwalzen_analysis.h``, which explains each field.

    mm, mm^2, MPa, N and N mm, as the names say. Pressures and forces are estimates.
    """

    bending: int
    edge: int
    contact: int
    binder: int
    beads: int
    rounds: int
    flange_elements: int
    loads_held: int
    exponent: float
    thinnest_mm: float
    thickest_mm: float
    punch_pressure_mpa: float
    die_pressure_mpa: float
    binder_pressure_mpa: float
    binder_area_mm2: float
    work_nmm: float
    friction_work_nmm: float
    depth_mm: float
    punch_force_n: float


@dataclass(frozen=True)
class Step:
    """Where a run stands, as the `progress` of `solve` is told.

    Attributes
    ----------
    phase : int
        ``TORNWALZEN_PHASE_...`` of ``tornwalzen_analysis.h``.
    fraction : float
        Of the phase, 0 to 1.
    increment, iteration : int
        From 1; 0 where there are none.
    residual : float
        Largest free component of the gradient (mm); negative where there is none yet.
    """

    phase: int
    fraction: float
    increment: int
    iteration: int
    residual: float

    @property
    def name(self) -> str:
        """The phase in words."""
        return PHASES.get(self.phase, "at work")


#: The phases in words, as the host program has them.
PHASES: Dict[int, str] = {
    1: "building the structure of the equations",
    2: "ordering the equations",
    3: "laying out the factor",
    4: "developing the part",
    5: "load increments",
    6: "laying out the starting blank",
    7: "finding the blank",
    9: "edges and tools",
}


def _kind(name: str, annotation: str) -> Any:
    if annotation == "str":
        return ctypes.c_char * _FATAL_TEXT
    if annotation == "float":
        return ctypes.c_double
    return ctypes.c_int64 if name in _LONG else ctypes.c_int32


def _layout(view: Type[Any], reserved: Dict[str, str]) -> List[Tuple[str, Any]]:
    layout: List[Tuple[str, Any]] = [("size", ctypes.c_int32)]
    for field in fields(view):
        layout.append((field.name, _kind(field.name, str(field.type))))
        if field.name in reserved:
            layout.append((reserved[field.name], ctypes.c_int32))
    return layout


class CReport(ctypes.Structure):
    _fields_ = _layout(Report, _RESERVED)


class CPressResult(ctypes.Structure):
    _fields_ = _layout(PressResult, _RESERVED_PRESS_RESULT)


class CStep(ctypes.Structure):
    _fields_ = _layout(Step, {})


class CPress(ctypes.Structure):
    _fields_ = (
        [(name, ctypes.c_int32) for name in ("size", "thickness_points", "bending", "edge", "mesh_side", "punch_above",
                                             "flange_of_rim", "reserved")]
        + [(name, ctypes.c_double) for name in ("thickness_mm", "young_mpa", "r0", "r45", "r90", "rolling_angle_deg",
                                                "friction_punch", "friction_die", "binder_force_n")]
    )


#: Doubles of TornwalzenElementStrain, and where each value lies in it.
STRAIN_DOUBLES = 10
STRAIN_COLUMNS: Dict[str, Any] = {"strains": slice(0, 2), "directions_blank": slice(2, 4), "directions": slice(4, 7),
                                  "thickness": 7, "equivalent": 8, "flow_stress": 9}


def viewed(view: Type[Any], structure: ctypes.Structure) -> Any:
    """The dataclass `view` with the values of a structure that the library filled."""
    values: Dict[str, Any] = {}
    for field in fields(view):
        value = getattr(structure, field.name)
        values[field.name] = value.decode("ascii", "replace") if isinstance(value, bytes) else value
    return view(**values)
