"""What a result leaves: files, a mesh of meshio, a picture; outline and rectangle against exact shapes."""
import json

import numpy as np
import pytest

import tornwalzen
from conftest import dome_of, pipe_of
from tornwalzen import _outline, _verdict


def test_saved_files_hold_the_result(cup, tmp_path):
    names = cup.save(tmp_path / "cup")
    assert sorted(path.name for path in (tmp_path / "cup").iterdir()) == ["blank.obj", "result.npz", "summary.json"]
    points, triangles = tornwalzen.read_obj(names[0])
    assert np.array_equal(points[:, :2], cup.blank) and np.array_equal(triangles, cup.triangles)
    with np.load(names[1]) as arrays:
        assert np.array_equal(arrays["strains"], cup.strains) and np.array_equal(arrays["zones"], cup.zones)
    summary = json.loads((tmp_path / "cup" / "summary.json").read_text())
    assert summary["verdict"] == cup.verdict.worth and summary["report"]["newton_iterations"] > 0
    assert summary["settings"]["curve"].startswith("swift: K 549.03")


def test_results_of_another_part_stay(cup, tmp_path):
    cup.save(tmp_path)
    cup.save(tmp_path)  # its own may be replaced
    other = tornwalzen.solve(*dome_of(5.0), material=1, model="fixed")
    with pytest.raises(FileExistsError, match="replace=True"):
        other.save(tmp_path)
    assert json.loads((tmp_path / "summary.json").read_text())["nodes"] == len(cup.points)
    other.save(tmp_path, replace=True)
    assert json.loads((tmp_path / "summary.json").read_text())["nodes"] == len(other.points)
    foreign = tmp_path / "foreign"
    foreign.mkdir()
    (foreign / "blank.obj").write_text("mine")
    with pytest.raises(FileExistsError):
        other.save(foreign)
    assert (foreign / "blank.obj").read_text() == "mine" and len(list(foreign.iterdir())) == 1


def test_a_blank_that_is_none_says_so_in_its_file(tmp_path):
    with pytest.raises(tornwalzen.NotConverged) as caught:
        tornwalzen.solve(*pipe_of(330), material=10, path="fixed", model="fixed")
    names = caught.value.result.save(tmp_path)
    assert "# NOT CONVERGED: the gradient of the last increment" in open(names[0]).read()
    assert json.loads(open(names[2]).read())["converged"] is False


def test_mesh_of_meshio(cup, tmp_path):
    meshio = pytest.importorskip("meshio")
    for shape in ("part", "blank"):
        cup.to_meshio(shape).write(tmp_path / f"{shape}.vtu")
        mesh = meshio.read(tmp_path / f"{shape}.vtu")
        assert np.array_equal(mesh.cells[0].data, cup.triangles)
        assert np.array_equal(mesh.cell_data["thickness_mm"][0], cup.thickness)
        assert np.array_equal(mesh.point_data["blank_position_mm"][:, :2], cup.blank)
        assert np.array_equal(mesh.points[:, :2], cup.points[:, :2] if shape == "part" else cup.blank)
    with pytest.raises(tornwalzen.InputError, match="'part' or 'blank'"):
        cup.to_meshio("both")


def test_pictures(cup, tmp_path):
    pytest.importorskip("matplotlib")
    from matplotlib import image
    for field in ("thickness_ratio", "zones", "major"):
        cup.plot(field=field).savefig(tmp_path / "cup.png")
        pixels = image.imread(tmp_path / "cup.png")[..., :3]
        left, middle, right = (third.reshape(-1, 3) for third in np.array_split(pixels, 3, axis=1))
        for third in (left, middle, right):  # each holds coloured triangles or strains, not only axes
            assert np.count_nonzero(np.ptp(third, axis=1) > 0.1) > 500
    with pytest.raises(tornwalzen.InputError, match="no field 'colour'"):
        cup.plot(field="colour")


def test_a_picture_without_a_blank():
    pytest.importorskip("matplotlib")
    with pytest.raises(tornwalzen.NotConverged) as caught:
        tornwalzen.solve(*pipe_of(400), material=10, path="fixed", model="fixed")
    caught.value.result.plot().canvas.draw()


def ring(cells=24):
    """A flat ring of radii 20 and 50 mm."""
    angle = np.linspace(0.0, 2.0 * np.pi, cells, endpoint=False)
    circle = np.column_stack((np.cos(angle), np.sin(angle), np.zeros(cells)))
    i = np.arange(cells)
    j = (i + 1) % cells
    triangles = np.vstack((np.column_stack((i, i + cells, j + cells)), np.column_stack((i, j + cells, j))))
    return np.vstack((20.0 * circle, 50.0 * circle)), triangles


def test_outline_of_a_ring():
    points, triangles = ring()
    outer, inner = _outline.loops(triangles.astype(np.int32), points[:, :2])
    polygon = 12.0 * np.sin(2.0 * np.pi / 24)  # area of the 24-gon of radius 1
    assert outer.area == pytest.approx(2500.0 * polygon) and inner.area == pytest.approx(-400.0 * polygon)
    assert sorted(outer.nodes) == list(range(24, 48)) and outer.nodes[0] == 24
    assert sorted(inner.nodes) == list(range(24)) and inner.nodes[0] == 0


def test_outline_where_two_corners_meet_in_a_node():
    triangles = np.array([[0, 1, 2], [2, 3, 4]], dtype=np.int32)
    blank = np.array([[0.0, 0.0], [1.0, 0.0], [1.0, 1.0], [2.0, 1.0], [2.0, 2.0]])
    found = _outline.loops(triangles, blank)
    assert sorted(sorted(loop.nodes.tolist()) for loop in found) == [[0, 1, 2], [2, 3, 4]]
    with pytest.raises(tornwalzen.InputError, match="two triangles run from node 0 to node 1"):
        _outline.loops(np.array([[0, 1, 2], [0, 1, 3]], dtype=np.int32), blank)


@pytest.mark.parametrize("angle", [0.0, 20.0, 90.0, -45.0, 89.0])
def test_rectangle_of_a_turned_sheet(angle):
    a = np.radians(angle)
    turn = np.array([[np.cos(a), np.sin(a)], [-np.sin(a), np.cos(a)]])
    grid = np.stack(np.meshgrid(np.linspace(0, 7, 8), np.linspace(0, 3, 4)), axis=-1).reshape(-1, 2)
    length, width, found = _outline.smallest_rectangle(grid @ turn)
    assert (length, width) == (pytest.approx(7.0), pytest.approx(3.0))
    assert found == pytest.approx(angle, abs=1e-9)


def test_rectangle_of_little():
    assert _outline.smallest_rectangle(np.array([[1.0, 1.0]])) == (0.0, 0.0, 0.0)
    assert _outline.smallest_rectangle(np.array([[0.0, 0.0], [3.0, 4.0]]))[:2] == (pytest.approx(5.0), pytest.approx(0))


@pytest.mark.parametrize("value, text", [(1.0, "1"), (0.001, "0.001"), (0.0001, "1e-04"), (1e22, "1e+22"),
                                         (123456.0, "123456"), (-0.25, "-0.25"), (1.5e-7, "1.5e-07"), (0.0, "0"),
                                         (1.5124999999999997, "1.5124999999999997"), (100000.0, "1e+05")])
def test_decimals_as_the_host_writes_them(value, text):
    assert _verdict.decimal(value) == text
