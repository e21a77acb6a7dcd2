"""From the arguments of `solve` to the library's settings."""
from __future__ import annotations

from dataclasses import dataclass, replace
from typing import Optional, Tuple, Union

from ._analysis import Analysis
from ._input import finite, one_of, positive
from ._materials import FlowCurve, Material, material_named
from ._press import Press, structure
from .errors import InputError

_GEOMETRIC = 10  # no material
_NAMED = 1  # the built-in curve whose place that of a named material, a law or points take
_FINAL, _PATH = 1e-3, 1.0

MaterialLike = Union[str, int, FlowCurve, Material]
Tolerance = Union[float, Tuple[float, float], None]


@dataclass(frozen=True)
class Settings:
    """What a run was made with, as the host program's table tells it.

    Attributes
    ----------
    material : int
        Built-in flow curve 0, 1 or 2, or 10 (geometric); 1 where an own curve stands in its place.
    curve : FlowCurve or None
        The curve that stands in; None: the built-in one.
    name : str
        Of the library's material; ``""``: none.
    r : float
        Mean normal anisotropy.
    thickness : float
        Of the blank, mm.
    path, model, energy : str
        ``"sure"`` or ``"fixed"``; ``"press"`` or ``"fixed"``; ``"part"`` or ``"blank"``.
    final_factor, path_factor : float
        Of the gradient tolerance, at the end and on the way.
    threads : int or None
        None: the library's one.
    patch_start : bool
        Whether the start was from the largest flat patch alone.
    """

    material: int
    curve: Optional[FlowCurve]
    name: str
    r: float
    thickness: float
    path: str
    model: str
    energy: str
    final_factor: float
    path_factor: float
    may_repeat: bool
    threads: Optional[int]
    patch_start: bool = False


@dataclass(frozen=True)
class Chosen:
    """Settings with what is known of material and press."""

    settings: Settings
    known: Optional[Material]
    press: Press
    remarks: Tuple[str, ...]


def chosen(material: MaterialLike, thickness: float, path: str, model: str, threads: Optional[int],
           press: Optional[Press], r: Optional[float], energy: str, tolerance: Tolerance) -> Chosen:
    """Checks the arguments of `solve` that are not arrays."""
    number, curve, known = _material(material)
    one_of(path, "path", ("sure", "fixed"))
    one_of(model, "model", ("press", "fixed"))
    one_of(energy, "energy", ("part", "blank"))
    if model == "press" and path == "fixed":
        raise InputError("the press model goes the sure path", place="path", advice="say model=\"fixed\" with it")
    if model == "press" and number == _GEOMETRIC:
        raise InputError("material 10 is geometric and has no stresses for the press model", place="material",
                         advice="say model=\"fixed\" with it")
    if model != "press" and press is not None:
        raise InputError("press belongs to model=\"press\"", place="press")
    if number == _GEOMETRIC and r is not None:
        raise InputError("r describes a material, which material 10 does not read", place="r")
    if threads is not None and (isinstance(threads, bool) or not isinstance(threads, int)):
        raise InputError(f"threads is {threads!r}, wanted 1 to 64 or None", place="threads")
    mean = known.mean_r if known is not None else None
    final, on_the_way = _tolerance(tolerance)
    settings = Settings(
        number, curve, known.name if known is not None else "",
        finite(r, "r", "") if r is not None else 1.0 if mean is None else mean, positive(thickness, "thickness", "mm"),
        path, model, energy, final, on_the_way, tolerance is None, threads)
    return Chosen(settings, known, press if press is not None else Press(), _remarks(known, r))


def _material(material: MaterialLike) -> Tuple[int, Optional[FlowCurve], Optional[Material]]:
    if isinstance(material, FlowCurve):
        return _NAMED, material, None
    if isinstance(material, str) and material.isdigit():
        material = int(material)
    if isinstance(material, int) and not isinstance(material, bool):
        if material not in (0, 1, 2, _GEOMETRIC):
            raise InputError(f"there is no material {material}; the built-in ones are 0, 1, 2 and 10", place="material")
        return material, None, None
    if isinstance(material, str):
        material = material_named(material)
    if isinstance(material, Material):
        return _NAMED, material.flow_curve(), material
    raise InputError(f"material is {material!r}, wanted a name, 0, 1, 2, 10, or what law, curve or materials give",
                     place="material")


def _tolerance(tolerance: Tolerance) -> Tuple[float, float]:
    if tolerance is None:
        return _FINAL, _PATH
    if isinstance(tolerance, (tuple, list)):
        if len(tolerance) != 2:
            raise InputError(f"tolerance has {len(tolerance)} entries, wanted one or two", place="tolerance")
        return finite(tolerance[0], "tolerance", ""), finite(tolerance[1], "tolerance", "")
    return finite(tolerance, "tolerance", ""), _PATH


def _remarks(known: Optional[Material], r: Optional[float]) -> Tuple[str, ...]:
    """What stands in for values of a named material that are not known."""
    remarks = []
    if known is not None and known.flow_curve() is None:
        remarks.append(f"{known.name} has no flow curve with a source: built-in curve 1 stands in; law() or curve() "
                       "give one")
    if known is not None and known.mean_r is None and r is None:
        r90 = known.values.get("r90")
        has = (f"r values but a minimum of r90, {r90.value:g}" if r90 is not None and r90.minimum
               else "three r values")
        remarks.append(f"{known.name} has no {has}: the run is made with r = 1; r gives another")
    return tuple(remarks)


def apply(settings: Settings, choice: Chosen, analysis: Analysis) -> None:
    """Sets what was chosen, in the host program's order."""
    analysis.set("material", settings.material)
    curve = settings.curve
    if curve is not None:
        analysis.set("flow_curve", len(curve.strain), curve.strain, curve.stress)
    analysis.set("normal_anisotropy", settings.r)
    analysis.set("energy_reference", int(settings.energy == "part"))
    analysis.set("path", int(settings.path == "sure"))
    analysis.set("start", int(settings.patch_start))
    analysis.set("model", int(settings.model == "press"))
    if settings.model == "press":
        analysis.set("press", structure(choice.press, settings.thickness, choice.known))
    analysis.set("tolerance_factors", settings.final_factor, settings.path_factor)
    if settings.threads is not None:
        analysis.set("threads", settings.threads)


def from_patch(settings: Settings, patch: bool) -> Settings:
    """The same from the largest flat patch alone, or not."""
    return replace(settings, patch_start=patch)


def tighter(settings: Settings, path_factor: float) -> Settings:
    """The same with the increments on the way closer to equilibrium."""
    return replace(settings, path_factor=path_factor)
