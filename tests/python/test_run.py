"""Progress, and how a run is ended: Ctrl-C, an exception of the listener; nothing is lost on the way through C."""
import os
import signal
import subprocess
import sys
import textwrap
import time

import numpy as np
import pytest

import tornwalzen
from conftest import ROOT, dome_of


class Enough(Exception):
    pass


def test_steps_are_told_in_their_order(dome):
    steps = []
    tornwalzen.solve(*dome, material=1, model="fixed", progress=steps.append)
    phases = [step.phase for step in steps]
    assert phases == sorted(phases) and {1, 2, 3, 6, 7} <= set(phases)
    assert all(0.0 <= step.fraction <= 1.0 for step in steps)
    assert steps[0].name == "building the structure of the equations"


@pytest.mark.parametrize("raised", [Enough("so far"), KeyboardInterrupt(), SystemExit(3)])
def test_what_the_listener_raises_ends_the_run_at_its_next_step(raised):
    heard = []

    def listen(step):
        heard.append(step.phase)
        if step.phase == 7:
            raise raised

    with pytest.raises(type(raised)) as caught:
        tornwalzen.solve(*dome_of(9.0, cells=30), material=1, model="fixed", progress=listen)
    assert caught.value is raised
    assert heard.count(7) == 1  # nobody is asked again


@pytest.mark.parametrize("how", ["raises", "interrupts"])
def test_the_library_ends_its_run_there(monkeypatch, how):
    from tornwalzen import _analysis
    phases, step = [], _analysis.Watch._step

    def recorded(self, userdata, pointer):
        phases.append(pointer.contents.phase)
        return step(self, userdata, pointer)

    def listen(told):
        if told.phase == 6 and how == "raises":
            raise Enough
        if told.phase == 6:
            os.kill(os.getpid(), signal.SIGINT)

    monkeypatch.setattr(_analysis.Watch, "_step", recorded)
    with pytest.raises(Enough if how == "raises" else KeyboardInterrupt):
        tornwalzen.solve(*dome_of(9.0, cells=30), material=1, model="fixed", progress=listen)
    assert phases[-1] == 6 and 7 not in phases  # the library came no further


def test_ctrl_c_ends_the_run_and_the_handler_comes_back(dome):
    def listen(step):
        if step.phase == 6:
            os.kill(os.getpid(), signal.SIGINT)

    with pytest.raises(KeyboardInterrupt):
        tornwalzen.solve(*dome_of(9.0, cells=30), material=1, model="fixed", progress=listen)
    assert signal.getsignal(signal.SIGINT) is signal.default_int_handler
    assert tornwalzen.solve(*dome, material=1, model="fixed").verdict.converged  # the next run is a run


def test_a_handler_of_ones_own_stays(dome):
    got = []
    before = signal.signal(signal.SIGINT, lambda *_: got.append(1))
    try:
        result = tornwalzen.solve(*dome, material=1, model="fixed",
                                  progress=lambda step: got or os.kill(os.getpid(), signal.SIGINT))
    finally:
        signal.signal(signal.SIGINT, before)
    assert got and result.verdict.converged


def test_ctrl_c_from_outside_without_a_listener():
    script = textwrap.dedent("""
        import sys
        sys.path[:0] = [{package!r}, {tests!r}]
        import tornwalzen
        from conftest import dome_of
        mesh = dome_of(9.0, cells=60)
        print("begun", flush=True)
        try:
            while True:
                tornwalzen.solve(*mesh, material=1, model="fixed")
        except KeyboardInterrupt:
            print("ended", flush=True)
            sys.exit(130)
    """).format(package=str(tornwalzen.__path__[0] + "/.."), tests=str(ROOT / "tests" / "python"))
    process = subprocess.Popen([sys.executable, "-c", script], stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
    assert process.stdout.readline() == "begun\n"
    time.sleep(0.5)
    process.send_signal(signal.SIGINT)
    out, err = process.communicate(timeout=60)
    assert (process.returncode, out) == (130, "ended\n"), err
    assert "ignored" not in err.lower()


def test_bar_of_tqdm(dome, capsys):
    pytest.importorskip("tqdm")
    tornwalzen.solve(*dome, material=1, model="fixed", progress=True)
    assert "finding the blank" in capsys.readouterr().err


def test_without_tqdm_a_bar_is_refused_before_the_run(dome, monkeypatch):
    monkeypatch.setitem(sys.modules, "tqdm.auto", None)
    with pytest.raises(tornwalzen.InputError, match="python3-tqdm"):
        tornwalzen.solve(*dome, material=1, progress=True)


def test_messages_of_the_library_are_kept(dome):
    result = tornwalzen.solve(*dome, material=1, model="fixed")
    assert result.messages and all(len(line) <= 80 for line in result.messages)
    assert np.isfinite(result.blank).all()
