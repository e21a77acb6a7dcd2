"""One analysis of the library behind its handle: runs, what is heard of them, and how they are ended.

No exception crosses the C boundary. What is raised while a handler runs is kept, the run is asked to end, and the
exception is raised again once the library has returned.
"""
from __future__ import annotations

import ctypes
import signal
import threading
from contextlib import contextmanager
from dataclasses import dataclass
from typing import Any, Callable, Iterator, List, Optional, Tuple

import numpy as np
from numpy.typing import NDArray

from ._library import LIBRARY, MESSAGE_HANDLER, NO_MESSAGE_HANDLER, NO_STEP_HANDLER, STEP_HANDLER
from ._structures import STRAIN_DOUBLES, CPressResult, CReport, PressResult, Report, Step, viewed
from ._verdict import fatal_text
from .errors import LibraryError, refused

_SETUP_FAILED, _NO_RESULTS = -31, -32
Listener = Callable[[Step], Any]


class Watch:
    """Hears of a run on the thread that makes it, and remembers why it is to end."""

    def __init__(self, listener: Optional[Listener]) -> None:
        self.listener = listener
        self.error: Optional[BaseException] = None
        self.interrupted = False
        self.messages: List[str] = []
        self.on_step = STEP_HANDLER(self._step)  # must live as long as the run
        self.on_message = MESSAGE_HANDLER(self._message)

    def _step(self, _: Any, pointer: Any) -> int:
        try:
            if self.listener is not None and self.error is None:
                self.listener(viewed(Step, pointer.contents))
        except BaseException as error:  # it may not pass through the library
            self.error = error
        return 1 if self.interrupted or self.error is not None else 0

    def _message(self, _: Any, line: bytes) -> None:
        try:
            self.messages.append(line.decode("ascii", "replace"))
        except BaseException as error:  # likewise
            self.error = error

    def interrupt(self, *_: Any) -> None:
        """The handler of Ctrl-C while a run is on: the next step ends it."""
        self.interrupted = True

    def raise_what_happened(self) -> None:
        if self.error is not None:
            raise self.error
        if self.interrupted:
            raise KeyboardInterrupt


@contextmanager
def _ctrl_c(watch: Watch) -> Iterator[None]:
    """While it lasts Ctrl-C marks the watch. A handler of the caller's own stays; only the main thread may set one."""
    ours = (threading.current_thread() is threading.main_thread()
            and signal.getsignal(signal.SIGINT) is signal.default_int_handler)
    if ours:
        signal.signal(signal.SIGINT, watch.interrupt)
    try:
        yield
    finally:
        if ours:
            signal.signal(signal.SIGINT, signal.default_int_handler)


@dataclass(frozen=True, eq=False)
class Output:
    """What one run left, copied out of the library: lengths in mm, triangles from 0. None: no such result."""

    report: Report
    press: PressResult
    triangles: NDArray[np.int32]
    blank: Optional[NDArray[np.float64]]
    starting_blank: Optional[NDArray[np.float64]]
    table: Optional[NDArray[np.float64]]
    strains: Optional[NDArray[np.float64]]
    contact_pressure: Optional[NDArray[np.float64]]
    binder_pressure: Optional[NDArray[np.float64]]
    messages: Tuple[str, ...]


class Analysis:
    """Owns a handle; used by one thread at a time."""

    def __init__(self) -> None:
        self._handle: Optional[int] = LIBRARY.tornwalzen_analysis_create()
        if not self._handle:
            raise LibraryError("there is no memory for an analysis", code=-30)
        self._nodes = self._elements = 0

    def __enter__(self) -> "Analysis":
        return self

    def __exit__(self, *_: Any) -> None:
        self.close()

    def close(self) -> None:
        """Gives back all that the analysis holds."""
        if self._handle:
            LIBRARY.tornwalzen_analysis_destroy(self._handle)
        self._handle = None

    def set(self, what: str, *arguments: Any, place: str = "") -> None:
        """tornwalzen_analysis_set_<what>; arrays as they are. Raises what the library refuses, in its words."""
        passed = [a.ctypes.data if isinstance(a, np.ndarray) else a for a in arguments]
        code = getattr(LIBRARY, "tornwalzen_analysis_set_" + what)(self._handle, *passed)
        if code != 0:
            raise refused(code, self._text(code), place)

    def set_mesh(self, points: NDArray[np.float64], triangles: NDArray[np.int32]) -> None:
        self.set("mesh", len(points), len(triangles), points, triangles, 0)
        self._nodes, self._elements = len(points), len(triangles)

    def run(self, listener: Optional[Listener]) -> Output:
        """Runs once. Raises KeyboardInterrupt, or what the listener raised, after an orderly end of the run."""
        watch = Watch(listener)
        LIBRARY.tornwalzen_analysis_on_step(self._handle, watch.on_step, None)
        LIBRARY.tornwalzen_analysis_on_message(self._handle, watch.on_message, None)
        try:
            with _ctrl_c(watch):
                code = LIBRARY.tornwalzen_analysis_run(self._handle)
        finally:
            LIBRARY.tornwalzen_analysis_on_step(self._handle, NO_STEP_HANDLER, None)
            LIBRARY.tornwalzen_analysis_on_message(self._handle, NO_MESSAGE_HANDLER, None)
        watch.raise_what_happened()
        if code != 0:
            text = (fatal_text(self._report()) if code == _SETUP_FAILED else "") or self._text(code)
            raise refused(code, text)
        return self._output(tuple(watch.messages))

    def _text(self, code: int) -> str:
        text: bytes = LIBRARY.tornwalzen_analysis_error_text(self._handle, code, 1)
        return text.decode("ascii", "replace")

    def _report(self) -> Report:
        report = CReport(size=ctypes.sizeof(CReport))
        LIBRARY.tornwalzen_analysis_report(self._handle, ctypes.byref(report))
        result: Report = viewed(Report, report)
        return result

    def _press(self) -> PressResult:
        press = CPressResult(size=ctypes.sizeof(CPressResult))
        LIBRARY.tornwalzen_analysis_press_result(self._handle, ctypes.byref(press))
        result: PressResult = viewed(PressResult, press)
        return result

    def _reals(self, what: str, *shape: int) -> Optional[NDArray[np.float64]]:
        address = getattr(LIBRARY, "tornwalzen_analysis_" + what)(self._handle)
        if not address:
            return None
        pointer = ctypes.cast(address, ctypes.POINTER(ctypes.c_double))
        return np.ctypeslib.as_array(pointer, shape=shape).copy()

    def _strains(self) -> Optional[NDArray[np.float64]]:
        strains = np.empty((self._elements, STRAIN_DOUBLES))
        code = LIBRARY.tornwalzen_analysis_strains(self._handle, strains.ctypes.data)
        return strains if code == 0 else None

    def _output(self, messages: Tuple[str, ...]) -> Output:
        n, m = self._nodes, self._elements
        address = LIBRARY.tornwalzen_analysis_oriented_triangles(self._handle)
        if not address:
            raise LibraryError("the run left no results", code=_NO_RESULTS)
        pointer = ctypes.cast(address, ctypes.POINTER(ctypes.c_int32))
        triangles = np.ctypeslib.as_array(pointer, shape=(m, 3)).copy()
        return Output(self._report(), self._press(), triangles, self._reals("blank", n, 2),
                      self._reals("starting_blank", n, 2), self._reals("element_table", m, 5), self._strains(),
                      self._reals("contact_pressure", m), self._reals("binder_pressure", m), messages)

