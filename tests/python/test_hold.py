"""Held unknowns against the host program: as many, and the same blank to the bit."""
import subprocess

import numpy as np
import pytest

import tornwalzen
from conftest import BUILD, ROOT, dome_of, write_obj


@pytest.mark.parametrize("rule", ["auto", "x0", "y0", "x0,y0"])
def test_the_hosts_rules(host, rule):
    part = ROOT / "samples" / "square_cup.obj"
    points, triangles = tornwalzen.read_obj(part)
    result = tornwalzen.solve(points, triangles, material=10, model="fixed", hold=rule)
    blank, _, summary = host.solve(part, "--hold", rule, "--material", "10")
    assert result.held.sum() == summary["held_unknowns"]
    assert np.array_equal(result.blank, blank)


@pytest.mark.parametrize("shape", ["hat", "s_rail", "round_cup", "l_bend", "box"])
def test_automatic_holds_lead_to_the_hosts_blank(host, tmp_path, shape):
    part = tmp_path / f"{shape}.obj"
    maker = BUILD / "samples" / "tornwalzen_samples"
    subprocess.run([maker, shape, "--triangles", "3000", "-o", part], check=True, capture_output=True)
    mesh = tornwalzen.read_obj(part)
    blank, _, _ = host.solve(part, "--material", "1")
    assert np.array_equal(tornwalzen.solve(*mesh, material=1, model="fixed").blank, blank)


def test_a_node_in_no_triangle_is_held(host, tmp_path):
    points, triangles = dome_of(6.0)
    points = np.vstack((points, [[500.0, 500.0, 0.0]]))
    part = write_obj(tmp_path / "lonely.obj", points, triangles)
    result = tornwalzen.solve(points, triangles, material=1, model="fixed")
    assert result.held[-1].all() and not result.held[:-1].all(axis=1).sum() > 1
    blank, _, _ = host.solve(part, "--material", "1")
    assert np.array_equal(result.blank, blank)


def test_flags_of_ones_own():
    points, triangles = dome_of(6.0)
    flags = np.zeros((len(points), 2), dtype=bool)
    flags[84] = True
    flags[162, 1] = True
    result = tornwalzen.solve(points, triangles, material=1, hold=flags)
    assert np.array_equal(result.held, flags)
    assert np.array_equal(result.blank[84], points[84, :2])


def test_a_plane_without_nodes_is_told_with_its_distance():
    points, triangles = dome_of(6.0)
    with pytest.raises(tornwalzen.InputError, match="the nearest is 10 mm away"):
        tornwalzen.solve(points + [60.0, 0.0, 0.0], triangles, material=1, hold="x0")
