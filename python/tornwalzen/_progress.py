"""Progress of a run as a bar of tqdm."""
from __future__ import annotations

from types import TracebackType
from typing import Any, Callable, Optional, Type, Union

from ._structures import Step
from .errors import InputError

Progress = Union[bool, Callable[[Step], Any], None]
_HUNDRED = 100


class _Bar:
    """One bar, begun anew with each phase. The percentage is the best of the phase: it never runs backwards."""

    def __init__(self) -> None:
        self._bar = bar(total=_HUNDRED, unit="%", leave=False)
        self._phase = 0

    def __call__(self, step: Step) -> None:
        if step.phase != self._phase:
            self._phase = step.phase
            self._bar.reset(total=_HUNDRED)
            self._bar.set_description(step.name)
        percent = int(_HUNDRED * min(max(step.fraction, 0.0), 1.0)) if step.fraction == step.fraction else 0
        self._bar.update(max(percent - self._bar.n, 0))

    def close(self) -> None:
        self._bar.close()


class Listening:
    """As a context: what a run's steps are told to, None where nobody listens."""

    def __init__(self, progress: Progress) -> None:
        if progress is not None and not isinstance(progress, bool) and not callable(progress):
            raise InputError(f"progress is {progress!r}, wanted True, a function of a Step, or None", place="progress")
        self._progress = progress
        self._bar: Optional[_Bar] = None

    def __enter__(self) -> Optional[Callable[[Step], Any]]:
        if self._progress is True:
            self._bar = _Bar()
            return self._bar
        return self._progress if callable(self._progress) else None

    def __exit__(self, kind: Optional[Type[BaseException]], error: Optional[BaseException],
                 trace: Optional[TracebackType]) -> None:
        if self._bar is not None:
            self._bar.close()


def bar(**options: Any) -> Any:
    """A bar of tqdm. Raises InputError where tqdm is not installed."""
    try:
        from tqdm.auto import tqdm
    except ImportError as problem:
        raise InputError("progress=True needs tqdm", place="progress",
                         advice="install it (Debian: python3-tqdm), or give a function of a Step") from problem
    return tqdm(**options)
