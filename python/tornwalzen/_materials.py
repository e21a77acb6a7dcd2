"""Sheet materials: flow curves, hardening laws, and the library of materials by name.

The library is the file that the host program has too, materials.json: a number in it has a source, and what is only known
as a minimum is never taken for the value.
"""
from __future__ import annotations

import json
import math
import os
from ctypes import c_double
from dataclasses import dataclass
from pathlib import Path
from typing import Any, Dict, Mapping, Optional, Tuple, Union

import numpy as np
from numpy.typing import ArrayLike, NDArray

from ._input import finite, real_array
from ._library import LIBRARY
from .errors import InputError, refused

_LAW_POINTS = 49  # as many as the library takes
_LAW_STRAIN = 1.0  # plastic strain up to which a law is tabulated
_FORMAT = "tornwalzen materials 1"
#: The keys of a material's values with the range that a file may give.
_RANGES = {"K_MPa": (1.0, 20000.0), "e0": (1e-9, 1.0), "n": (1e-3, 1.0), "E_MPa": (100.0, 1e6),
           "density_kg_per_m3": (100.0, 25000.0), "r0": (0.01, 10.0), "r45": (0.01, 10.0), "r90": (0.01, 10.0)}
_CLASSES = ("mild steel", "steel", "stainless steel", "aluminium", "other")

#: Parameters of the hardening laws, in the order of the library's functions.
LAWS: Dict[str, Tuple[str, ...]] = {
    "hollomon": ("K", "n"),
    "swift": ("K", "e0", "n"),
    "ludwik": ("s0", "K", "n"),
    "voce": ("s0", "ss", "rate"),
    "hockett-sherby": ("s0", "ss", "rate", "n"),
}


@dataclass(frozen=True, eq=False)
class FlowCurve:
    """A flow curve by points, as `law` and `curve` make it.

    Attributes
    ----------
    strain : numpy.ndarray
        float64 (k,): plastic strain, dimensionless, from 0 on.
    stress : numpy.ndarray
        float64 (k,): flow stress, MPa.
    source : str
        Where it comes from, for reports.
    """

    strain: NDArray[np.float64]
    stress: NDArray[np.float64]
    source: str


def law(name: str, *, to: float = _LAW_STRAIN, **parameters: float) -> FlowCurve:
    """A hardening law as flow curve.

    Parameters
    ----------
    name : str
        ``"hollomon"`` (K, n), ``"swift"`` (K, e0, n), ``"ludwik"`` (s0, K, n), ``"voce"`` (s0, ss, rate) or
        ``"hockett-sherby"`` (s0, ss, rate, n).
    to : float
        Plastic strain up to which it is tabulated, above 0 and below 5.
    **parameters : float
        Of the law: stresses and moduli in MPa, all others dimensionless.

    Raises
    ------
    InputError
        A law or parameter there is not, one that is missing or out of range.

    Examples
    --------
    >>> steel = tornwalzen.law("swift", K=549.03, e0=0.007, n=0.22)
    >>> steel.strain.shape, round(steel.stress[0], 1)
    ((49,), 184.3)
    """
    if name not in LAWS:
        raise InputError(f"there is no law {name!r}; known are {', '.join(LAWS)}", place="name")
    keys = LAWS[name]
    for key in parameters:
        if key not in keys:
            raise InputError(f"{name} has no {key!r}, it takes {', '.join(keys)} and to", place=key)
    for key in keys:
        if key not in parameters:
            raise InputError(f"{name} also needs {key}", place=key)
    values = [finite(parameters[key], key, "") for key in keys] + [finite(to, "to", "")]
    strain, stress = np.empty(_LAW_POINTS), np.empty(_LAW_POINTS)
    function = getattr(LIBRARY, "tornwalzen_points_" + name.replace("-", "_"))
    code = function(*(c_double(value) for value in values), _LAW_POINTS, strain.ctypes.data, stress.ctypes.data)
    if code != 0:
        raise refused(code, LIBRARY.tornwalzen_error_text(code, 1).decode("ascii"), name)
    given = ", ".join(f"{key} {value:g}" for key, value in zip(keys, values))
    return FlowCurve(strain, stress, f"{name}: {given}")


def curve(strain: ArrayLike, stress: ArrayLike, source: str = "own points") -> FlowCurve:
    """A flow curve by points.

    Parameters
    ----------
    strain : array_like
        (k,), 3 to 49 plastic strains, the first 0, increasing, below 5.
    stress : array_like
        (k,), flow stresses in MPa, positive.

    Raises
    ------
    InputError
        Shapes that differ, no numbers. What else the library asks of the points it checks when the run begins.
    """
    e, s = real_array(strain, "strain"), real_array(stress, "stress")
    if e.ndim != 1 or e.shape != s.shape:
        raise InputError(f"strain and stress have the shapes {e.shape} and {s.shape}, wanted one list of each, as long",
                         place="strain")
    return FlowCurve(e.copy(), s.copy(), source)


@dataclass(frozen=True)
class Value:
    """A number of a material: its value, where it comes from, and whether it is only known not to be less."""

    value: float
    source: str
    minimum: bool = False


