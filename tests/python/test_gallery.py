"""Every script of the gallery runs and makes its picture."""
import os
import subprocess
import sys
from pathlib import Path

import pytest

import tornwalzen
from conftest import ROOT

SCRIPTS = sorted((ROOT / "python" / "gallery").glob("*.py"))


@pytest.mark.parametrize("script", SCRIPTS, ids=lambda script: script.stem)
def test_script(script, tmp_path):
    pytest.importorskip("matplotlib")
    from matplotlib import image
    arguments = [str(ROOT / "samples" / "square_cup.obj")] if script.stem == "cup" else []
    run = subprocess.run([sys.executable, script, *arguments, "out.png"], cwd=tmp_path, capture_output=True, text=True,
                         env={**os.environ, "PYTHONPATH": str(Path(tornwalzen.__path__[0]).parent)}, check=False)
    assert run.returncode == 0, run.stderr
    assert "picture in out.png" in run.stdout
    assert image.imread(tmp_path / "out.png").std() > 0.1


def test_there_are_five():
    assert [script.stem for script in SCRIPTS] == ["batch", "cup", "fld", "hem", "material_study"]
