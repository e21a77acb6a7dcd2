"""Every argument that is refused: which error, which place, and that the words say what to do."""
import numpy as np
import pytest

import tornwalzen
from conftest import dome_of


def refused(match, place, *mesh, **options):
    with pytest.raises(tornwalzen.InputError, match=match) as caught:
        tornwalzen.solve(*mesh, **{"material": 1, **options})
    assert caught.value.place == place
    assert isinstance(caught.value, ValueError)
    return caught.value


def changed(array, index, value):
    array = np.array(array)
    array[index] = value
    return array


POINTS, TRIANGLES = dome_of(5.0, cells=3)


@pytest.mark.parametrize("points, match, place", [
    (POINTS[:, :2], r"shape \(16, 2\)", "points"),
    (POINTS.ravel(), r"shape \(48,\)", "points"),
    (np.empty((0, 3)), "points is empty", "points"),
    (POINTS.astype(complex), "complex128, wanted real", "points"),
    (POINTS.astype(str), "wanted real", "points"),
    (POINTS.astype(object), "wanted real", "points"),
    (POINTS > 0, "bool, wanted real", "points"),
    (changed(POINTS, (4, 1), np.nan), "the y of node 4 is nan", "points[4, 1]"),
    (changed(POINTS, (15, 2), np.inf), "the z of node 15 is inf", "points[15, 2]"),
])
def test_points(points, match, place):
    refused(match, place, points, TRIANGLES)


@pytest.mark.parametrize("triangles, match, place", [
    (TRIANGLES[:, :2], r"shape \(18, 2\)", "triangles"),
    (np.empty((0, 3), int), "triangles is empty", "triangles"),
    (TRIANGLES.astype(float), "float64, wanted integers", "triangles"),
    (TRIANGLES + 2**33, "beyond 32 bits", "triangles"),
    (changed(TRIANGLES, (2, 1), 16), "triangle 2 names node 16, but the nodes run from 0 to 15", "triangles[2, 1]"),
    (changed(TRIANGLES, (0, 0), -1), "triangle 0 names node -1", "triangles[0, 0]"),
    (changed(TRIANGLES, (5, 2), TRIANGLES[5, 1]), "triangle 5 .* has no area", "triangles[5]"),
])
def test_triangles(triangles, match, place):
    refused(match, place, POINTS, triangles)


@pytest.mark.parametrize("options, match, place", [
    ({"material": "DC99"}, "no material 'DC99'; known are 0, 1, 2, 10, DC01", "material"),
    ({"material": 3}, "no material 3", "material"),
    ({"material": 1.0}, "wanted a name", "material"),
    ({"material": True}, "wanted a name", "material"),
    ({"material": 10}, "geometric", "material"),
    ({"material": 10, "model": "fixed", "r": 1.2}, "does not read", "r"),
    ({"thickness": 0.0}, "thickness is 0, wanted more than 0 mm", "thickness"),
    ({"thickness": "1"}, "wanted a number in mm", "thickness"),
    ({"thickness": np.nan}, "finite", "thickness"),
    ({"thickness": 1j}, "real number", "thickness"),
    ({"hold": "left"}, "wanted 'auto', 'x0', 'y0'", "hold"),
    ({"hold": np.zeros((3, 2), int)}, r"shape \(3, 2\), wanted flags \(16, 2\)", "hold"),
    ({"hold": np.full((16, 2), 2)}, "other than 0 and 1", "hold"),
    ({"hold": np.zeros((16, 2), int)}, "still move in x: no u", "hold"),
    ({"hold": changed(np.zeros((16, 2), int), 5, 1)}, "still rotate", "hold"),
    ({"path": "quick"}, "'sure' or 'fixed'", "path"),
    ({"path": "fixed"}, "goes the sure path", "path"),
    ({"model": "punch"}, "'press' or 'fixed'", "model"),
    ({"model": "fixed", "press": tornwalzen.Press()}, "belongs to", "press"),
    ({"energy": "all"}, "'part' or 'blank'", "energy"),
    ({"threads": 1.5}, "wanted 1 to 64", "threads"),
    ({"progress": "bar"}, "wanted True, a function", "progress"),
    ({"r": "high"}, "wanted a number", "r"),
    ({"tolerance": (1.0, 1.0, 1.0)}, "one or two", "tolerance"),
    ({"limit": "keeler"}, "wanted 'auto', None or a LimitCurve", "limit"),
    ({"press": tornwalzen.Press(bending="some")}, "'auto' or 'off'", "press.bending"),
    ({"press": tornwalzen.Press(edge="soft")}, "'auto' or 'off'", "press.edge"),
    ({"press": tornwalzen.Press(friction=(0.1, 0.1, 0.1))}, "one number or two", "press.friction"),
    ({"press": tornwalzen.Press(planar_r=(1.0, 0.0, 1.0))}, "three positive", "press.planar_r"),
    ({"press": tornwalzen.Press(flange="all")}, "wanted 'rim'", "press.flange"),
    ({"press": tornwalzen.Press(flange=np.zeros(18, int))}, "marks no triangle", "press.flange"),
    ({"press": tornwalzen.Press(flange=np.zeros(3, int))}, r"one flag per triangle, \(18,\)", "press.flange"),
])
def test_options(options, match, place):
    refused(match, place, POINTS, TRIANGLES, **options)


