"""Many parts on all processors: a family of domes, one table and one picture.

    python3 batch.py [PICTURE.png [SCHEDULER]]

With the address of a Dask scheduler (as tcp://host:8786) or its file (cluster.json) the parts go to its workers, which need
this package; else to one process per processor of this machine. A worker that is lost on the way costs only time.
"""
import sys

import numpy as np

import tornwalzen


def dome(height, cells=24, side=120.0):
    """A square sheet with a round dome: points (n, 3) mm, triangles (m, 3)."""
    x, y = np.meshgrid(*2 * [np.linspace(-side / 2, side / 2, cells + 1)], indexing="ij")
    r = np.hypot(x, y) / (0.4 * side)
    z = np.where(r < 1.0, 0.5 * height * (1.0 + np.cos(np.pi * r)), 0.0)
    i, j = np.meshgrid(np.arange(cells), np.arange(cells), indexing="ij")
    a = (i * (cells + 1) + j).ravel()
    b = a + cells + 1
    return (np.column_stack((x.ravel(), y.ravel(), z.ravel())),
            np.vstack((np.column_stack((a, b, b + 1)), np.column_stack((a, b + 1, a + 1)))))


def solved(height):
    """One row of the table: a part that comes to no blank is a row, too."""
    try:
        return tornwalzen.solve(*dome(height), material=1, thickness=1.0, model="fixed")
    except tornwalzen.NoBlank as none:
        return none.result


def main():
    picture = sys.argv[1] if len(sys.argv) > 1 else "batch.png"
    cluster = None
    if len(sys.argv) > 2:
        from distributed import Client
        where = sys.argv[2]
        cluster = Client(scheduler_file=where) if where.endswith(".json") else Client(where)
    heights = np.linspace(4.0, 40.0, 12)
    results = tornwalzen.map(solved, heights, cluster)

    from matplotlib.figure import Figure
    figure = Figure(figsize=(12, 6.4), layout="constrained")
    print("height (mm)  thinnest (mm)  blank area (mm2)  verdict")
    low, high = min(r.thickness.min() for r in results), max(r.thickness.max() for r in results)
    for place, (height, result) in enumerate(zip(heights, results)):
        print(f"{height:11.1f}  {result.thickness.min():13.3f}  {result.blank_area.sum():16.1f}  {result.verdict}")
        axes = figure.add_subplot(3, 4, place + 1)
        image = axes.tripcolor(*result.blank.T, result.triangles, result.thickness, vmin=low, vmax=high)
        axes.set(title=f"{height:.1f} mm high: {result.verdict.worth}", aspect="equal", xticks=[], yticks=[])
    figure.colorbar(image, ax=figure.axes, label="thickness (mm)")
    figure.savefig(picture, dpi=110)
    print(f"picture in {picture}")


if __name__ == "__main__":
    main()
