"""The forming-limit diagram: which triangles are near the strain at which sheet necks, which beyond it.

Strains are logarithmic; margins are told in per cent of engineering strain, 100 (exp(e) - 1), as workshops measure them.
"""
from __future__ import annotations

from dataclasses import dataclass
from typing import Dict, Optional, Union

import numpy as np
from numpy.typing import ArrayLike, NDArray

from ._input import finite, positive, real_array
from ._materials import Material
from .errors import InputError

__all__ = ["FormingLimit", "LimitCurve", "keeler", "limit_curve", "ZONES"]

_THICKEST = 3.0  # mm, up to which the formula was measured
_LARGEST_N = 0.21  # likewise
_RIGHT_SLOPE = 0.6  # engineering strains
_RIGHT_END = 20.0  # per cent
_RIGHT_STEPS = 40  # a line in engineering strains is nearly one in logarithmic ones
_LEFT_END = -1.0  # logarithmic: no sheet is compressed that far
_THICKENING = 0.01  # logarithmic: below it, rounding and bending look the same
_LARGEST_STRAIN = 2.0  # logarithmic: beyond it, per cent were meant
_ALUMINIUM_MARGIN, _OTHER_MARGIN = 8.0, 10.0  # per cent of engineering strain

#: The zones by number.
ZONES: Dict[int, str] = {-1: "no strains or no limit curve", 0: "safe", 1: "marginal", 2: "split",
                         3: "wrinkling tendency"}


def engineering_percent(strain: NDArray[np.float64]) -> NDArray[np.float64]:
    """100 (exp(e) - 1)."""
    return np.asarray(100.0 * np.expm1(strain))


@dataclass(frozen=True, eq=False)
class LimitCurve:
    """The largest major strain that sheet bears at each minor one.

    Attributes
    ----------
    minor, major : numpy.ndarray
        float64 (k,): logarithmic strains, the minor ones ascending. Linear between the points, level beyond them.
    basis : str
        Where it comes from.
    """

    minor: NDArray[np.float64]
    major: NDArray[np.float64]
    basis: str

    def at(self, minor: ArrayLike) -> NDArray[np.float64]:
        """Major strain of the curve at each minor one."""
        return np.asarray(np.interp(np.asarray(minor, dtype=np.float64), self.minor, self.major))


def keeler(thickness: float, n: float) -> LimitCurve:
    """The limit curve of mild steels after S. P. Keeler and W. G. Brazier (Micro Alloying 75, 1977).

    In plane strain FLC0 = (23.3 + 14.13 t) n / 0.21 per cent of engineering strain; to the left constant thinning, to
    the right the slope 0.6 in engineering strains up to a minor strain of 20 %, level from there on.

    Parameters
    ----------
    thickness : float
        mm; counts up to 3.
    n : float
        Hardening exponent; counts up to 0.21.

    Examples
    --------
    >>> curve = tornwalzen.keeler(1.0, 0.21)
    >>> round(float(curve.at(0.0)), 4), round(float(curve.at(-0.1)), 4)
    (0.3179, 0.4179)
    """
    t, n = positive(thickness, "thickness", "mm"), positive(n, "n", "")
    lowest = (23.3 + 14.13 * min(t, _THICKEST)) * min(n, _LARGEST_N) / _LARGEST_N
    right = _RIGHT_END * np.arange(_RIGHT_STEPS + 1) / _RIGHT_STEPS
    minor = np.concatenate(([_LEFT_END], np.log1p(0.01 * right)))
    major = np.concatenate(([np.log1p(0.01 * lowest) - _LEFT_END], np.log1p(0.01 * (lowest + _RIGHT_SLOPE * right))))
    basis = (f"FLC0 {lowest:.1f} % after Keeler and Brazier, t {t:g} mm{' (counts as 3)' if t > _THICKEST else ''}, "
             f"n {n:g}{' (counts as 0.21)' if n > _LARGEST_N else ''}")
    return LimitCurve(minor, major, basis)


