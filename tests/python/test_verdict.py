"""The verdict's words and limits: every sentence of the host's source is one of ours; each limit by itself."""
import re
from dataclasses import fields, replace

import pytest

from conftest import ROOT
from tornwalzen import _structures, _verdict

GOOD = _structures.Report(**{field.name: {"int": 0, "float": 0.0, "str": ""}[field.type]
                             for field in fields(_structures.Report)})
GOOD = replace(GOOD, converged=1, path=1, checked=1, sheet_checked=1, minimum_certified=1, part_area=1000.0,
               energy=50.0)
NO_TOOLS = _structures.PressResult(**{field.name: {"int": 0, "float": 0.0}[field.type]
                                      for field in fields(_structures.PressResult)})

FAULTS = [
    (dict(not_finite=2, first_not_finite=7), "2 triangles with a position that is no number, the first is triangle 7"),
    (dict(blank_inverted=1, first_inverted=9), "1 triangle turned over in the blank, the first is triangle 9"),
    (dict(blank_inverted=3), "3 triangles turned over in the blank"),
    (dict(crossings=1, crossing_u=1.234, crossing_v=-5.0),
     "the outline of the blank crosses itself, first at u 1.23, v -5.00 mm"),
    (dict(misplaced_loops=1, first_misplaced_node=4), "holes and outline of the blank do not lie in one another, see node 4"),
    (dict(overlapped_area=0.5), "the blank covers 0.50 mm2 more than once"),
    (dict(open_nodes=2, first_open_node=3), "the triangles around node 3 do not close once (nodes like this: 2)"),
    (dict(minimum_certified=0), "the equilibrium found is no minimum"),
]
DOUBTS = [
    (dict(checked=0), {}, "there was no memory to check the blank"),
    (dict(path=0, minimum_certified=0), {},
     "the last tangent was not positive definite: the equilibrium may be no minimum"),
    (dict(minimum_certified=0), dict(loads_held=1),
     "the sheet is at the limit of its strength: the tangent without the tools is not positive definite"),
    ({}, dict(loads_held=0),
     "the sheet does not bear the tools' forces that were given: the blank is that of the work alone"),
    ({}, dict(exponent=1.25), "the press model held down to the exponent 1.25 alone; 1 is the work of deformation itself"),
    (dict(accepted_unconverged=1), {}, "1 increment on the way did not converge"),
    (dict(share_beyond_one=0.02, first_beyond_one=5), {},
     "the equivalent strain passes 1 on 2.0 % of the area, first at triangle 5"),
]


def test_a_good_blank():
    verdict = _verdict.judged(GOOD, NO_TOOLS, False)
    assert (verdict.worth, verdict.why, str(verdict)) == ("good", (), "good")


@pytest.mark.parametrize("report, words", FAULTS)
def test_faults(report, words):
    verdict = _verdict.judged(replace(GOOD, **report), NO_TOOLS, False)
    assert str(verdict) == "not a blank: " + words and verdict.converged


@pytest.mark.parametrize("report, press, words", DOUBTS)
def test_doubts(report, press, words):
    verdict = _verdict.judged(replace(GOOD, **report), replace(NO_TOOLS, **press), False, "loads_held" in press)
    assert str(verdict) == "doubtful: " + words


def test_limits():
    for report in (dict(overlapped_area=0.9e-3), dict(share_beyond_one=1e-3), dict(open_nodes=1, blank_inverted=1)):
        why = _verdict.judged(replace(GOOD, **report), NO_TOOLS, False).why
        assert not any("covers" in each or "passes 1" in each or "close once" in each for each in why)
    assert not _verdict.second_start_may_help(_verdict.judged(GOOD, NO_TOOLS, False), replace(GOOD, undercut_share=1e-3),
                                              NO_TOOLS)
    assert _verdict.second_start_may_help(_verdict.judged(GOOD, NO_TOOLS, False), replace(GOOD, undercut_share=2e-3),
                                          NO_TOOLS)
    for energy, agrees in ((50.004, True), (50.006, False), (49.996, True)):
        second = _verdict.compared(GOOD, replace(GOOD, energy=energy), False)
        assert second.agrees == agrees
    verdict = _verdict.with_second(_verdict.judged(GOOD, NO_TOOLS, False), second)
    assert verdict.worth == "good"
    other = _verdict.compared(GOOD, replace(GOOD, energy=60.0), False)
    assert str(_verdict.with_second(verdict, other)) == (
        "doubtful: a second start ends in another blank: potential 60 against 50 mm2 of the one taken")
    tight = replace(GOOD, reason=_verdict.STEP_TOO_SMALL)
    assert _verdict.tighter_path_may_help(tight, False) and not _verdict.tighter_path_may_help(tight, True)


def test_every_sentence_of_the_host_is_ours():
    source = (ROOT / "app" / "run" / "verdict.cpp").read_text()
    rules = source[source.index("std::vector<std::string> faults("):source.index("Verdict judge(")]
    rules = re.sub(r"\"\s*\n\s*\"", "", rules)  # one literal over two lines
    literals = [text for text in re.findall(r'"([^"]*)"', rules) if len(text) > 4]
    ours = "\n".join([words for *_, words in FAULTS] + [words for *_, words in DOUBTS])
    assert len(literals) >= 14
    for text in literals:
        assert text in ours or text in ("triangle", "increment"), text


def test_strength_alone_asks_for_no_second_start():
    held = replace(NO_TOOLS, exponent=1.25)
    assert not _verdict.second_start_may_help(_verdict.judged(GOOD, held, False), GOOD, held)
    strained = replace(GOOD, share_beyond_one=0.02)
    assert _verdict.second_start_may_help(_verdict.judged(strained, held, False), strained, held)


def test_the_lower_exponent_is_nearer_then_the_lower_potential():
    held, lower = replace(NO_TOOLS, exponent=1.25), replace(NO_TOOLS, exponent=1.125)
    assert _verdict.is_nearer(replace(GOOD, energy=60.0), lower, GOOD, held)
    assert not _verdict.is_nearer(GOOD, held, replace(GOOD, energy=60.0), lower)
    assert _verdict.is_nearer(GOOD, held, replace(GOOD, energy=60.0), held)
