"""Whether one can stand behind a blank, in the host program's rules and words.

Everything comes from the library's report. Sentences count triangles and nodes from 1, as the report and part files do.
"""
from __future__ import annotations

from dataclasses import dataclass
from decimal import Decimal
from typing import List, Optional, Tuple

from ._structures import PressResult, Report

_OVERLAP = 1e-6  # of the part's area: below it the outline touches itself by rounding
_STRAIN = 1e-3  # of the part's area beyond an equivalent strain of 1 that is let pass
_UNDERCUT = 1e-3  # of the part's area: from here on several minima may exist
_ENERGY = 1e-4  # relative: two blanks whose potentials lie nearer are the same
_ENERGY_FLOOR = 1e-8  # mm^2 of potential per mm^2: nothing but rounding on a developable part

#: TornwalzenReport.reason.
CONVERGED, NOT_DEVELOPED, STEP_TOO_SMALL, FINAL_UNCONVERGED, SOLVER_FAILED, STOPPED, GAVE_UP = 0, 5, 6, 7, 8, 9, 10
_SURE = 1

GOOD, DOUBTFUL, NOT_A_BLANK = "good", "doubtful", "not a blank"


@dataclass(frozen=True)
class Verdict:
    """Whether one can stand behind the blank.

    Attributes
    ----------
    worth : str
        ``"good"``, ``"doubtful"`` or ``"not a blank"``.
    why : tuple of str
        What makes it doubtful or no blank, and where; triangles and nodes count from 1, as part files do. Empty if good.
    converged : bool
        Whether the run came to an equilibrium.
    reason : str
        Why it did not; ``""`` if it did.

    ``str(verdict)`` is the last line of the host program's table.
    """

    worth: str
    why: Tuple[str, ...]
    converged: bool
    reason: str

    def __str__(self) -> str:
        return self.worth + (": " + "; ".join(self.why) if self.why else "")


@dataclass(frozen=True)
class SecondStart:
    """What a second start of the sure path told.

    Attributes
    ----------
    converged, taken, agrees : bool
        Whether it converged; whether its blank is the one of the result; whether both blanks are the same.
    energy, other_energy : float
        Potentials (mm^2) of the blank taken and of the other one.
    """

    converged: bool
    taken: bool
    agrees: bool
    energy: float
    other_energy: float


def decimal(value: float) -> str:
    """The shortest decimal number that reads as `value`, fixed or scientific, whichever is shorter (fixed, if alike)."""
    if value != value or value in (float("inf"), float("-inf")):
        return repr(value)
    sign, digits, exponent = Decimal(repr(float(value))).normalize().as_tuple()
    text = "".join(map(str, digits))
    power = int(exponent) + len(text) - 1
    scientific = text[0] + ("." + text[1:] if len(text) > 1 else "") + f"e{'-' if power < 0 else '+'}{abs(power):02d}"
    fixed = format(Decimal(repr(float(value))).normalize().copy_abs(), "f")
    return ("-" if sign else "") + (fixed if len(fixed) <= len(scientific) else scientific)


def counted(count: int, noun: str) -> str:
    """``"1 triangle"``, ``"2 triangles"``."""
    return f"{count} {noun}{'' if count == 1 else 's'}"


def fatal_text(report: Report) -> str:
    """The report's fatal text without the signs around it."""
    return report.fatal_text.strip(" @")


_FLAT = ("the part is flat and is its own blank: nothing but rounding is left of the gradient (exactly zero under "
         "material 10), so the line search finds no better blank, and by the rules of the method such an increment "
         "does not count as converged")


def _stalled(report: Report) -> str:
    gradient, limit = decimal(report.last_gradient) + " mm", decimal(report.gradient_limit) + " mm"
    if report.last_gradient <= report.gradient_limit:
        return ("the line search found no better blank in the last increment, which then does not count as converged, "
                f"although its gradient of {gradient} is within the tolerance of {limit}")
    return f"the gradient of the last increment stayed at {gradient}, above its tolerance of {limit}"


def _not_converged(report: Report, flat: bool) -> str:
    if report.reason == SOLVER_FAILED:
        return ("the system of equations could not be factorized or solved in at least one Newton step; the held "
                "unknowns leave a part of the blank free, a triangle has collapsed, or memory ran out")
    if report.reason == NOT_DEVELOPED:
        return "the part could not be developed onto the plane"
    if report.reason == STEP_TOO_SMALL:
        return _FLAT if flat else ("increments failed until their step became too small, at "
                                   f"{100.0 * report.progress:.1f} % of the part")
    if report.reason == FINAL_UNCONVERGED:
        return _FLAT if flat else _stalled(report)
    if report.reason == GAVE_UP:
        return f"the sure path gave up ({fatal_text(report)}); path=\"fixed\" tries the way by load increments"
    return "the library refused the run: " + fatal_text(report)


def _percent(share: float) -> str:
    return f"{100.0 * share:.{3 if share < 0.001 else 1}f} %"


