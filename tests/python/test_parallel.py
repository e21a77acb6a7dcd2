"""Many parts: on processes, threads, a Dask cluster; with workers that are lost on the way."""
import os
import signal
import threading
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

import numpy as np
import pytest

import jobs
import tornwalzen
from conftest import ROOT


@pytest.fixture(autouse=True)
def workers_find_the_package(monkeypatch):
    monkeypatch.setenv("PYTHONPATH", os.pathsep.join([str(Path(tornwalzen.__path__[0]).parent),
                                                      str(ROOT / "tests" / "python")]))


def test_order_and_edges():
    assert tornwalzen.map(jobs.square, range(20)) == [number * number for number in range(20)]
    assert tornwalzen.map(jobs.square, []) == []
    with ThreadPoolExecutor(3) as threads:
        assert tornwalzen.map(jobs.square, iter([3, 1, 2]), threads) == [9, 1, 4]


def test_results_are_those_of_one_after_the_other():
    heights = [2.0, 4.0, 6.0, 8.0]
    one_by_one = [jobs.blanks(height) for height in heights]
    with ThreadPoolExecutor(4) as threads:
        for executor in (None, threads):
            for a, b in zip(one_by_one, tornwalzen.map(jobs.blanks, heights, executor)):
                assert np.array_equal(a, b)


@pytest.mark.parametrize("executor", [None, "threads"])
def test_the_functions_error_is_raised_or_returned(executor):
    with ThreadPoolExecutor(2) as threads:
        where = threads if executor else None
        with pytest.raises(tornwalzen.InputError, match="three; another one") as caught:
            tornwalzen.map(jobs.fails_at_three, range(6), where)
        assert caught.value.place == "number"
        outcomes = tornwalzen.map(jobs.fails_at_three, range(6), where, errors="return")
        assert isinstance(outcomes[3], tornwalzen.InputError) and outcomes[4] == 4


def test_a_partial_result_comes_home():
    error = tornwalzen.map(jobs.not_converged, [0], errors="return")[0]
    assert isinstance(error, tornwalzen.NotConverged) and error.result.report.converged == 0


def test_a_killed_process_loses_nothing(tmp_path):
    mark = str(tmp_path / "mark")
    parts = [(number, 5, mark) for number in range(12)]
    assert tornwalzen.map(jobs.dies_once, parts) == [number * number for number in range(12)]
    assert os.path.exists(mark)  # a worker did die


def test_a_part_that_kills_its_workers_fails_alone():
    parts = [(number, 5) for number in range(8)]
    with pytest.raises(tornwalzen.LibraryError, match="worker of part 5 was lost 3 times") as caught:
        tornwalzen.map(jobs.dies_always, parts, retries=1)
    assert caught.value.place == "parts[5]"
    outcomes = tornwalzen.map(jobs.dies_always, parts, retries=1, errors="return")
    assert isinstance(outcomes.pop(5), tornwalzen.LibraryError)
    assert outcomes == [number * number for number in range(8) if number != 5]


def test_what_is_refused():
    for options, match in (({"executor": 5}, "wanted an executor"), ({"errors": "hide"}, "'raise' or 'return'"),
                           ({"retries": -1}, "0 or more"), ({"retries": True}, "0 or more")):
        with pytest.raises(tornwalzen.InputError, match=match):
            tornwalzen.map(jobs.square, [1], **options)


def test_a_bar_over_the_parts(capsys):
    pytest.importorskip("tqdm")
    tornwalzen.map(jobs.square, range(4), progress=True)
    assert "4/4" in capsys.readouterr().err


def test_a_dask_cluster_with_a_killed_worker_gives_the_same_table(tmp_path):
    distributed = pytest.importorskip("distributed")
    parts = [(number, None) for number in range(64)]
    one_by_one = [jobs.variant(part) for part in parts]
    pids = tmp_path / "pids"
    pids.mkdir()
    killed = []

    def kill_one(stop):
        while not stop.wait(0.05):
            working = sorted(pids.iterdir(), key=lambda path: path.name)
            if len(working) == 2:  # both workers are at it: in the middle
                killed.append(int(working[0].name))
                os.kill(killed[0], signal.SIGKILL)
                return

    stop = threading.Event()
    killer = threading.Thread(target=kill_one, args=(stop,))
    with distributed.LocalCluster(n_workers=2, threads_per_worker=1, processes=True, dashboard_address=None,
                                  local_directory=str(tmp_path)) as cluster, distributed.Client(cluster) as client:
        killer.start()
        try:
            table = tornwalzen.map(jobs.variant, [(number, str(pids)) for number in range(64)], client)
        finally:
            stop.set()
            killer.join()
        assert killed  # with both workers at it; what it held went to the other, or to the one in its place
        assert isinstance(tornwalzen.map(jobs.fails_at_three, [2, 3], client, errors="return")[1],
                          tornwalzen.InputError)
    assert table == one_by_one
    assert len({row[2] for row in table}) == 64  # 64 different blanks