def limit_curve(minor: ArrayLike, major: ArrayLike, *, percent: bool = False, basis: str = "own points") -> LimitCurve:
    """A limit curve by points.

    Parameters
    ----------
    minor, major : array_like
        (k,), the minor strains ascending: logarithmic, or with `percent` engineering strains in per cent.

    Raises
    ------
    InputError
        Minor strains that do not ascend, a major one that is not positive, logarithmic strains beyond 2.
    """
    x, y = real_array(minor, "minor"), real_array(major, "major")
    if x.ndim != 1 or x.shape != y.shape or len(x) == 0:
        raise InputError(f"minor and major have the shapes {x.shape} and {y.shape}, wanted one list of each, as long",
                         place="minor")
    if not (np.isfinite(x).all() and np.isfinite(y).all()):
        raise InputError("a strain of the limit curve is not finite", place="minor")
    if percent:
        if min(x.min(), y.min()) <= -100.0:
            raise InputError("engineering strains lie above -100 %", place="minor")
        x, y = np.log1p(0.01 * x), np.log1p(0.01 * y)
    if max(np.abs(x).max(), np.abs(y).max()) > _LARGEST_STRAIN:
        raise InputError("a logarithmic strain beyond 2", place="minor",
                         advice="say percent=True for per cent of engineering strain")
    if not (y > 0.0).all():
        raise InputError("the major strain must be positive", place="major")
    if not (np.diff(x) > 0.0).all():
        raise InputError("the minor strains do not ascend", place="minor")
    return LimitCurve(x.copy(), y.copy(), basis)


@dataclass(frozen=True, eq=False)
class FormingLimit:
    """The triangles of a part in the forming-limit diagram.

    Attributes
    ----------
    zone : numpy.ndarray
        int8 (m,), of `ZONES`. Split: on the curve or beyond; marginal: nearer to it than the margin; wrinkling tendency:
        neither, but the sheet thickens by more than 1 % under compression; safe: the rest; -1: no strains.
    distance : numpy.ndarray
        float64 (m,): per cent of engineering strain up to the curve, negative beyond it, NaN without strains.
    margin : float
        Per cent of engineering strain.
    """

    curve: LimitCurve
    margin: float
    zone: NDArray[np.int8]
    distance: NDArray[np.float64]


def classified(strains: NDArray[np.float64], curve: LimitCurve, margin: float) -> FormingLimit:
    """The zones of strains (m, 2), major and minor, logarithmic."""
    major, minor = strains[:, 0], strains[:, 1]
    known = np.isfinite(major) & np.isfinite(minor)
    distance = np.full(len(strains), np.nan)
    distance[known] = engineering_percent(curve.at(minor[known])) - engineering_percent(major[known])
    with np.errstate(invalid="ignore"):
        wrinkles = (minor < 0.0) & (major + minor < -_THICKENING)
        zone = np.where(~(distance > 0.0), 2, np.where(distance < margin, 1, np.where(wrinkles, 3, 0)))
    return FormingLimit(curve, margin, np.where(known, zone, -1).astype(np.int8), distance)


def margin_of(material: Optional[Material]) -> float:
    """Per cent of engineering strain below the curve within which a triangle is marginal."""
    return _ALUMINIUM_MARGIN if material is not None and material.kind == "aluminium" else _OTHER_MARGIN


def chosen_curve(limit: Union[str, LimitCurve, None], material: Optional[Material],
                 thickness: float) -> Optional[LimitCurve]:
    """The limit curve of a run: one that is given, or with ``"auto"`` the formula where it holds."""
    if limit is None or isinstance(limit, LimitCurve):
        return limit
    if limit != "auto":
        raise InputError(f"limit is {limit!r}, wanted 'auto', None or a LimitCurve", place="limit",
                         advice="keeler(thickness, n) and limit_curve(minor, major) make one")
    if material is None or not material.keeler or "n" not in material.values:
        return None
    n = material.values["n"]
    curve = keeler(finite(thickness, "thickness", "mm"), n.value)
    return LimitCurve(curve.minor, curve.major, curve.basis + f", {'a minimum: ' if n.minimum else ''}{n.source}")
