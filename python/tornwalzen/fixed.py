"""The library's fixed interface, function by function and argument by argument, as ``tornwalzen.h`` has it.

Arrays are numpy arrays of the header's types, int32 and float64, used as they are and never copied: 1-D, or 2-D where the
header has columns (``INTA``, ``KNG``, ``KNZ``, ``KNA``, ``ELG``: Fortran order; ``KNOTS``, ``INZI``, ``EVAL`` by node and
by triangle: C order). What the header calls out or inout, scalars included, is an array that can be written; a scalar that
is only read may be a plain int. Where the header allows NULL, ``None``. All numbering counts from 1.

Before the library is entered, type, layout and length of every array that a call uses are checked, the lengths against
what the library last reported. ``WORK`` is grown with ``WORK.resize(length, refcheck=False)``, which keeps what stands in
it.

One mesh at a time, one thread at a time: a call while another runs is refused. An exception of the progress handler is
raised when the call returns; it does not end the run, which this interface cannot.

Examples
--------
The cup of the samples, after the worked example of the header:

>>> import numpy as np
>>> from tornwalzen import fixed
>>> points, triangles = tornwalzen.read_obj("samples/square_cup.obj")
>>> nn, ne = len(points), len(triangles)
>>> neq = 2 * nn
>>> i4 = lambda *shape: np.zeros(shape, np.int32, order="F")
>>> f8 = lambda *shape: np.zeros(shape, order="F")
>>> mnsysm, niwor, nrk, istat = i4(1), i4(1), i4(1), i4(1)
>>> mnsysm[0] = 4 * (nn + 3 * ne) - nn
>>> inta, cols, rowi, kng = i4(ne, 3), i4(neq + 1), i4(int(mnsysm[0])), f8(nn, 3)
>>> work, rwork = i4(0), f8(0)
>>> for mode in (1, 2, 3):
...     fixed.OSINIT(mode, nn, ne, neq, mnsysm, niwor, nrk, points, triangles + 1, inta, None, cols, rowi, work, rwork,
...                  None, None, None, None, kng, None, None, None, None, None, None, istat)
...     assert istat[0] == 0
...     work.resize(int(niwor[0]), refcheck=False)
...     rwork.resize(int(nrk[0]), refcheck=False)
>>> arfa = np.ones(neq, np.int32)
>>> arfa[0::2][np.abs(points[:, 0]) < 1e-6] = 0
>>> arfa[1::2][np.abs(points[:, 1]) < 1e-6] = 0
>>> rx, eval_ = f8(neq), f8(5, ne)
>>> fractions = []
>>> def heard(_, record):
...     if record.kind == 0:
...         fractions.append(record.value)
>>> fixed.PlivaneSetProgressHdlr(heard, None)
>>> fixed.OSMAIN(inta, arfa, cols, rowi, work, rwork, f8(neq), f8(neq), rx, f8(neq), kng, f8(nn, 3), f8(nn, 3),
...              f8(ne, 5), f8(int(mnsysm[0])), f8(neq), f8(neq), 1, eval_, istat)
>>> fixed.PlivaneSetProgressHdlr(None, None)
>>> int(istat[0]), fractions[-1]
(1, 1.0)
"""
from __future__ import annotations

import ctypes
import threading
from contextlib import contextmanager
from ctypes import POINTER, c_char_p, c_double, c_int32, c_void_p
from typing import Any, Callable, Iterator, List, NamedTuple, Optional, Union

import numpy as np
from numpy.typing import NDArray

from ._library import LIBRARY
from .errors import InputError

__all__ = ["OSINIT", "OSMAIN", "PlivaneSetProgressHdlr", "Record", "inipgr", "procpu", "proinf", "progre", "prterr",
           "prttxt"]

IntArray = NDArray[np.int32]
RealArray = NDArray[np.float64]
Scalar = Union[int, IntArray]


class Record(NamedTuple):
    """What the progress handler is given: ``TornwalzenProgress``."""

    value: float
    kind: int
    text: Optional[str]


