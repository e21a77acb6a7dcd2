"""`solve` against the host program: the same bits, the same words; and what it does beside."""
import os
import pickle
import threading

import numpy as np
import pytest

import tornwalzen
from conftest import ROOT, dome_of, pipe_of, write_obj

SWIFT = ["--law", "swift:K=549.03,e0=0.007,n=0.22"]
CUP = ROOT / "samples" / "square_cup.obj"


def same(result, blank, triangles, summary):
    assert np.array_equal(result.blank, blank)
    assert np.array_equal(result.triangles, triangles)
    assert result.verdict.worth == summary["verdict"]
    assert list(result.verdict.why) == summary["verdict_reasons"]
    assert result.runs == summary["runs"]
    for key, attribute in (("newton_iterations", "newton_iterations"), ("factorizations", "factorizations"),
                           ("largest_equivalent_strain", "largest_strain"), ("factor_entries", "factor_entries")):
        assert summary[key] == getattr(result.report, attribute), key
    assert summary["thinnest"]["thickness_ratio_Ablank_by_Apart"] == np.nanmin(result.thickness_ratio)
    assert summary["blank_rectangle_length_mm"] == pytest.approx(result.rectangle().length, rel=1e-12)
    assert summary["blank_rectangle_width_mm"] == pytest.approx(result.rectangle().width, rel=1e-12)
    assert summary["blank_rectangle_angle_deg"] == pytest.approx(result.rectangle().angle, abs=1e-6)
    second = summary["second_start"]
    assert (second is None) == (result.second_start is None)
    if second is not None:
        assert second["agrees"] == result.second_start.agrees and second["taken"] == result.second_start.taken


def test_sample_cup_has_the_hosts_bits(host, cup):
    same(cup, *host.solve(CUP, "--hold", "x0,y0", "--thickness", "1", *SWIFT))


def test_drawn_cup_has_the_hosts_bits(host, parts, steel):
    part = parts / "dfg_cup_quarter.obj"
    result = tornwalzen.solve(*tornwalzen.read_obj(part), material=steel, thickness=0.95, hold="x0,y0")
    same(result, *host.solve(part, "--hold", "x0,y0", "--thickness", "0.95", *SWIFT))
    assert len(result.points) == 11236 and result.verdict.worth == "good"


@pytest.mark.parametrize("name", ["car_hood_outer", "scan_tray", "sheet_panel_13holes", "sheet_rail_channel"])
def test_real_parts_have_the_hosts_bits_and_verdict(host, parts, name):
    mesh = tornwalzen.read_obj(parts / f"{name}.obj")
    blank, triangles, summary = host.solve(parts / f"{name}.obj", "--model", "press", "--thickness", "1")
    if summary["triangles_turned"]:
        pytest.skip(f"{name} is turned by the host program first")
    try:
        result = tornwalzen.solve(*mesh, material=1, thickness=1.0)
    except tornwalzen.NoBlank as none:
        result = none.result
    same(result, blank, triangles, summary)


def test_the_default_call_is_the_hosts(host, dome, tmp_path):
    part = write_obj(tmp_path / "dome.obj", *dome)
    same(tornwalzen.solve(*dome), *host.solve(part, "--material", "DC04", "--thickness", "1.5", "--model", "press"))


def test_fixed_path_has_the_hosts_bits(host, cup_mesh):
    result = tornwalzen.solve(*cup_mesh, material=2, path="fixed", model="fixed", hold="auto", energy="blank",
                              tolerance=(1.0, 1.0), r=1.4)
    same(result, *host.solve(CUP, "--material", "2", "--path", "fixed", "--energy", "blank", "--tolerance", "1,1", "--r",
                             "1.4"))
    assert result.press is None and result.report.path == 0


def test_geometric_material_has_the_hosts_bits(host, cup_mesh):
    result = tornwalzen.solve(*cup_mesh, material=10, model="fixed", hold="x0,y0")
    same(result, *host.solve(CUP, "--material", "10", "--hold", "x0,y0"))


def test_press_with_tools_has_the_hosts_bits(host, dome, tmp_path, steel):
    part = write_obj(tmp_path / "dome.obj", *dome)
    press = tornwalzen.Press(friction=(0.1, 0.12), binder_force=20000.0, planar_r=(1.8, 1.4, 2.0), rolling_angle=30.0,
                             young=206000.0)
    result = tornwalzen.solve(*dome, material=steel, thickness=1.0, hold="x0,y0", press=press)
    same(result, *host.solve(part, "--hold", "x0,y0", "--thickness", "1", *SWIFT, "--mu", "0.1,0.12", "--binder", "20000",
                             "--planar-r", "1.8,1.4,2.0", "--rolling", "30", "--young", "206000"))
    assert result.press.binder == 1 and result.contact_pressure.shape == (len(result.triangles),)
    assert result.press.binder_pressure_mpa == pytest.approx(result.binder_pressure.max())


@pytest.mark.parametrize("degrees, material, kind", [
    (330, 1, tornwalzen.NotABlank),  # its rims pass one another in the blank
    (330, 10, tornwalzen.NotConverged),  # the last increment stalls
    (355, 10, tornwalzen.NotConverged),  # a factorization fails
])
def test_what_is_no_blank_is_told_in_the_hosts_words(host, tmp_path, degrees, material, kind):
    mesh = pipe_of(degrees)
    part = write_obj(tmp_path / "pipe.obj", *mesh)
    with pytest.raises(kind) as caught:
        tornwalzen.solve(*mesh, material=material, path="fixed", model="fixed")
    result = caught.value.result
    status = 3 if result.report.reason == 8 else 2
    blank, triangles, summary = host.solve(part, "--path", "fixed", "--material", str(material), status=status)
    same(result, blank, triangles, summary)
    assert (result.verdict.reason or None) == summary["reason"]
    assert str(caught.value) == (summary["reason"] or "; ".join(summary["verdict_reasons"]))
    again = pickle.loads(pickle.dumps(caught.value))
    assert str(again) == str(caught.value) and np.array_equal(again.result.blank, blank)


