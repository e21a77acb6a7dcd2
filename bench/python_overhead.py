#!/usr/bin/env python3
"""What `tornwalzen.solve` costs beside the library's calls for the same run.

    bench/python_overhead.py PART.obj [REPEATS]        (PYTHONPATH=python, a release build)

The bare run is the sequence of C calls alone, on input that lies ready: create, mesh, holds, settings, run, report, strains,
destroy. Both run in turns, each on a fresh handle. Told are medians and smallest values of their processor times, which
other programs on the machine disturb less than the wall times beside them.
"""
import ctypes
import statistics
import sys
import time
import warnings

import numpy as np

import tornwalzen
from tornwalzen import _geometry, _hold, _library, _press, _structures


def bare(points, triangles, held, curve, press):
    call = _library.LIBRARY
    strains = np.empty((len(triangles), _structures.STRAIN_DOUBLES))  # any host's
    handle = call.tornwalzen_analysis_create()
    call.tornwalzen_analysis_set_mesh(handle, len(points), len(triangles), points.ctypes.data, triangles.ctypes.data, 0)
    call.tornwalzen_analysis_set_holds(handle, held.ctypes.data)
    call.tornwalzen_analysis_set_material(handle, 1)
    call.tornwalzen_analysis_set_flow_curve(handle, 49, curve.strain.ctypes.data, curve.stress.ctypes.data)
    call.tornwalzen_analysis_set_energy_reference(handle, 1)
    call.tornwalzen_analysis_set_path(handle, 1)
    call.tornwalzen_analysis_set_model(handle, 1)
    call.tornwalzen_analysis_set_press(handle, press)
    call.tornwalzen_analysis_set_tolerance_factors(handle, 1e-3, 1.0)
    call.tornwalzen_analysis_run(handle)
    report = _structures.CReport(size=ctypes.sizeof(_structures.CReport))
    call.tornwalzen_analysis_report(handle, report)
    call.tornwalzen_analysis_strains(handle, strains.ctypes.data)
    call.tornwalzen_analysis_destroy(handle)
    return report.newton_iterations


def timed(run):
    wall, own = time.perf_counter(), time.process_time()
    run()
    return time.perf_counter() - wall, time.process_time() - own


def main():
    points, triangles = tornwalzen.read_obj(sys.argv[1])
    repeats = int(sys.argv[2]) if len(sys.argv) > 2 else 15
    curve = tornwalzen.law("swift", K=549.03, e0=0.007, n=0.22)
    held = _hold.flags(points, triangles, _geometry.Corners(points, triangles), "x0,y0")
    press = _press.structure(tornwalzen.Press(), 0.95, None)
    runs = {
        "C calls": lambda: bare(points, triangles, held, curve, press),
        "solve": lambda: tornwalzen.solve(points, triangles, material=curve, thickness=0.95, hold="x0,y0"),
    }
    warnings.simplefilter("ignore")
    for run in runs.values():
        run()
    times = {name: [] for name in runs}
    for _ in range(repeats):
        for name, run in runs.items():
            times[name].append(timed(run))
    for kind, pick in (("median", statistics.median), ("smallest", min)):
        figures = {name: [1e3 * pick(column) for column in zip(*rows)] for name, rows in times.items()}
        for place, clock in enumerate(("wall", "processor")):
            calls, whole = figures["C calls"][place], figures["solve"][place]
            print(f"{kind:8} {clock:9}  C calls {calls:7.1f} ms, solve {whole:7.1f} ms, "
                  f"overhead {100.0 * (whole / calls - 1.0):5.2f} %")


if __name__ == "__main__":
    main()
