"""The fixed interface from Python: its bits against a handle, its order of calls, what it refuses."""
import re

import numpy as np
import pytest

import tornwalzen
from conftest import ROOT
from tornwalzen import fixed


class Mesh:
    """Arrays of one mesh, grown as the protocol says."""

    def __init__(self, points, triangles):
        nn, ne = len(points), len(triangles)
        self.nn, self.ne, self.neq = nn, ne, 2 * nn
        self.knots, self.inzi = points, (triangles + 1).astype(np.int32)
        self.mnsysm, self.niwor, self.nrk, self.istat = (np.zeros(1, np.int32) for _ in range(4))
        self.mnsysm[0] = 4 * (nn + 3 * ne) - nn
        self.inta = np.zeros((ne, 3), np.int32, order="F")
        self.cols, self.rowi = np.zeros(self.neq + 1, np.int32), np.zeros(int(self.mnsysm[0]), np.int32)
        self.kng = np.zeros((nn, 3), order="F")
        self.work, self.rwork = np.zeros(0, np.int32), np.zeros(0)

    def init(self, mode, **other):
        a = dict(vars(self), **other)
        fixed.OSINIT(mode, a["nn"], a["ne"], a["neq"], a["mnsysm"], a["niwor"], a["nrk"], a["knots"], a["inzi"],
                     a["inta"], None, a["cols"], a["rowi"], a["work"], a["rwork"], None, None, None, None, a["kng"], None,
                     None, None, None, None, None, a["istat"])

    def set_up(self):
        for mode in (1, 2, 3):
            self.init(mode)
            assert self.istat[0] == 0
            self.work.resize(int(self.niwor[0]), refcheck=False)
            self.rwork.resize(int(self.nrk[0]), refcheck=False)

    def main(self, arfa, curve, **other):
        f8 = lambda *shape: np.zeros(shape, order="F")
        a = dict(vars(self), rr=f8(self.neq), rb=f8(self.neq), rx=f8(self.neq), temp=f8(self.neq), knz=f8(self.nn, 3),
                 kna=f8(self.nn, 3), elg=f8(self.ne, 5), sysm=f8(int(self.mnsysm[0])), rxa=f8(self.neq),
                 wrhs=f8(self.neq), eval=f8(5, self.ne), arfa=arfa)
        a.update(other)
        fixed.OSMAIN(a["inta"], a["arfa"], a["cols"], a["rowi"], a["work"], a["rwork"], a["rr"], a["rb"], a["rx"],
                     a["temp"], a["kng"], a["knz"], a["kna"], a["elg"], a["sysm"], a["rxa"], a["wrhs"], curve, a["eval"],
                     a["istat"])
        return a["rx"], a["eval"]


def test_the_bits_of_a_handle(dome):
    points, triangles = dome
    result = tornwalzen.solve(points, triangles, material=1, path="fixed", model="fixed", energy="blank",
                              tolerance=(1.0, 1.0))
    mesh = Mesh(points, triangles)
    mesh.set_up()
    blank, table = mesh.main((~result.held).ravel().astype(np.int32), 1)
    assert np.array_equal(blank.reshape(-1, 2), result.blank)
    assert np.array_equal(table[0], result.minus_trace) and np.array_equal(table[2], result.smallest_angle)
    by_rows = np.zeros((len(triangles), 5))  # the same memory, seen by triangles
    mesh = Mesh(points, triangles)
    mesh.set_up()
    mesh.main((~result.held).ravel().astype(np.int32), 1, eval=by_rows)
    assert np.array_equal(by_rows.T, table)


def test_arguments_stand_in_the_headers_order():
    header = (ROOT / "include" / "tornwalzen.h").read_text()
    for name in ("OSINIT", "OSMAIN"):
        declaration = re.search(rf"^TORNWALZEN_API void {name}\(([^;]*)\);", header, re.MULTILINE).group(1)
        arguments = [re.search(r"(\w+)$", part.strip()).group(1) for part in declaration.split(",")]
        function = getattr(fixed, name)
        assert list(function.__code__.co_varnames[:function.__code__.co_argcount]) == arguments


