#!/usr/bin/env python3
"""What `tornwalzen.solve` costs beside the library's calls for the same run.

    bench/python_overhead.py PART.obj [REPEATS]        (PYTHONPATH=python, a release build)

The bare run is the sequence of C calls alone, on arrays that lie ready: create, mesh, holds, settings, run, report, strains,
destroy. Both run in turns, each on a fresh handle; medians of their wall times, and of the processor times, which other
programs on the machine disturb less.
"""
import ctypes
import statistics
import sys
import time
import warnings

import numpy as np

import tornwalzen
from tornwalzen import _hold, _library, _press, _structures


def bare(points, triangles, held, curve, press, strains):
    call = _library.LIBRARY
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
    held = _hold.flags(points, triangles, "x0,y0")
    press = _press.structure(tornwalzen.Press(), 0.95, None)
    strains = np.empty((len(triangles), _structures.STRAIN_DOUBLES))
    runs = {
        "C calls": lambda: bare(points, triangles, held, curve, press, strains),
        "solve": lambda: tornwalzen.solve(points, triangles, material=curve, thickness=0.95, hold="x0,y0"),
    }
    warnings.simplefilter("ignore")
    for run in runs.values():
        run()
    times = {name: [] for name in runs}
    for _ in range(repeats):
        for name, run in runs.items():
            times[name].append(timed(run))
    medians = {name: [statistics.median(column) for column in zip(*rows)] for name, rows in times.items()}
    for name, (wall, own) in medians.items():
        print(f"{name:8} {1e3 * wall:8.1f} ms wall {1e3 * own:8.1f} ms processor")
    for place, kind in enumerate(("wall", "processor")):
        print(f"overhead {100.0 * (medians['solve'][place] / medians['C calls'][place] - 1.0):.2f} % {kind}")


if __name__ == "__main__":
    main()
