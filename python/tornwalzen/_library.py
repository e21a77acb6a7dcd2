"""Finds libtornwalzen and declares what it exports.

Looked for in this order: the file that the environment variable TORNWALZEN_LIBRARY names; the build folders of the
source tree that this file lies in; the library folders of the prefix that this file is installed under; the system's
own search by soname.
"""
from __future__ import annotations

import ctypes
import os
import sysconfig
from ctypes import POINTER, c_char_p, c_double, c_int32, c_int64, c_void_p
from pathlib import Path
from typing import Any, Dict, Iterator, List, Tuple

from ._structures import CPress, CPressResult, CReport, CStep
from .errors import LibraryNotFound

#: The soname that this package is written for; tests/python compares it with the build.
SONAME = "libtornwalzen.so.0"

STEP_HANDLER = ctypes.CFUNCTYPE(c_int32, c_void_p, POINTER(CStep))
MESSAGE_HANDLER = ctypes.CFUNCTYPE(None, c_void_p, c_char_p)
NO_STEP_HANDLER = ctypes.cast(0, STEP_HANDLER)
NO_MESSAGE_HANDLER = ctypes.cast(0, MESSAGE_HANDLER)

_I, _D, _P = c_int32, c_double, c_void_p

#: Result and arguments of each function. Arrays are passed as addresses.
_ANALYSIS: Dict[str, Tuple[Any, List[Any]]] = {
    "create": (_P, []),
    "destroy": (_I, [_P]),
    "set_mesh": (_I, [_P, _I, _I, _P, _P, _I]),
    "set_holds": (_I, [_P, _P]),
    "set_material": (_I, [_P, _I]),
    "set_flow_curve": (_I, [_P, _I, _P, _P]),
    "set_normal_anisotropy": (_I, [_P, _D]),
    "set_energy_reference": (_I, [_P, _I]),
    "set_threads": (_I, [_P, _I]),
    "set_path": (_I, [_P, _I]),
    "set_start": (_I, [_P, _I]),
    "set_tolerance_factors": (_I, [_P, _D, _D]),
    "set_model": (_I, [_P, _I]),
    "set_press": (_I, [_P, POINTER(CPress)]),
    "set_flange": (_I, [_P, _P]),
    "set_beads": (_I, [_P, _I, _P, _P, _P]),
    "on_step": (_I, [_P, STEP_HANDLER, _P]),
    "on_message": (_I, [_P, MESSAGE_HANDLER, _P]),
    "run": (_I, [_P]),
    "report": (_I, [_P, POINTER(CReport)]),
    "blank": (_P, [_P]),
    "starting_blank": (_P, [_P]),
    "element_table": (_P, [_P]),
    "oriented_triangles": (_P, [_P]),
    "strains": (_I, [_P, _P]),
    "press_result": (_I, [_P, POINTER(CPressResult)]),
    "contact_pressure": (_P, [_P]),
    "binder_pressure": (_P, [_P]),
    "matrix_entries": (c_int64, [_P]),
    "error_text": (c_char_p, [_P, _I, _I]),
}
_OTHERS: Dict[str, Tuple[Any, List[Any]]] = {
    "tornwalzen_version": (c_char_p, []),
    "tornwalzen_error_text": (c_char_p, [_I, _I]),
    "tornwalzen_points_hollomon": (_I, [_D, _D, _D, _I, _P, _P]),
    "tornwalzen_points_swift": (_I, [_D, _D, _D, _D, _I, _P, _P]),
    "tornwalzen_points_ludwik": (_I, [_D, _D, _D, _D, _I, _P, _P]),
    "tornwalzen_points_voce": (_I, [_D, _D, _D, _D, _I, _P, _P]),
    "tornwalzen_points_hockett_sherby": (_I, [_D, _D, _D, _D, _D, _I, _P, _P]),
}


def _candidates() -> Iterator[str]:
    named = os.environ.get("TORNWALZEN_LIBRARY")
    if named:
        yield named
        return
    package = Path(__file__).resolve().parent
    tree = package.parent.parent
    if (tree / "include" / "tornwalzen_analysis.h").exists():
        for build in [tree / "build" / "release", *sorted((tree / "build").glob("*"))]:
            if (build / SONAME).exists():
                yield str(build / SONAME)
    multiarch = sysconfig.get_config_var("MULTIARCH") or "."
    for prefix in package.parents:
        for folder in ("lib", f"lib/{multiarch}", "lib64"):
            if (prefix / folder / SONAME).exists():
                yield str(prefix / folder / SONAME)
    yield SONAME


def _load() -> ctypes.CDLL:
    first = next(_candidates())
    try:
        library = ctypes.CDLL(first)
        for name, (result, arguments) in _ANALYSIS.items():
            _declare(library, "tornwalzen_analysis_" + name, result, arguments)
        for name, (result, arguments) in _OTHERS.items():
            _declare(library, name, result, arguments)
    except (OSError, AttributeError) as problem:
        raise LibraryNotFound(
            f"the library of tornwalzen cannot be used: {problem}", place=first,
            advice="install libtornwalzen, build it in the source tree, or name its file in the environment "
                   "variable TORNWALZEN_LIBRARY") from problem
    return library


def _declare(library: ctypes.CDLL, name: str, result: Any, arguments: List[Any]) -> None:
    function = getattr(library, name)
    function.restype = result
    function.argtypes = arguments


LIBRARY = _load()


def version() -> str:
    """The version of the library that runs, ``major.minor.patch``."""
    text: bytes = LIBRARY.tornwalzen_version()
    return text.decode("ascii")
