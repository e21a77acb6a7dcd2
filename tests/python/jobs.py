"""Functions that workers run: they must be of a module, so that they can be sent there."""
import os
import signal
from pathlib import Path

import numpy as np

import tornwalzen
from conftest import dome_of


def square(number):
    return number * number


def fails_at_three(number):
    if number == 3:
        raise tornwalzen.InputError("three", place="number", advice="another one")
    return number


def dies_once(job):
    """Kills its own worker the first time that it is given the marked number."""
    number, marked, mark = job
    if number == marked and not Path(mark).exists():
        Path(mark).write_text(str(os.getpid()))
        os.kill(os.getpid(), signal.SIGKILL)
    return number * number


def dies_always(job):
    number, marked = job
    if number == marked:
        os.kill(os.getpid(), signal.SIGKILL)
    return number * number


def variant(job):
    """One row of a table: a dome of some height, its blank and its thinnest place."""
    number, pids = job
    if pids:
        (Path(pids) / str(os.getpid())).touch()  # tells who works
    height, k = 4.0 + number % 8, 300.0 + 40.0 * (number // 8)
    result = tornwalzen.solve(*dome_of(height, cells=24), material=tornwalzen.law("voce", s0=150.0, ss=k, rate=6.0),
                              thickness=1.0)
    return number, result.verdict.worth, result.blank.tobytes(), float(result.thickness.min())


def not_converged(_):
    from conftest import pipe_of
    return tornwalzen.solve(*pipe_of(330), material=10, path="fixed", model="fixed")


def blanks(height):
    return np.asarray(tornwalzen.solve(*dome_of(height), material=1, model="fixed").blank)