class _CRecord(ctypes.Structure):
    _fields_ = [("value", c_double), ("kind", c_int32), ("text", c_char_p)]


_HANDLER = ctypes.CFUNCTYPE(None, c_void_p, POINTER(_CRecord))
Handler = Callable[[Any, Record], Any]

for _name, _arguments in (("OSINIT", 27), ("OSMAIN", 20)):
    getattr(LIBRARY, _name).argtypes = [c_void_p] * _arguments
    getattr(LIBRARY, _name).restype = None
LIBRARY.PlivaneSetProgressHdlr.argtypes, LIBRARY.PlivaneSetProgressHdlr.restype = [_HANDLER, c_void_p], None
for _name in ("prttxt", "proinf"):
    getattr(LIBRARY, _name).argtypes, getattr(LIBRARY, _name).restype = [c_char_p, c_int32], None
for _name in ("inipgr", "progre"):
    getattr(LIBRARY, _name).argtypes, getattr(LIBRARY, _name).restype = [POINTER(c_double)], None
for _name in ("procpu", "prterr"):
    getattr(LIBRARY, _name).argtypes, getattr(LIBRARY, _name).restype = [], None


class _State:
    """What the one analysis of the fixed interface has reported, and who listens to it."""

    def __init__(self) -> None:
        self.entered = threading.Lock()
        self.nodes = self.triangles = self.equations = self.entries = self.integers = self.reals = 0
        self.handler: Any = None  # kept alive as long as the library may call it
        self.error: Optional[BaseException] = None


_state = _State()


@contextmanager
def _one_at_a_time(function: str) -> Iterator[None]:
    if not _state.entered.acquire(blocking=False):
        raise InputError(f"{function}: an analysis of the fixed interface is running", code=-2, place=function,
                         advice="one at a time; solve has a handle for each")
    try:
        yield
    finally:
        _state.entered.release()
    _raise_what_was_heard()


def _raise_what_was_heard() -> None:
    """Raises what the handler raised, unless an analysis runs, which it is then left to."""
    if _state.error is not None and not _state.entered.locked():
        error, _state.error = _state.error, None
        raise error


class _Call:
    """Collects the arguments of one call, checked in their order."""

    def __init__(self, function: str) -> None:
        self.function = function
        self.passed: List[Any] = []
        self.kept: List[Any] = []

    def _refuse(self, name: str, sentence: str) -> InputError:
        return InputError(f"{self.function}: {name} {sentence}", place=name)

    def read(self, name: str, value: Scalar) -> int:
        """A scalar that the library reads."""
        if isinstance(value, (int, np.integer)) and not isinstance(value, bool):
            number = int(value)
        else:
            number = int(self._array(name, value, np.int32, 1, False)[0])
        if not -2**31 <= number < 2**31:
            raise self._refuse(name, f"is {number}, beyond 32 bits")
        cell = np.array([number], dtype=np.int32)
        self.kept.append(cell)
        self.passed.append(cell.ctypes.data)
        return number

    def written(self, name: str, cell: IntArray) -> IntArray:
        """A scalar that the library writes."""
        array: IntArray = self._array(name, cell, np.int32, 1, True)
        self.passed.append(array.ctypes.data)
        return array

    def array(self, name: str, values: Any, kind: Any, length: int, written: bool, columns: bool = False) -> None:
        """An array that this call uses, of `length` entries or more."""
        array = self._array(name, values, kind, length, written)
        if array.ndim == 2 and not (array.flags.f_contiguous if columns else array.flags.c_contiguous):
            raise self._refuse(name, f"lies by {'rows' if columns else 'columns'}, wanted order "
                                     f"{'F' if columns else 'C'}")
        if array.ndim > 2 or (array.ndim == 1 and not array.flags.c_contiguous):
            raise self._refuse(name, "does not lie in one piece of one or two dimensions")
        self.passed.append(array.ctypes.data)

    def unused(self, count: int = 1) -> None:
        """Arguments that this call does not read."""
        self.passed += [None] * count

    def _array(self, name: str, values: Any, kind: Any, length: int, written: bool) -> Any:
        if not isinstance(values, np.ndarray) or values.dtype != np.dtype(kind):
            what = f"an array of {values.dtype}" if isinstance(values, np.ndarray) else repr(values)[:40]
            raise self._refuse(name, f"is {what}, wanted an array of {np.dtype(kind)}")
        if written and not values.flags.writeable:
            raise self._refuse(name, "cannot be written")
        if values.size < length:
            raise self._refuse(name, f"has {values.size} entries, wanted {length}")
        return values