def _faults(r: Report, press: PressResult) -> List[str]:
    """What makes the result no blank at all."""
    why = []
    if r.not_finite > 0:
        why.append(f"{counted(r.not_finite, 'triangle')} with a position that is no number, the first is triangle "
                   f"{r.first_not_finite}")
    if r.blank_inverted > 0:
        why.append(f"{counted(r.blank_inverted, 'triangle')} turned over in the blank"
                   + (f", the first is triangle {r.first_inverted}" if r.first_inverted > 0 else ""))
    if r.crossings > 0:
        why.append(f"the outline of the blank crosses itself, first at u {r.crossing_u:.2f}, v {r.crossing_v:.2f} mm")
    if r.misplaced_loops > 0:
        why.append(f"holes and outline of the blank do not lie in one another, see node {r.first_misplaced_node}")
    if r.overlapped_area > _OVERLAP * r.part_area:
        why.append(f"the blank covers {r.overlapped_area:.2f} mm2 more than once")
    elif r.open_nodes > 0 and r.blank_inverted == 0:
        why.append(f"the triangles around node {r.first_open_node} do not close once (nodes like this: "
                   f"{r.open_nodes})")
    if r.path == _SURE and r.minimum_certified == 0 and press.loads_held == 0:
        why.append("the equilibrium found is no minimum")
    return why


def _strength_doubts(r: Report, press: PressResult, loads_given: bool) -> List[str]:
    """What the sheet does not bear: another start finds the same."""
    why = []
    if press.loads_held == 1 and r.minimum_certified == 0:
        why.append("the sheet is at the limit of its strength: the tangent without the tools is not positive definite")
    if loads_given and press.loads_held == 0:
        why.append("the sheet does not bear the tools' forces that were given: the blank is that of the work alone")
    if press.exponent > 1.0:
        why.append(f"the press model held down to the exponent {decimal(press.exponent)} alone; 1 is the work of "
                   "deformation itself")
    return why


def _doubts(r: Report, press: PressResult, loads_given: bool) -> List[str]:
    """What makes a blank doubtful."""
    why = []
    if r.checked == 0:
        why.append("there was no memory to check the blank")
    if r.path == 0 and r.minimum_certified == 0:
        why.append("the last tangent was not positive definite: the equilibrium may be no minimum")
    why += _strength_doubts(r, press, loads_given)
    if r.accepted_unconverged > 0:
        why.append(f"{counted(r.accepted_unconverged, 'increment')} on the way did not converge")
    if r.share_beyond_one > _STRAIN:
        why.append(f"the equivalent strain passes 1 on {_percent(r.share_beyond_one)} of the area, first at triangle "
                   f"{r.first_beyond_one}")
    return why


def judged(report: Report, press: PressResult, flat: bool, loads_given: bool = False) -> Verdict:
    """The verdict of one run. flat: whether all nodes in triangles have one z; loads_given: whether friction, beads or
    free edges were asked for."""
    if report.reason != CONVERGED:
        return Verdict(NOT_A_BLANK, ("not converged",), False, _not_converged(report, flat))
    faults = _faults(report, press)
    if faults:
        return Verdict(NOT_A_BLANK, tuple(faults), True, "")
    doubts = _doubts(report, press, loads_given)
    return Verdict(DOUBTFUL if doubts else GOOD, tuple(doubts), True, "")


def second_start_may_help(verdict: Verdict, report: Report, press: PressResult, loads_given: bool = False) -> bool:
    """Whether a start from another side may find a better blank."""
    if report.path != _SURE or report.refusal != 0 or report.reason == STOPPED:
        return False
    if report.checked == 1 and report.undercut_share > _UNDERCUT:
        return True
    if verdict.worth == DOUBTFUL:
        return len(verdict.why) > len(_strength_doubts(report, press, loads_given))
    return verdict.worth != GOOD


def is_nearer(report: Report, press: PressResult, other: Report, other_press: PressResult) -> bool:
    """Whether the first of two blanks is the nearer one: by the exponent of its work, then by its potential."""
    if press.exponent != other_press.exponent:
        return press.exponent < other_press.exponent
    return report.energy < other.energy


def compared(taken: Report, other: Report, second_taken: bool) -> SecondStart:
    """What two runs from different starts tell of one another."""
    agrees = (taken.converged == 1 and other.converged == 1
              and abs(other.energy - taken.energy) <= _ENERGY * (taken.energy + _ENERGY_FLOOR * taken.part_area))
    return SecondStart((taken if second_taken else other).converged == 1, second_taken, agrees, taken.energy,
                       other.energy)


def with_second(verdict: Verdict, second: Optional[SecondStart]) -> Verdict:
    """The verdict with what the second start says of it: a blank that it does not confirm is doubtful."""
    if second is None or second.agrees or verdict.worth == NOT_A_BLANK or not second.converged:
        return verdict
    why = (f"a second start ends in another blank: potential {decimal(second.other_energy)} against "
           f"{decimal(second.energy)} mm2 of the one taken")
    return Verdict(DOUBTFUL, verdict.why + (why,), verdict.converged, verdict.reason)


def tighter_path_may_help(report: Report, flat: bool) -> bool:
    """Whether the run may converge if the intermediate increments are brought closer to equilibrium."""
    return report.reason in (STEP_TOO_SMALL, FINAL_UNCONVERGED) and not flat
