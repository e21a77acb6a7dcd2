"""What can go wrong, each with its code, the place it concerns and what to do about it."""
from __future__ import annotations

from typing import TYPE_CHECKING, Any, Dict, Optional, Tuple, Type

if TYPE_CHECKING:
    from .result import Result

__all__ = ["InputError", "LibraryError", "LibraryNotFound", "NoBlank", "NotABlank", "NotConverged",
           "TornwalzenError", "TornwalzenWarning"]


class TornwalzenWarning(UserWarning):
    """What a run stands on that the caller did not give, as a flow curve that stands in for another."""


class TornwalzenError(Exception):
    """Base of all errors of this package.

    Attributes
    ----------
    code : int
        Code of ``tornwalzen_ext.h``; 0 where the library was not entered.
    place : str
        The argument, and where there is one the entry of it, counted from 0; ``""`` where none is to blame.
    advice : str
        What to do about it; ``""`` where there is nothing to advise.

    Examples
    --------
    >>> import numpy, tornwalzen
    >>> try:
    ...     tornwalzen.solve(numpy.zeros((3, 2)), [[0, 1, 2]])
    ... except tornwalzen.TornwalzenError as error:
    ...     print(error.code, error.place, "|", error)
    0 points | points has the shape (3, 2), wanted (n, 3): x, y, z of each node in mm
    """

    def __init__(self, message: str, *, code: int = 0, place: str = "", advice: str = "") -> None:
        super().__init__(message)
        self.message = message
        self.code = code
        self.place = place
        self.advice = advice

    def __str__(self) -> str:
        return self.message + (f"; {self.advice}" if self.advice else "")

    def __reduce__(self) -> Tuple[Any, ...]:
        # Keyword arguments are not what the default would pass on: workers send their errors home.
        return _restored, (type(self), self.message, dict(self.__dict__))


class InputError(TornwalzenError, ValueError):
    """An argument was refused; nothing was computed."""


class LibraryError(TornwalzenError, RuntimeError):
    """The library could not do what it was asked: no memory, no thread, equations that cannot be set up."""


class LibraryNotFound(TornwalzenError, ImportError):
    """The shared library of this package was not found, or is not the one it was written for."""


class NoBlank(TornwalzenError):
    """The run left nothing to cut from.

    Attributes
    ----------
    result : Result
        What the run did leave, with its report.
    """

    def __init__(self, message: str, *, result: Optional["Result"] = None, code: int = 0, place: str = "",
                 advice: str = "") -> None:
        super().__init__(message, code=code, place=place, advice=advice)
        self.result = result


class NotConverged(NoBlank):
    """The run came to no equilibrium; ``result`` is partial."""


class NotABlank(NoBlank):
    """The run converged to what no sheet can be: turned over, crossing itself, covering itself, no minimum."""


def _restored(kind: Type[TornwalzenError], message: str, state: Dict[str, Any]) -> TornwalzenError:
    error = kind(message)
    error.__dict__.update(state)
    return error


_SHEET = "mend the mesh: one piece of sheet with an edge, two triangles at most on each edge"
_LAW = "give stresses in MPa and strains as plain numbers"

#: What to do about a refusal, and the argument of `solve` that it concerns, by the codes of tornwalzen_ext.h.
BY_CODE: Dict[int, Tuple[str, str]] = {
    -2: ("progress", "do not start a run from within the progress of another one with the same handle"),
    -4: ("material", "give 3 to 49 points"),
    -5: ("material", _LAW),
    -6: ("material", "let the first strain be 0"),
    -7: ("material", "sort the points by strain and leave doubles out"),
    -8: ("material", "strains are plastic strains, not per cent"),
    -9: ("material", _LAW),
    -10: ("material", "give more points, or smoother ones"),
    -11: ("material", _LAW),
    -12: ("r", "give the mean of r0, 2 r45 and r90 over 4, about 1 to 2 for steels"),
    -14: ("tolerance", "give factors above 0 and at most 1"),
    -16: ("triangles", "one node and one triangle at least"),
    -17: ("triangles", "count the nodes from 0"),
    -18: ("triangles", "cut the surface open: a closed one has no flat blank"),
    -19: ("triangles", "solve each piece for itself, or join nodes that lie on one another"),
    -20: ("triangles", _SHEET),
    -21: ("triangles", _SHEET),
    -22: ("triangles", _SHEET),
    -23: ("triangles", "turn the triangles to one orientation; the host program does so when it reads a part"),
    -24: ("triangles", "leave the triangle out"),
    -25: ("material", "give MPa, not Pa"),
    -26: ("points", "give finite coordinates"),
    -28: ("hold", "give flags 0 or 1"),
    -30: ("", "close other programs, or take a coarser mesh"),
    -31: ("", "look for triangles without area and for nodes that nothing holds"),
    -36: ("threads", "give 1 to 64"),
    -37: ("threads", "give fewer threads"),
    -52: ("thickness", "give mm, above 0"),
    -53: ("press.young", "give MPa, about 210000 for steel"),
    -55: ("press.planar_r", "give three positive numbers"),
    -56: ("press.rolling_angle", "give degrees"),
    -57: ("press.friction", "give coefficients from 0 to 1"),
    -58: ("press.binder_force", "give N, 0 or more"),
    -59: ("press.flange", "mark triangles, or say \"rim\""),
    -60: ("press.flange", "give one flag per triangle"),
    -62: ("press.beads", "count nodes from 0"),
    -63: ("press.beads", "name nodes that are neighbours along the bead, one after the other"),
    -64: ("press.beads", "give N/mm, above 0"),
    -65: ("press.beads", "give two nodes or more per bead"),
    -66: ("material", "give model=\"fixed\", or a material with a flow curve"),
}

#: No memory, equations that cannot be set up, no thread: nobody's argument is to blame.
NOT_THE_CALLER = (-30, -31, -37)


def refused(code: int, text: str, place: str = "") -> TornwalzenError:
    """The error for a code of the library. `place` outweighs the argument that the code speaks of."""
    where, advice = BY_CODE.get(code, ("", ""))
    kind = LibraryError if code in NOT_THE_CALLER else InputError
    return kind(text, code=code, place=place or where, advice=advice)