def OSINIT(MODE: Scalar, NKNO: Scalar, NELE: Scalar, NEQ: Scalar, MNSYSM: IntArray, NIWOR: IntArray, NRK: IntArray,
           KNOTS: Optional[RealArray], INZI: Optional[IntArray], INTA: Optional[IntArray], reserved: None,
           COLS: IntArray, ROWI: IntArray, WORK: Optional[IntArray], RWORK: Optional[RealArray], RR: None, RB: None,
           RX: None, TEMP: None, KNG: Optional[RealArray], KNZ: None, KNA: None, ELG: None, SYSM: None, RXA: None,
           WRHS: None, ISTAT: IntArray) -> None:
    """Structure set-up in three modes; see the header for the arguments.

    Raises
    ------
    InputError
        An argument's type, layout or length; nothing was called.
    """
    call = _Call("OSINIT")
    mode, nodes, triangles, equations = (call.read(name, value) for name, value in
                                         (("MODE", MODE), ("NKNO", NKNO), ("NELE", NELE), ("NEQ", NEQ)))
    entries = call.written("MNSYSM", MNSYSM)
    integers, reals = call.written("NIWOR", NIWOR), call.written("NRK", NRK)
    if mode == 1:
        if nodes < 0 or triangles < 0 or equations != 2 * nodes:
            raise InputError(f"OSINIT: NKNO {nodes}, NELE {triangles}, NEQ {equations}: wanted 0 or more, and NEQ = "
                             "2*NKNO", place="NEQ")
        call.array("KNOTS", KNOTS, np.float64, 3 * nodes, False)
        call.array("INZI", INZI, np.int32, 3 * triangles, False)
        call.array("INTA", INTA, np.int32, 3 * triangles, True, columns=True)
    else:
        call.unused(3)
        equations = _state.equations
    call.unused()
    call.array("COLS", COLS, np.int32, equations + 1, mode == 1)
    call.array("ROWI", ROWI, np.int32, int(entries[0]) if mode == 1 else _state.entries, mode == 1)
    if mode in (2, 3):
        call.array("WORK", WORK, np.int32, _state.integers, True)
    else:
        call.unused()
    if mode == 3:
        call.array("RWORK", RWORK, np.float64, _state.reals, True)
    else:
        call.unused()
    call.unused(4)
    if mode == 1:
        call.array("KNG", KNG, np.float64, 3 * nodes, True, columns=True)
    else:
        call.unused()
    call.unused(6)
    status = call.written("ISTAT", ISTAT)
    with _one_at_a_time("OSINIT"):
        LIBRARY.OSINIT(*call.passed)
        if status[0] == 0 and mode in (1, 2, 3):
            if mode == 1:
                _state.nodes, _state.triangles, _state.equations = nodes, triangles, equations
                _state.entries, _state.reals = int(entries[0]), 0
            else:
                _state.reals = int(reals[0])
            _state.integers = int(integers[0])