def test_a_part_that_is_not_developed_is_told_in_the_hosts_words(host, tmp_path, cup_mesh):
    points, triangles = cup_mesh
    part = write_obj(tmp_path / "side.obj", points[:, [2, 1, 0]], triangles)  # lying on its side
    with pytest.raises(tornwalzen.NotConverged) as caught:
        tornwalzen.solve(points[:, [2, 1, 0]], triangles, material=1, path="fixed", model="fixed")
    _, _, summary = host.solve(part, "--path", "fixed", status=2)
    assert caught.value.result.verdict.reason == summary["reason"]
    assert np.isnan(caught.value.result.strains).all() and (caught.value.result.zones == -1).all()


def test_layout_decides_whether_there_is_a_copy(cup_mesh, cup):
    points, triangles = cup_mesh
    result = tornwalzen.solve(points, triangles, material=1, model="fixed")
    assert result.points is points  # float64 in C order: used as it is
    for p, t in ((np.asfortranarray(points), triangles.astype(np.int64)), (points.tolist(), triangles.tolist()),
                 (np.hstack((points, points))[:, :3], triangles.astype(np.uint16))):
        other = tornwalzen.solve(p, t, material=1, model="fixed")
        assert other.points is not p and np.array_equal(other.blank, result.blank)


def test_what_is_given_is_not_changed(cup_mesh):
    points, triangles = cup_mesh[0].copy(), cup_mesh[1].copy()
    turned = triangles[:, ::-1].copy()  # clockwise seen from above
    kept = turned.copy()
    tornwalzen.solve(points, turned, material=1, model="fixed")
    assert np.array_equal(points, cup_mesh[0]) and np.array_equal(turned, kept)


def test_threads_change_no_bit(cup_mesh):
    one = tornwalzen.solve(*cup_mesh, material=1, model="fixed", threads=1)
    two = tornwalzen.solve(*cup_mesh, material=1, model="fixed", threads=2)
    assert np.array_equal(one.blank, two.blank) and np.array_equal(one.strains, two.strains)
    assert (one.report.threads, two.report.threads) == (1, 2)


def test_handles_stand_side_by_side(dome):
    results = [None] * 4

    def one(place):
        results[place] = tornwalzen.solve(*dome_of(2.0 + place), material=1)

    threads = [threading.Thread(target=one, args=(place,)) for place in range(4)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    for place, result in enumerate(results):
        assert np.array_equal(result.blank, tornwalzen.solve(*dome_of(2.0 + place), material=1).blank)


def test_figures_agree_with_one_another(cup):
    assert np.allclose(np.log(cup.thickness_ratio), -cup.strains.sum(axis=1), atol=1e-12)
    assert cup.equivalent.max() == pytest.approx(cup.report.largest_strain)
    assert cup.part_area.sum() == pytest.approx(cup.report.part_area)
    assert cup.blank_area.sum() == pytest.approx(cup.report.blank_area)
    assert np.allclose(np.linalg.norm(cup.directions, axis=1), 1.0)
    assert np.allclose(np.linalg.norm(cup.directions_blank, axis=1), 1.0)
    assert cup.thickness.max() == pytest.approx(cup.settings.thickness * cup.thickness_ratio.max())
    outer = cup.outline()[0]
    assert outer.area == pytest.approx(cup.blank_area.sum())
    assert cup.held[np.abs(cup.points[:, 0]) < 1e-9, 0].all()


def test_flat_sheet_is_its_own_blank():
    points, triangles = dome_of(0.0)
    result = tornwalzen.solve(points, triangles, material=1)
    assert np.abs(result.blank - points[:, :2]).max() < 1e-9
    assert np.abs(result.strains).max() < 1e-9


def test_a_named_material_tells_what_stands_in(dome):
    with pytest.warns(tornwalzen.TornwalzenWarning, match="DC04 has no flow curve"):
        result = tornwalzen.solve(*dome)
    assert len(result.remarks) == 2 and "minimum of r90, 1.6" in result.remarks[1]
    assert np.array_equal(result.blank, tornwalzen.solve(*dome, material=1, press=tornwalzen.Press(young=210000.0)).blank)
    assert "Keeler" in result.limit.curve.basis and (result.zones >= 0).all()


def test_results_travel(cup):
    again = pickle.loads(pickle.dumps(cup))
    assert np.array_equal(again.blank, cup.blank) and again.verdict == cup.verdict and again.report == cup.report


def test_memory_is_given_back(dome):
    def resident():
        with open("/proc/self/statm") as statm:
            return int(statm.read().split()[1]) * os.sysconf("SC_PAGE_SIZE")

    if not os.path.exists("/proc/self/statm"):
        pytest.skip("no /proc to read the memory from")
    tornwalzen.solve(*dome_of(5.0, cells=40), material=1, model="fixed")
    before = resident()
    for _ in range(30):
        tornwalzen.solve(*dome_of(5.0, cells=40), material=1, model="fixed")
    assert resident() - before < 20e6  # one run holds several MB