@pytest.mark.parametrize("options, code, place", [
    ({"r": -1.0}, -12, "r"),
    ({"tolerance": 2.0}, -14, "tolerance"),
    ({"threads": 65}, -36, "threads"),
    ({"material": tornwalzen.curve([0.0, 0.1], [200.0, 300.0])}, -4, "material"),
    ({"material": tornwalzen.curve([0.1, 0.2, 0.3], [200.0, 300.0, 350.0])}, -6, "material"),
    ({"material": tornwalzen.curve([0.0, 0.2, 0.2], [200.0, 300.0, 350.0])}, -7, "material"),
    ({"material": tornwalzen.curve([0.0, 1.0, 9.0], [200.0, 300.0, 350.0])}, -8, "material"),
    ({"material": tornwalzen.curve([0.0, 0.1, 0.2], [200.0, -1.0, 350.0])}, -9, "material"),
    ({"material": tornwalzen.curve([0.0, 0.1, 0.2], [2e8, 3e8, 4e8])}, -25, "material"),
    ({"press": tornwalzen.Press(friction=1.5)}, -57, "press.friction"),
    ({"press": tornwalzen.Press(binder_force=-1.0)}, -58, "press.binder_force"),
    ({"press": tornwalzen.Press(young=-1.0)}, -53, "press.young"),
    ({"press": tornwalzen.Press(flange=np.full(18, 2))}, -60, "press.flange"),
    ({"press": tornwalzen.Press(beads=[([0], 10.0)])}, -65, "press.beads"),
    ({"press": tornwalzen.Press(beads=[([0, 99], 10.0)])}, -62, "press.beads"),
    ({"press": tornwalzen.Press(beads=[([0, 15], 10.0)])}, -63, "press.beads"),
    ({"press": tornwalzen.Press(beads=[([0, 1], 0.0)])}, -64, "press.beads"),
])
def test_what_the_library_refuses(options, code, place):
    error = refused("", place, POINTS, TRIANGLES, **options)
    assert error.code == code and error.advice and error.advice in str(error)


@pytest.mark.parametrize("triangles, code", [
    (np.vstack((TRIANGLES[:2], TRIANGLES[-2:])), -19),  # two pieces
    (np.vstack((TRIANGLES[:9, ::-1], TRIANGLES[9:])), -23),  # turned against one another
    (np.array([[0, 1, 2], [0, 3, 1], [0, 2, 3], [1, 3, 2]]), -18),  # a tetrahedron is closed
])
def test_what_is_no_sheet(triangles, code):
    points = POINTS if code != -18 else np.array([[0.0, 0, 0], [10, 0, 0], [0, 10, 0], [0, 0, 10]])
    with pytest.raises(tornwalzen.InputError) as caught:
        tornwalzen.solve(points, triangles, material=1)
    assert caught.value.code == code and caught.value.place == "triangles" and caught.value.advice


def test_each_code_of_the_header_has_its_error():
    from tornwalzen.errors import BY_CODE, NOT_THE_CALLER, refused as error_of
    for code in range(-66, 0):
        error = error_of(code, "text")
        assert isinstance(error, tornwalzen.LibraryError) == (code in NOT_THE_CALLER)
        assert error.code == code and (code not in BY_CODE or error.advice)


def test_obj_files(tmp_path):
    part = tmp_path / "a.obj"
    part.write_text("# comment\nv 0 0 0\nv 1 0 0\nv 0 1 0\nvn 0 0 1\nf 1/1/1 2//1 -1\n")
    points, triangles = tornwalzen.read_obj(part)
    assert points.shape == (3, 3) and triangles.tolist() == [[0, 1, 2]]
    for text, match in (("v 0 0 0\nf 1 2 3 4\n", "line 2: a face of 4 corners"), ("v 0 zero 0\n", "line 1: .* is not read"),
                        ("v 0 0\n", "line 1"), ("v 0 0 0\n", "no triangles"), ("f 1 x 3\n", "line 1")):
        part.write_text(text)
        with pytest.raises(tornwalzen.InputError, match=match):
            tornwalzen.read_obj(part)
