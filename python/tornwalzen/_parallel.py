"""Many parts on many processors, a lost worker's parts made again."""
from __future__ import annotations

import os
from collections import deque
from concurrent.futures import (FIRST_COMPLETED, BrokenExecutor, CancelledError, Future, ProcessPoolExecutor,
                                wait)
from typing import Any, Callable, Deque, Dict, Iterable, List, Optional, TypeVar, Union

from ._progress import bar
from .errors import InputError, LibraryError

Part = TypeVar("Part")
Outcome = TypeVar("Outcome")

_AHEAD = 2  # parts given out per worker: what a lost worker takes with it is no more than that


def map(function: Callable[[Part], Outcome], parts: Iterable[Part], executor: Optional[Any] = None, *,
        retries: int = 2, progress: bool = False, errors: str = "raise") -> List[Union[Outcome, BaseException]]:
    """The outcomes of ``function(part)`` for all parts, in their order.

    Parameters
    ----------
    function : callable
        Of one part; for processes and clusters one that can be pickled, as any function of a module can.
    parts : iterable
        What it is called with, one after the other.
    executor : optional
        Where: a ``concurrent.futures`` executor, or what is like one; a Dask ``Client``. None: one process per processor
        of this machine. Threads work too: each run has a handle of its own, and the library runs beside the interpreter.
    retries : int
        How often a part is made again whose worker was lost with it.
    progress : bool
        Whether to show a bar of tqdm.
    errors : str
        ``"raise"``: the first error in the order of the parts is raised, what has not begun is left; ``"return"``: errors
        stand in the list in place of outcomes.

    Returns
    -------
    list
        As if the parts had been made one after the other: where and in which order does not matter.

    Raises
    ------
    LibraryError
        A part's worker was lost `retries` + 1 times; of processes of our own, once more with the part alone on it.

    Examples
    --------
    >>> from concurrent.futures import ThreadPoolExecutor
    >>> points, triangles = tornwalzen.read_obj("samples/square_cup.obj")
    >>> def thinnest(K):
    ...     steel = tornwalzen.law("swift", K=K, e0=0.007, n=0.22)
    ...     return tornwalzen.solve(points, triangles, material=steel, model="fixed").thickness_ratio.min()
    >>> with ThreadPoolExecutor(2) as threads:
    ...     values = tornwalzen.map(thinnest, [400.0, 500.0], threads)
    >>> bool(abs(values[0] - values[1]) < 1e-6)     # only the shape of the curve acts
    True
    """
    if errors not in ("raise", "return"):
        raise InputError(f"errors is {errors!r}, wanted 'raise' or 'return'", place="errors")
    if isinstance(retries, bool) or not isinstance(retries, int) or retries < 0:
        raise InputError(f"retries is {retries!r}, wanted 0 or more", place="retries")
    work = _Work(function, list(parts), retries, progress, errors == "raise")
    try:
        if executor is None:
            work.in_processes()
        elif hasattr(executor, "get_executor"):
            work.on(_Dask(executor))
        elif hasattr(executor, "submit"):
            work.on(executor)
        else:
            raise InputError(f"executor is {executor!r}, wanted an executor or a Dask client", place="executor")
    finally:
        work.close()
    return work.outcomes


def _is_lost(error: BaseException) -> bool:
    """Whether the worker is to blame, not the function: its process died, or the cluster gave the part up for that."""
    return isinstance(error, (BrokenExecutor, CancelledError)) or type(error).__name__ in ("KilledWorker",
                                                                                          "CancelledError")


class _Dask:
    """A Dask client as an executor, by its own futures: those made over from them for concurrent.futures fail where the
    worker is lost between the end of a part and the gathering of its outcome, which Dask's own then make again."""

    def __init__(self, client: Any) -> None:
        self._client = client

    def submit(self, function: Callable[[Any], Any], part: Any) -> Any:
        return self._client.submit(function, part, pure=False)

    @staticmethod
    def first_done(futures: Iterable[Any]) -> Iterable[Any]:
        from distributed import wait as wait_for
        given = list(futures)
        try:
            done: Iterable[Any] = wait_for(given, return_when=FIRST_COMPLETED).done  # type: ignore[no-untyped-call]
            return list(done)
        except BaseException as error:  # it raises where one of them is cancelled
            if not _is_lost(error):
                raise
            return [future for future in given if future.done()]


