"""A result as files, and as a mesh of meshio."""
from __future__ import annotations

import hashlib
import json
import os
import tempfile
from dataclasses import asdict, fields
from pathlib import Path
from typing import TYPE_CHECKING, Any, Dict, List, Union

import numpy as np
from numpy.typing import NDArray

from ._input import one_of
from ._library import version
from ._verdict import decimal
from .errors import InputError

if TYPE_CHECKING:
    from .result import Result

_NAMES = ("blank.obj", "result.npz", "summary.json")
_IDENTITY = "part_sha256"


def identity(result: "Result") -> str:
    """Tells one part from another: a digest of its nodes and triangles."""
    digest = hashlib.sha256(np.ascontiguousarray(result.points).tobytes())
    digest.update(np.sort(result.triangles, axis=1).tobytes())
    return digest.hexdigest()


def save(result: "Result", folder: Union[str, "os.PathLike[str]"], replace: bool) -> List[str]:
    """See Result.save."""
    place = Path(folder)
    place.mkdir(parents=True, exist_ok=True)
    if not replace:
        _check_free(place, identity(result))
    with tempfile.TemporaryDirectory(prefix=".tornwalzen-", dir=place) as scratch:
        new = Path(scratch)
        _write_obj(result, new / "blank.obj")
        np.savez(new / "result.npz", **_arrays(result))
        (new / "summary.json").write_text(json.dumps(_summary(result), indent=2) + "\n", encoding="utf-8")
        for name in _NAMES:
            os.replace(new / name, place / name)
    return [str(place / name) for name in _NAMES]


def _check_free(place: Path, part: str) -> None:
    there = [name for name in _NAMES if (place / name).exists()]
    if not there:
        return
    try:
        same = json.loads((place / "summary.json").read_text(encoding="utf-8")).get(_IDENTITY) == part
    except (OSError, ValueError, AttributeError):
        same = False
    if not same:
        raise FileExistsError(f"{place} holds {', '.join(there)}, which is no result of this part; say replace=True, or "
                              "take another folder")


def _write_obj(result: "Result", path: Path) -> None:
    with open(path, "w", encoding="utf-8") as file:
        file.write("# flat blank\n# unit: mm; nodes in the order of the part\n")
        if not result.verdict.converged:
            file.write(f"# NOT CONVERGED: {result.verdict.reason}\n")
        file.writelines(f"v {decimal(u)} {decimal(v)} 0\n" for u, v in result.blank.tolist())
        file.writelines(f"f {i} {j} {k}\n" for i, j, k in (result.triangles + 1).tolist())


def _arrays(result: "Result") -> Dict[str, NDArray[Any]]:
    arrays = {field.name: getattr(result, field.name) for field in fields(result)}
    return {name: values for name, values in arrays.items() if isinstance(values, np.ndarray)}


def _summary(result: "Result") -> Dict[str, Any]:
    settings = {field.name: getattr(result.settings, field.name) for field in fields(result.settings)}
    settings["curve"] = "built in" if result.settings.curve is None else result.settings.curve.source
    rectangle = result.rectangle() if np.isfinite(result.blank).all() else None
    summary: Dict[str, Any] = {
        "program": f"tornwalzen {version()}, Python",
        _IDENTITY: identity(result),
        "verdict": result.verdict.worth,
        "verdict_reasons": list(result.verdict.why),
        "converged": result.verdict.converged,
        "reason": result.verdict.reason or None,
        "nodes": len(result.points),
        "triangles": len(result.triangles),
        "part_area_mm2": float(result.part_area.sum()),
        "blank_area_mm2": float(result.blank_area.sum()),
        "blank_rectangle_mm_deg": None if rectangle is None else list(rectangle),
        "forming_limit": None if result.limit is None else result.limit.curve.basis,
        "settings": settings,
        "remarks": list(result.remarks),
        "second_start": None if result.second_start is None else asdict(result.second_start),
        "press": None if result.press is None else asdict(result.press),
        "report": asdict(result.report),
    }
    cleaned: Dict[str, Any] = _plain(summary)
    return cleaned


def _plain(value: Any) -> Any:
    """What JSON can hold: numbers that are none become null."""
    if isinstance(value, dict):
        return {key: _plain(each) for key, each in value.items()}
    if isinstance(value, (list, tuple)):
        return [_plain(each) for each in value]
    if isinstance(value, float) and not np.isfinite(value):
        return None
    return value


def to_meshio(result: "Result", shape: str) -> Any:
    """See Result.to_meshio. Arrays are named as in the host program's VTU files."""
    one_of(shape, "shape", ("part", "blank"))
    try:
        import meshio
    except ImportError as problem:
        raise InputError("to_meshio needs meshio", place="to_meshio",
                         advice="install it (Debian: python3-meshio)") from problem
    flat = np.column_stack((result.blank, np.zeros(len(result.blank))))
    directions = result.directions if shape == "part" else np.column_stack(
        (result.directions_blank, np.zeros(len(result.triangles))))
    cells: Dict[str, NDArray[Any]] = {
        "thickness_ratio_Ablank_by_Apart": result.thickness_ratio,
        "thickness_mm": result.thickness,
        "strain_major_log": result.strains[:, 0],
        "strain_minor_log": result.strains[:, 1],
        "strain_equivalent": result.equivalent,
        "flow_stress_MPa": result.flow_stress,
        "direction_of_strain_major": directions,
        "part_area_mm2": result.part_area,
        "blank_area_mm2": result.blank_area,
        "forming_limit_zone": result.zones,
    }
    for name, pressure in (("contact_pressure_MPa", result.contact_pressure),
                           ("binder_pressure_MPa", result.binder_pressure)):
        if pressure is not None:
            cells[name] = pressure
    return meshio.Mesh(
        result.points if shape == "part" else flat, [("triangle", result.triangles)],
        point_data={"blank_position_mm": flat, "displacement_mm": result.points - flat},
        cell_data={name: [np.ascontiguousarray(values)] for name, values in cells.items()})