@pytest.mark.parametrize("other, match", [
    ({"knots": np.zeros(6, np.float32)}, "KNOTS is an array of float32, wanted an array of float64"),
    ({"knots": np.zeros(6)}, "KNOTS has 6 entries, wanted 507"),
    ({"knots": [[0.0] * 3] * 169}, "KNOTS is .* wanted an array"),
    ({"inzi": np.zeros((288, 3), np.int64)}, "INZI is an array of int64"),
    ({"inta": np.zeros((288, 3), np.int32)}, "INTA lies by rows, wanted order F"),
    ({"knots": np.zeros((169, 3), order="F")}, "KNOTS lies by columns, wanted order C"),
    ({"rowi": np.zeros(5, np.int32)}, "ROWI has 5 entries"),
    ({"cols": np.zeros(1000, np.int32)[::2]}, "COLS does not lie in one piece"),
    ({"istat": 0}, "ISTAT is 0, wanted an array of int32"),
    ({"neq": 5}, "wanted 0 or more, and NEQ = 2"),
    ({"nn": 2**40}, "NKNO is .* beyond 32 bits"),
])
def test_what_is_refused_before_the_call(dome, other, match):
    mesh = Mesh(*dome)
    with pytest.raises(tornwalzen.InputError, match=match):
        mesh.init(1, **other)


def test_arrays_that_cannot_be_written(dome):
    mesh = Mesh(*dome)
    mesh.kng.flags.writeable = False
    with pytest.raises(tornwalzen.InputError, match="KNG cannot be written"):
        mesh.init(1)


def test_short_working_arrays(dome):
    mesh = Mesh(*dome)
    mesh.init(1)
    with pytest.raises(tornwalzen.InputError, match="WORK has 0 entries, wanted"):
        mesh.init(2)
    mesh.set_up()
    with pytest.raises(tornwalzen.InputError, match="RWORK has 3 entries, wanted"):
        mesh.main(np.ones(mesh.neq, np.int32), 1, rwork=np.zeros(3))


def test_handler_hears_and_its_error_comes_out(dome):
    points, triangles = dome
    mesh = Mesh(points, triangles)
    mesh.set_up()
    arfa = np.ones(mesh.neq, np.int32)
    arfa[[168, 169, 325]] = 0
    heard = []
    fixed.PlivaneSetProgressHdlr(lambda data, record: heard.append((data, record)), "datum")
    try:
        mesh.main(arfa, 1)
        assert heard[0][0] == "datum" and [r.value for _, r in heard if r.kind == 0][-1] == 1.0
        assert any(r.kind == 1 and r.text.startswith("TIME") for _, r in heard)

        def recursive(_, __):
            mesh.init(1)

        fixed.PlivaneSetProgressHdlr(recursive, None)
        with pytest.raises(tornwalzen.InputError, match="is running") as caught:
            mesh.main(arfa, 1)
        assert caught.value.code == -2
    finally:
        fixed.PlivaneSetProgressHdlr(None, None)
    with pytest.raises(tornwalzen.InputError, match="wanted a function"):
        fixed.PlivaneSetProgressHdlr(5, None)


def test_the_small_functions(capfd):
    heard = []
    fixed.PlivaneSetProgressHdlr(lambda _, record: heard.append(record), None)
    try:
        fixed.inipgr(10.0)
        fixed.progre(0.0)
        fixed.progre(5.0)
        fixed.proinf("words")
        fixed.procpu()
        fixed.prterr()
        fixed.PlivaneSetProgressHdlr(lambda *_: 1 / 0, None)
        with pytest.raises(ZeroDivisionError):
            fixed.proinf("words")
    finally:
        fixed.PlivaneSetProgressHdlr(None, None)
    fixed.prttxt("a line", 6)
    assert [record.value for record in heard[:2]] == [0.0, 0.5]
    assert heard[2].text == "words" and heard[3].text.startswith("TIME")
    assert capfd.readouterr().out == "a line\n"
    with pytest.raises(tornwalzen.InputError):
        fixed.prttxt(7)
