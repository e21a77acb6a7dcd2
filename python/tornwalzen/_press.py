"""What is known of the press, as the press model takes it."""
from __future__ import annotations

import ctypes
from dataclasses import dataclass
from typing import Any, Optional, Sequence, Tuple, Union

import numpy as np
from numpy.typing import ArrayLike, NDArray

from ._analysis import Analysis
from ._input import finite, index_array, one_of
from ._materials import Material
from ._structures import CPress
from .errors import InputError

_BENDING = ("auto", "off", "released", "kept")
_EDGE = ("auto", "off", "on")
_SIDE = ("middle", "punch", "die")
_PUNCH = ("below", "above")


@dataclass(frozen=True)
class Press:
    """The press of `solve`'s press model. What is not given is not used.

    Attributes
    ----------
    friction : float or (float, float)
        Coefficient of friction, or those under punch and die; 0 to 1. The binder's is the die's.
    binder_force : float
        N on the part as meshed: a quarter of a part takes a quarter of the force; 0: no binder.
    flange : "rim" or array_like
        What the binder presses on: the largest nearly flat area at the rim, or one flag per triangle, (m,).
    beads : sequence of (nodes, float)
        Draw beads: nodes along each, from 0, each two in a row sharing an edge; and what it holds back, N/mm.
    bending : str
        ``"auto"``, ``"off"``, ``"released"`` (its own work taken off) or ``"kept"``.
    edge : str
        ``"auto"``, ``"off"`` or ``"on"``: free edges bear no traction.
    mesh_side : str
        What the mesh shows of the sheet: ``"middle"``, its ``"punch"`` or its ``"die"`` side.
    punch : str
        Where the punch comes from: ``"below"`` or ``"above"``.
    young : float, optional
        Young's modulus, MPa; from the material, else 206000.
    planar_r : (float, float, float), optional
        r0, r45, r90; from the material, else the mean anisotropy.
    rolling_angle : float
        Degrees from the blank's u to the rolling direction.
    """

    friction: Union[float, Tuple[float, float]] = 0.0
    binder_force: float = 0.0
    flange: Union[str, ArrayLike] = "rim"
    beads: Sequence[Tuple[ArrayLike, float]] = ()
    bending: str = "auto"
    edge: str = "auto"
    mesh_side: str = "middle"
    punch: str = "below"
    young: Optional[float] = None
    planar_r: Optional[Tuple[float, float, float]] = None
    rolling_angle: float = 0.0


def gives_loads(press: Press) -> bool:
    """Whether friction, beads or free edges are asked for."""
    friction = press.friction if isinstance(press.friction, (tuple, list)) else (press.friction,)
    return any(each > 0.0 for each in friction) or press.edge == "on" or len(press.beads) > 0


def structure(press: Press, thickness: float, material: Optional[Material]) -> CPress:
    """What tornwalzen_analysis_set_press takes; the values of the material where the press leaves them open."""
    friction = press.friction if isinstance(press.friction, (tuple, list)) else (press.friction, press.friction)
    if len(friction) != 2:
        raise InputError("press.friction wants one number or two, of punch and die", place="press.friction")
    young, r = press.young, press.planar_r
    if material is not None and young is None and material.measured("E_MPa"):
        young = material.values["E_MPa"].value
    if material is not None and r is None and material.measured("r0", "r45", "r90"):
        r = (material.values["r0"].value, material.values["r45"].value, material.values["r90"].value)
    if r is not None and (len(r) != 3 or not all(finite(value, "press.planar_r", "") > 0.0 for value in r)):
        raise InputError("press.planar_r wants three positive numbers, r0, r45, r90", place="press.planar_r")
    r0, r45, r90 = r if r is not None else (0.0, 0.0, 0.0)
    return CPress(
        size=ctypes.sizeof(CPress), bending=one_of(press.bending, "press.bending", _BENDING),
        edge=one_of(press.edge, "press.edge", _EDGE), mesh_side=one_of(press.mesh_side, "press.mesh_side", _SIDE),
        punch_above=one_of(press.punch, "press.punch", _PUNCH), flange_of_rim=int(isinstance(press.flange, str)),
        thickness_mm=thickness, young_mpa=0.0 if young is None else finite(young, "press.young", "MPa"), r0=r0,
        r45=r45, r90=r90, rolling_angle_deg=finite(press.rolling_angle, "press.rolling_angle", "degrees"),
        friction_punch=finite(friction[0], "press.friction", ""),
        friction_die=finite(friction[1], "press.friction", ""),
        binder_force_n=finite(press.binder_force, "press.binder_force", "N"))


def lay_on(press: Press, analysis: Analysis, triangles: int) -> None:
    """Sets what of the press lies on the mesh, which has been taken."""
    if not isinstance(press.flange, str):
        analysis.set("flange", _marks(press.flange, triangles))
    elif press.flange != "rim":
        raise InputError(f"press.flange is {press.flange!r}, wanted 'rim' or one flag per triangle",
                         place="press.flange")
    if press.beads:
        nodes = [index_array(line, "press.beads").ravel() for line, _ in press.beads]
        force = np.array([finite(each, "press.beads", "N/mm") for _, each in press.beads])
        lengths = np.array([len(line) for line in nodes], dtype=np.int32)
        analysis.set("beads", len(nodes), lengths, np.concatenate(nodes), force)


def _marks(flange: Any, triangles: int) -> NDArray[np.int32]:
    array = np.asarray(flange)
    if array.shape != (triangles,) or array.dtype.kind not in "biu":
        raise InputError(f"press.flange is an array of {array.dtype} with the shape {array.shape}, wanted one flag per "
                         f"triangle, ({triangles},)", place="press.flange")
    if not array.any():
        raise InputError("press.flange marks no triangle", place="press.flange")
    return np.ascontiguousarray(array, dtype=np.int32)
