"""Every field of the structures lies where a C compiler puts it."""
import ctypes
import os
import re
import shutil
import subprocess
import sys
from pathlib import Path

import pytest

from conftest import BUILD, ROOT
from tornwalzen import _library, _structures

PAIRS = [("TornwalzenReport", _structures.CReport), ("TornwalzenPressResult", _structures.CPressResult),
         ("TornwalzenStep", _structures.CStep), ("TornwalzenPress", _structures.CPress)]


def compiled(tmp_path, lines):
    compiler = shutil.which("cc") or shutil.which("gcc")
    if compiler is None:
        pytest.skip("there is no C compiler")
    source = tmp_path / "layout.c"
    source.write_text("#include <stddef.h>\n#include <stdio.h>\n#include <tornwalzen_analysis.h>\nint main(void) {\n"
                      + "\n".join(lines) + "\nreturn 0; }\n")
    subprocess.run([compiler, "-I", ROOT / "include", source, "-o", tmp_path / "layout"], check=True)
    printed = subprocess.run([tmp_path / "layout"], capture_output=True, text=True, check=True).stdout
    return dict((name, int(value)) for name, value in (line.split() for line in printed.splitlines()))


@pytest.mark.parametrize("name, structure", PAIRS)
def test_offsets_and_size(tmp_path, name, structure):
    places = compiled(tmp_path, [
        f'printf("{field} %zu\\n", offsetof({name}, {field}));' for field, _ in structure._fields_
    ] + [f'printf("sizeof %zu\\n", sizeof({name}));'])
    for field, _ in structure._fields_:
        assert getattr(structure, field).offset == places[field], field
    assert ctypes.sizeof(structure) <= places["sizeof"]  # later versions append fields


def test_strain_columns(tmp_path):
    fields = {"strains": "major", "directions_blank": "direction_blank", "directions": "direction_part",
              "thickness": "thickness", "equivalent": "equivalent", "flow_stress": "flow_stress"}
    places = compiled(tmp_path, [
        f'printf("{name} %zu\\n", offsetof(TornwalzenElementStrain, {field}) / sizeof(double));'
        for name, field in fields.items()
    ] + ['printf("sizeof %zu\\n", sizeof(TornwalzenElementStrain) / sizeof(double));'])
    for name, column in _structures.STRAIN_COLUMNS.items():
        assert (column.start if isinstance(column, slice) else column) == places[name], name
    assert _structures.STRAIN_DOUBLES == places["sizeof"]


def test_soname_is_that_of_the_build():
    assert (BUILD / _library.SONAME).exists()


def test_every_declared_function_is_in_the_header():
    header = (ROOT / "include" / "tornwalzen_analysis.h").read_text() + (
        ROOT / "include" / "tornwalzen_ext.h").read_text()
    for name in ["tornwalzen_analysis_" + name for name in _library._ANALYSIS] + list(_library._OTHERS):
        declaration = re.search(rf"^TORNWALZEN_API [^;(]*\b{name}\(([^;]*)\);", header, re.MULTILINE)
        assert declaration, name
        arguments = declaration.group(1)
        count = 0 if arguments.strip() == "void" else arguments.count(",") + 1
        declared = (_library._ANALYSIS.get(name.replace("tornwalzen_analysis_", "")) if "analysis" in name
                    else _library._OTHERS[name])
        assert len(declared[1]) == count, name


@pytest.mark.parametrize("library", ["/nowhere/libtornwalzen.so", "libc.so.6"])  # absent; another one
def test_a_library_that_is_none_is_told_with_a_cure(library):
    run = subprocess.run([sys.executable, "-c", "import tornwalzen"], capture_output=True, text=True, check=False,
                         env={**os.environ, "TORNWALZEN_LIBRARY": library,
                              "PYTHONPATH": str(Path(_library.__file__).parents[1])})
    assert run.returncode == 1
    last = run.stderr.strip().splitlines()[-1]
    assert "LibraryNotFound: the library of tornwalzen cannot be used" in last and "TORNWALZEN_LIBRARY" in last
