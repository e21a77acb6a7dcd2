"""tornwalzen: from the triangle mesh of a formed sheet-metal part to its flat blank, from Python.

    import tornwalzen
    points, triangles = tornwalzen.read_obj("part.obj")
    result = tornwalzen.solve(points, triangles, material="DC04", thickness=1.5)
    print(result.verdict)
    result.plot().savefig("part.png")

`solve` gives a `Result`; `map` solves many parts on many processors; `tornwalzen.fixed` is the library's fixed interface,
argument by argument. Lengths in mm, stresses in MPa, strains logarithmic; nodes and triangles count from 0.
"""
from . import errors, fixed, limits
from ._library import version as _version
from ._materials import FlowCurve, Material, Value, curve, law, materials
from ._outline import Loop, Rectangle
from ._parallel import map  # the package's own, beside the built-in one
from ._press import Press
from ._read import read_obj
from ._settings import Settings
from ._solve import solve
from ._structures import PressResult, Report, Step
from ._verdict import SecondStart, Verdict
from .errors import (InputError, LibraryError, LibraryNotFound, NoBlank, NotABlank, NotConverged, TornwalzenError,
                     TornwalzenWarning)
from .limits import FormingLimit, LimitCurve, keeler, limit_curve
from .result import Result

#: The version of the library that runs.
__version__ = _version()

__all__ = ["FlowCurve", "FormingLimit", "InputError", "LibraryError", "LibraryNotFound", "LimitCurve", "Loop", "Material",
           "NoBlank", "NotABlank", "NotConverged", "Press", "PressResult", "Rectangle", "Report", "Result", "SecondStart",
           "Settings", "Step", "TornwalzenError", "TornwalzenWarning", "Value", "Verdict", "curve", "errors", "fixed",
           "keeler", "law", "limit_curve", "limits", "map", "materials", "read_obj", "solve"]