def _first_done(futures: Iterable["Future[Any]"]) -> Iterable["Future[Any]"]:
    return wait(futures, return_when=FIRST_COMPLETED).done


class _Work:
    def __init__(self, function: Callable[[Any], Any], parts: List[Any], retries: int, progress: bool,
                 raising: bool) -> None:
        self.function, self.parts, self.retries, self.raising = function, parts, retries, raising
        self.outcomes: List[Any] = [None] * len(parts)
        self.losses = [0] * len(parts)
        self.waiting: Deque[int] = deque(range(len(parts)))
        self.given: Dict[Any, int] = {}
        self.first_done: Callable[[Iterable[Any]], Iterable[Any]] = _first_done
        self.failed: Dict[int, BaseException] = {}
        self.bar = bar(total=len(parts), unit="part") if progress else None

    def close(self) -> None:
        for future in self.given:
            future.cancel()
        if self.bar is not None:
            self.bar.close()

    def _give(self, executor: Any, most: int) -> None:
        while self.waiting and len(self.given) < most and not (self.raising and self.failed):
            place = self.waiting.popleft()
            try:
                self.given[executor.submit(self.function, self.parts[place])] = place
            except BrokenExecutor:
                self.waiting.appendleft(place)
                raise

    def _take(self) -> List[int]:
        """Waits for outcomes; the parts whose worker was lost."""
        lost = []
        for future in self.first_done(self.given):
            place = self.given.pop(future)
            try:
                self.outcomes[place] = future.result()
            except BaseException as error:  # the function's errors are outcomes
                if isinstance(error, KeyboardInterrupt):
                    raise
                if _is_lost(error):
                    lost.append(place)
                    continue
                self._fail(place, error)
            if self.bar is not None:
                self.bar.update()
        return lost

    def _fail(self, place: int, error: BaseException) -> None:
        self.outcomes[place] = error
        self.failed[place] = error

    def _give_up(self, place: int) -> None:
        self._fail(place, LibraryError(f"the worker of part {place} was lost {self.losses[place]} times",
                                       place=f"parts[{place}]",
                                       advice="look whether the part needs more memory than a worker has"))

    def _raise(self) -> None:
        if self.raising and self.failed:
            raise self.failed[min(self.failed)]

    def on(self, executor: Any) -> None:
        """On an executor of the caller's. One that is broken as a whole cannot be made anew here."""
        self.first_done = getattr(executor, "first_done", _first_done)
        most = len(self.parts)
        self._give(executor, most)
        while self.given:
            for place in self._take():
                self.losses[place] += 1
                if self.losses[place] > self.retries:
                    self._give_up(place)
                else:
                    self.waiting.append(place)
            self._give(executor, most)
        self._raise()

    def in_processes(self) -> None:
        """On processes of our own. A lost one breaks its whole pool: a new pool goes on with what was lost."""
        workers = max(1, min(os.cpu_count() or 1, len(self.parts)))
        suspects: List[int] = []
        while self.waiting and not (self.raising and self.failed):
            for place in self._until_lost(workers):
                self.losses[place] += 1
                if self.losses[place] <= self.retries:
                    self.waiting.append(place)
                else:
                    suspects.append(place)
        for place in sorted(suspects):  # one at a time, so that only the guilty part fails
            if self.raising and self.failed:
                break
            self.waiting.append(place)
            if self._until_lost(1):
                self.losses[place] += 1
                self._give_up(place)
        self._raise()

    def _until_lost(self, workers: int) -> List[int]:
        """Works on a new pool until all is done, or a worker is lost: then the parts that were given out."""
        pool = ProcessPoolExecutor(workers)
        try:
            self._give(pool, _AHEAD * workers)
            while self.given:
                lost = self._take()
                if lost:
                    lost += self.given.values()
                    self.given.clear()
                    return sorted(lost)
                self._give(pool, _AHEAD * workers)
            return []
        except BrokenExecutor:  # it broke between two parts
            lost = sorted(self.given.values())
            self.given.clear()
            return lost
        finally:
            pool.shutdown(wait=False, cancel_futures=True)
