"""Forming limits: the formula against its published figures, zones by hand, and both against the host program."""
import numpy as np
import pytest

import tornwalzen
from conftest import ROOT
from tornwalzen import limits


def test_the_formula_in_plane_strain():
    for t, n, percent in ((1.0, 0.21, 37.43), (0.8, 0.18, (23.3 + 14.13 * 0.8) * 0.18 / 0.21), (5.0, 0.3, 65.69)):
        assert 100.0 * np.expm1(tornwalzen.keeler(t, n).at(0.0)) == pytest.approx(percent, rel=1e-12)


def test_the_formula_beside_plane_strain():
    curve = tornwalzen.keeler(1.0, 0.2)
    lowest = curve.at(0.0)
    assert curve.at(-0.3) == pytest.approx(lowest + 0.3)  # constant thinning
    right = np.log1p(0.01 * np.array([5.0, 10.0, 20.0]))
    assert 100.0 * np.expm1(curve.at(right)) == pytest.approx(100.0 * np.expm1(lowest) + 0.6 * np.array([5, 10, 20]))
    assert curve.at(1.0) == curve.at(np.log1p(0.2))  # level from 20 % on
    assert "counts as 3" in tornwalzen.keeler(4.0, 0.2).basis and "counts as 0.21" in tornwalzen.keeler(1.0, 0.3).basis


def test_zones_by_hand():
    curve = tornwalzen.limit_curve([-0.5, 0.5], [0.4, 0.4])
    at = 100.0 * np.expm1(0.4)
    below = [np.log1p(0.01 * (at - part)) for part in (0.0, 9.9, 10.1)]
    strains = np.array([[below[0], 0.0], [0.41, 0.0], [below[1], 0.0], [below[2], 0.0], [0.05, -0.2], [0.05, -0.055],
                        [np.nan, 0.0], [0.1, np.inf]])
    limit = limits.classified(strains, curve, 10.0)
    assert limit.zone.tolist() == [2, 2, 1, 0, 3, 0, -1, -1]
    assert limit.distance[:4] == pytest.approx([0.0, at - 100.0 * np.expm1(0.41), 9.9, 10.1], abs=1e-9)
    assert np.isnan(limit.distance[6:]).all()


@pytest.mark.parametrize("minor, major, options, match", [
    ([0.0], [0.3, 0.4], {}, "shapes"),
    ([], [], {}, "shapes"),
    ([0.0, np.nan], [0.3, 0.3], {}, "not finite"),
    ([0.1, 0.1], [0.3, 0.3], {}, "do not ascend"),
    ([0.0, 0.1], [0.3, -0.3], {}, "must be positive"),
    ([0.0, 10.0], [30.0, 35.0], {}, "beyond 2"),
    ([-100.0, 10.0], [30.0, 35.0], {"percent": True}, "above -100"),
])
def test_points_that_are_refused(minor, major, options, match):
    with pytest.raises(tornwalzen.InputError, match=match):
        tornwalzen.limit_curve(minor, major, **options)
    assert tornwalzen.limit_curve([-10.0, 0.0], [40.0, 30.0], percent=True).at(0.0) == pytest.approx(np.log(1.3))


def test_margins_and_the_automatic_curve(dome):
    library = tornwalzen.materials()
    assert limits.margin_of(library["EN AW-5754"]) == 8.0 and limits.margin_of(library["DC04"]) == 10.0
    assert limits.chosen_curve("auto", library["EN AW-5754"], 1.0) is None
    assert limits.chosen_curve("auto", library["DC01"], 1.0) is None  # no n
    assert limits.chosen_curve("auto", None, 1.0) is None
    assert "a minimum: EN 10130" in limits.chosen_curve("auto", library["DC04"], 1.0).basis
    result = tornwalzen.solve(*dome, material=1, model="fixed", limit=None)
    assert result.limit is None and (result.zones == -1).all()


@pytest.mark.parametrize("thickness", ["0.6", "2"])
def test_the_hosts_zones(host, thickness, cup_mesh):
    import subprocess
    options = subprocess.run([host.program, "solve", "--help"], capture_output=True, text=True, check=True).stdout
    if "--flc" not in options:
        pytest.skip("this host program draws no limit curve")
    result = tornwalzen.solve(*cup_mesh, thickness=float(thickness), hold="x0,y0", model="fixed")
    blank, _, summary = host.solve(ROOT / "samples" / "square_cup.obj", "--material", "DC04", "--thickness", thickness,
                                   "--model", "fixed", "--hold", "x0,y0")
    assert np.array_equal(blank, result.blank)
    told = summary["forming_limit"]
    assert told["basis"] == result.limit.curve.basis and told["margin_percent"] == result.limit.margin
    for zone, key in enumerate(("safe", "marginal", "split", "wrinkling_tendency")):
        assert told[key]["triangles"] == np.count_nonzero(result.zones == zone), key
    nearest = int(np.nanargmin(result.limit.distance))
    assert told["nearest"]["element_number_in_file"] == nearest + 1
    assert told["nearest"]["distance_percent"] == pytest.approx(result.limit.distance[nearest], abs=1e-9)