@dataclass(frozen=True)
class Material:
    """A sheet material of the library.

    Attributes
    ----------
    values : dict
        By key: ``K_MPa``, ``e0``, ``n`` (Swift's law; Hollomon's without e0), ``E_MPa``, ``density_kg_per_m3``, ``r0``, ``r45``, ``r90``.
    keeler : bool
        Whether the limit curve of mild steels holds for it.
    """

    name: str
    number: str
    standard: str
    kind: str
    keeler: bool
    values: Mapping[str, Value]

    def measured(self, *keys: str) -> bool:
        """Whether all these values are known themselves, not only as a bound."""
        return all(key in self.values and not self.values[key].minimum for key in keys)

    @property
    def mean_r(self) -> Optional[float]:
        """(r0 + 2 r45 + r90)/4, or None where not all three are known."""
        if not self.measured("r0", "r45", "r90"):
            return None
        v = self.values
        return 0.25 * (v["r0"].value + 2.0 * v["r45"].value + v["r90"].value)

    def flow_curve(self) -> Optional[FlowCurve]:
        """Swift's law of the material, Hollomon's where e0 is not given, or None where K or n is not known."""
        if not self.measured("K_MPa", "n") or ("e0" in self.values and not self.measured("e0")):
            return None
        known = {"K": self.values["K_MPa"].value, "n": self.values["n"].value}
        if "e0" in self.values:
            found = law("swift", e0=self.values["e0"].value, **known)
        else:
            found = law("hollomon", **known)
        return FlowCurve(found.strain, found.stress, f"{self.name}, {found.source}")


def materials(path: Union[str, "os.PathLike[str]", None] = None) -> Dict[str, Material]:
    """The materials by name: those of the package and, before them, those of a file in the same form.

    Parameters
    ----------
    path : path, optional
        A file as ``tornwalzen materials --json`` prints it; its materials replace those of the same name.

    Raises
    ------
    InputError
        Not of the form: names file, material and key.

    Examples
    --------
    >>> steel = tornwalzen.materials()["DC04"]
    >>> steel.values["r90"]
    Value(value=1.6, source='EN 10130:2006, thickness from 0.5 mm; 0.2 less above 2 mm', minimum=True)
    """
    library = {} if path is None else _read(Path(path))
    taken = {name.lower() for name in library}
    library.update((name, material) for name, material in _read(_own_file()).items() if name.lower() not in taken)
    return library


def _own_file() -> Path:
    package = Path(__file__).resolve().parent
    beside = package / "materials.json"
    return beside if beside.exists() else package.parent.parent / "app" / "materials" / "materials.json"


def material_named(name: str) -> Material:
    """The material of the package's library with that name, capital or small letters."""
    library = materials()
    for known, material in library.items():
        if known.lower() == name.lower():
            return material
    raise InputError(f"there is no material {name!r}; known are 0, 1, 2, 10, {', '.join(library)}", place="material",
                     advice="materials(path) reads others from a file")


def _read(path: Path) -> Dict[str, Material]:
    try:
        content = json.loads(path.read_text(encoding="utf-8"))
    except (OSError, ValueError) as problem:
        raise InputError(f"{path}: {problem}", place="path") from problem
    if not isinstance(content, dict) or content.get("format") != _FORMAT or not isinstance(
            content.get("materials"), list):
        raise InputError(f"{path}: wanted an object with \"format\": \"{_FORMAT}\" and a list \"materials\"",
                         place="path")
    library: Dict[str, Material] = {}
    for place, entry in enumerate(content["materials"], start=1):
        material = _material(entry, f"{path}, material {place}")
        if material.name in library:
            raise InputError(f"{path}, material {place}: the name {material.name!r} occurs twice", place="path")
        library[material.name] = material
    return library


def _material(entry: Any, place: str) -> Material:
    def fail(sentence: str) -> InputError:
        return InputError(f"{place}: {sentence}", place="path")

    if not isinstance(entry, dict):
        raise fail("wanted an object")
    for key in entry:
        if key not in ("name", "number", "standard", "class", "limit_curve", "values"):
            raise fail(f"there is no key {key!r} here")
    name = entry.get("name")
    if not isinstance(name, str) or not name or name.lstrip("+-").isdigit():
        raise fail("\"name\" is no text, empty or a whole number")
    place = f"{place} ({name!r})"
    kind, limit, values = entry.get("class"), entry.get("limit_curve", "none"), entry.get("values")
    if kind not in _CLASSES:
        raise fail(f"there is no class {kind!r}; known are {', '.join(_CLASSES)}")
    if limit not in ("keeler", "none") or (limit == "keeler" and kind != "mild steel"):
        raise fail("\"limit_curve\" may be \"none\" or, for mild steel only, \"keeler\"")
    if not isinstance(values, dict):
        raise fail("there is no object \"values\"")
    return Material(name, str(entry.get("number", "")), str(entry.get("standard", "")), kind, limit == "keeler",
                    {key: _value(key, value, place) for key, value in values.items()})


def _value(key: str, entry: Any, place: str) -> Value:
    def fail(sentence: str) -> InputError:
        return InputError(f"{place}: {sentence}", place="path")

    if key not in _RANGES:
        raise fail(f"there is no key {key!r} here")
    if not isinstance(entry, dict) or set(entry) - {"value", "bound", "source"}:
        raise fail(f"{key!r} wants {{\"value\": ..., \"source\": ...}}")
    number, source, bound = entry.get("value"), entry.get("source"), entry.get("bound", "")
    least, most = _RANGES[key]
    if isinstance(number, bool) or not isinstance(number, (int, float)) or not (
            math.isfinite(number) and least <= number <= most):
        raise fail(f"{key!r} is {number!r}, not between {least:g} and {most:g}")
    if not isinstance(source, str) or not source:
        raise fail(f"{key!r} has no \"source\": where does the number come from?")
    if bound not in ("", "minimum"):
        raise fail(f"\"bound\" of {key!r} may only be \"minimum\"")
    return Value(float(number), source, bound == "minimum")
