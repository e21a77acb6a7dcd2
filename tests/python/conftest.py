"""What the tests of the package stand on: the package of the source tree, the host program beside it, parts to run."""
import json
import os
import subprocess
import sys
from pathlib import Path

import numpy as np
import pytest

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, os.environ.get("TORNWALZEN_PACKAGE", str(ROOT / "python")))

import tornwalzen

BUILD = Path(os.environ.get("TORNWALZEN_BUILD", ROOT / "build" / "release"))
PARTS = ROOT.parent / "shared" / "parts"


@pytest.fixture(scope="session")
def steel():
    return tornwalzen.law("swift", K=549.03, e0=0.007, n=0.22)


@pytest.fixture(scope="session")
def cup_mesh():
    return tornwalzen.read_obj(ROOT / "samples" / "square_cup.obj")


@pytest.fixture(scope="session")
def cup(cup_mesh, steel):
    return tornwalzen.solve(*cup_mesh, material=steel, thickness=1.0, hold="x0,y0", limit=tornwalzen.keeler(1.0, 0.2))


@pytest.fixture(scope="session")
def dome():
    """A shallow round dome over a square sheet: points (n, 3) mm, triangles (m, 3)."""
    return dome_of(8.0)


def dome_of(height, cells=12, side=100.0):
    x, y = np.meshgrid(np.linspace(-side / 2, side / 2, cells + 1), np.linspace(-side / 2, side / 2, cells + 1),
                       indexing="ij")
    r = np.hypot(x, y) / (0.4 * side)
    z = np.where(r < 1.0, 0.5 * height * (1.0 + np.cos(np.pi * r)), 0.0)
    i, j = np.meshgrid(np.arange(cells), np.arange(cells), indexing="ij")
    a = (i * (cells + 1) + j).ravel()
    b, c, d = a + cells + 1, a + cells + 2, a + 1
    triangles = np.concatenate((np.column_stack((a, b, c)), np.column_stack((a, c, d))))
    return np.column_stack((x.ravel(), y.ravel(), z.ravel())), triangles.astype(np.int32)


def pipe_of(degrees, radius=20.0, length=30.0, around=40, along=6):
    """Part of a pipe, its crown up: beyond 180 degrees its rims turn under it."""
    x, angle = np.meshgrid(np.linspace(0.0, length, along + 1), np.radians(np.linspace(-degrees / 2, degrees / 2,
                                                                                      around + 1)), indexing="ij")
    points = np.column_stack((x.ravel(), radius * np.sin(angle).ravel(), radius * np.cos(angle).ravel()))
    i, j = np.meshgrid(np.arange(along), np.arange(around), indexing="ij")
    a = (i * (around + 1) + j).ravel()
    b = a + around + 1
    return points, np.vstack((np.column_stack((a, b, b + 1)), np.column_stack((a, b + 1, a + 1)))).astype(np.int32)


def write_obj(path, points, triangles):
    with open(path, "w") as file:
        file.writelines(f"v {x!r} {y!r} {z!r}\n" for x, y, z in points.tolist())
        file.writelines(f"f {i} {j} {k}\n" for i, j, k in (triangles + 1).tolist())
    return path


class Host:
    """The host program, and what it leaves."""

    def __init__(self, program, folder):
        self.program, self.folder = program, folder

    def solve(self, part, *options, status=0):
        out = self.folder / "out"
        run = subprocess.run([self.program, "solve", part, "--out", out, "--force", "--no-report", *options],
                             capture_output=True, text=True, check=False)
        assert run.returncode == status, run.stderr
        lines = (out / "blank.obj").read_text().splitlines()
        blank = np.array([[float(word) for word in line.split()[1:3]] for line in lines if line.startswith("v ")])
        triangles = np.array([[int(word) for word in line.split()[1:]] for line in lines if line.startswith("f ")])
        return blank, triangles - 1, json.loads((out / "summary.json").read_text())


@pytest.fixture
def host(tmp_path):
    program = BUILD / "app" / "tornwalzen"
    if not program.exists():
        pytest.skip(f"there is no host program {program}")
    return Host(program, tmp_path)


@pytest.fixture
def parts():
    if not PARTS.is_dir():
        pytest.skip(f"there are no real parts in {PARTS}")
    return PARTS