def OSMAIN(INTA: IntArray, ARFA: IntArray, COLS: IntArray, ROWI: IntArray, WORK: IntArray, RWORK: RealArray,
           RR: RealArray, RB: RealArray, RX: RealArray, TEMP: RealArray, KNG: RealArray, KNZ: RealArray,
           KNA: RealArray, ELG: RealArray, SYSM: RealArray, RXA: RealArray, WRHS: RealArray, ICTRL: Scalar,
           EVAL: RealArray, ISTAT: IntArray) -> None:
    """The inverse analysis; see the header for the arguments.

    Raises
    ------
    InputError
        An argument's type, layout or length; nothing was called.
    """
    s = _state
    call = _Call("OSMAIN")
    call.array("INTA", INTA, np.int32, 3 * s.triangles, True, columns=True)
    call.array("ARFA", ARFA, np.int32, s.equations, False)
    call.array("COLS", COLS, np.int32, s.equations + 1, False)
    call.array("ROWI", ROWI, np.int32, s.entries, False)
    call.array("WORK", WORK, np.int32, s.integers, True)
    call.array("RWORK", RWORK, np.float64, s.reals, True)
    for name, vector in (("RR", RR), ("RB", RB), ("RX", RX), ("TEMP", TEMP)):
        call.array(name, vector, np.float64, s.equations, True)
    call.array("KNG", KNG, np.float64, 3 * s.nodes, False, columns=True)
    call.array("KNZ", KNZ, np.float64, 3 * s.nodes, True, columns=True)
    call.array("KNA", KNA, np.float64, 3 * s.nodes, True, columns=True)
    call.array("ELG", ELG, np.float64, 5 * s.triangles, True, columns=True)
    call.array("SYSM", SYSM, np.float64, s.entries, True)
    call.array("RXA", RXA, np.float64, s.equations, True)
    call.array("WRHS", WRHS, np.float64, s.equations, True)
    call.read("ICTRL", ICTRL)
    # EVAL holds five values per triangle, one triangle after the other: (5, NE) by columns, or (NE, 5) by rows
    call.array("EVAL", EVAL, np.float64, 5 * s.triangles, True, columns=EVAL.ndim == 2 and EVAL.shape[0] == 5)
    call.written("ISTAT", ISTAT)
    with _one_at_a_time("OSMAIN"):
        LIBRARY.OSMAIN(*call.passed)


def PlivaneSetProgressHdlr(handler: Optional[Handler], userdata: Any) -> None:
    """Registers ``handler(userdata, record)``, or none."""
    if handler is None:
        called = ctypes.cast(0, _HANDLER)
    elif callable(handler):
        called = _HANDLER(_hearing(handler, userdata))
    else:
        raise InputError(f"handler is {handler!r}, wanted a function of userdata and a Record, or None",
                         place="handler")
    LIBRARY.PlivaneSetProgressHdlr(called, None)
    _state.handler = called


def _hearing(handler: Handler, userdata: Any) -> Callable[[Any, Any], None]:
    def hear(_: Any, pointer: Any) -> None:
        if _state.error is not None:
            return
        try:
            record = pointer.contents
            text = record.text
            handler(userdata, Record(record.value, record.kind,
                                     None if text is None else text.decode("ascii", "replace")))
        except BaseException as error:  # it may not pass through the library
            _state.error = error

    return hear


def _text(text: Union[str, bytes], name: str) -> bytes:
    if isinstance(text, str):
        return text.encode("utf-8", "replace")
    if isinstance(text, bytes):
        return text
    raise InputError(f"{name} is {text!r}, wanted text", place=name)


def prttxt(text: Union[str, bytes], length: int = 0) -> None:
    """Prints one line on standard output; `length` is not used."""
    LIBRARY.prttxt(_text(text, "text"), length)


def inipgr(end: float) -> None:
    """Opens a progress scale that ends at `end`."""
    LIBRARY.inipgr(ctypes.byref(c_double(end)))
    _raise_what_was_heard()


def progre(x: float) -> None:
    """Reports progress `x` on that scale."""
    LIBRARY.progre(ctypes.byref(c_double(x)))
    _raise_what_was_heard()


def proinf(text: Union[str, bytes], length: int = 0) -> None:
    """Hands an information line to the handler; `length` is not used."""
    LIBRARY.proinf(_text(text, "text"), length)
    _raise_what_was_heard()


def procpu() -> None:
    """Hands the processor time to the handler."""
    LIBRARY.procpu()
    _raise_what_was_heard()


def prterr() -> None:
    """Called after a fatal text was composed; does nothing."""
    LIBRARY.prterr()
