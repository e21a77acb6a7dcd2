#!/usr/bin/env python3
"""What `tornwalzen.solve` costs beside the library's calls of the same run.

    bench/python_overhead.py PART.obj [REPEATS]        (PYTHONPATH=python, a release build)

Every call into the library is timed within the run itself, and so is every step and message that the library tells Python:
the calls without these are the library's, all else is Python's. Both are of one run, so that what else the machine does
falls on them alike; told are medians over the runs, of wall and of processor times.
"""
import statistics
import sys
import time

import tornwalzen
from tornwalzen import _analysis


class Clock:
    """Sums what passes while it runs: wall and processor seconds."""

    def __init__(self):
        self.sums = [0.0, 0.0]

    def around(self, function):
        def timed(*arguments):
            begin = time.perf_counter(), time.process_time()
            try:
                return function(*arguments)
            finally:
                self.sums[0] += time.perf_counter() - begin[0]
                self.sums[1] += time.process_time() - begin[1]

        return timed


class TimedLibrary:
    """The library with a clock around each of its functions."""

    def __init__(self, library, clock):
        self._library, self._clock = library, clock

    def __getattr__(self, name):
        return self._clock.around(getattr(self._library, name))


def one_run(run):
    """Seconds of Python and of the library, by clock: wall, processor."""
    calls, heard, whole = Clock(), Clock(), Clock()
    library, watch = _analysis.LIBRARY, _analysis.Watch
    step, message = watch._step, watch._message
    _analysis.LIBRARY = TimedLibrary(library, calls)
    watch._step, watch._message = heard.around(step), heard.around(message)
    try:
        whole.around(run)()
    finally:
        _analysis.LIBRARY, watch._step, watch._message = library, step, message
    return [(total - inside + back, inside - back) for total, inside, back in zip(whole.sums, calls.sums, heard.sums)]


def main():
    points, triangles = tornwalzen.read_obj(sys.argv[1])
    repeats = int(sys.argv[2]) if len(sys.argv) > 2 else 25
    steel = tornwalzen.law("swift", K=549.03, e0=0.007, n=0.22)

    def run():
        tornwalzen.solve(points, triangles, material=steel, thickness=0.95, hold="x0,y0")

    run()
    runs = [one_run(run) for _ in range(repeats)]
    for place, clock in enumerate(("wall", "processor")):
        python, library = (statistics.median(run[place][part] for run in runs) for part in (0, 1))
        share = statistics.median(run[place][0] / run[place][1] for run in runs)
        print(f"{clock:9}  library {1e3 * library:7.1f} ms, Python {1e3 * python:5.1f} ms, overhead {100.0 * share:.2f} %")


if __name__ == "__main__":
    main()
