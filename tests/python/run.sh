#!/usr/bin/env bash
# One group of the Python package's tests, with Debian's Python. Status 77 and a reason where something it needs is absent.
# usage: run.sh PROJECT_FOLDER BUILD_FOLDER sanitizers=LIST pytest FILE | mypy | syntax | installed CMAKE
set -euo pipefail
project=$1 build=$2 sanitizers=${3#sanitizers=} what=$4
python=/usr/bin/python3

skip() { echo "skipped: $*"; exit 77; }
needs() { "$python" -c "import $1" 2>/dev/null || skip "there is no $1; scripts/setup python installs it"; }

[ -x "$python" ] || skip "there is no $python"
export TORNWALZEN_BUILD=$build TORNWALZEN_LIBRARY=$build/libtornwalzen.so PYTHONDONTWRITEBYTECODE=1
export OMP_NUM_THREADS=1 OPENBLAS_NUM_THREADS=1   # numpy's: what is parallel here is the tests
case $what in
  pytest)
    [ -z "$sanitizers" ] || skip 'a sanitized library does not load into a Python without the sanitizer'
    needs numpy; needs pytest
    cd "$project/tests/python"
    "$python" -m pytest -q -rs -c "$project/python/pyproject.toml" --rootdir . "$5" ;;
  mypy)
    needs numpy; needs mypy
    cd "$project/python"
    "$python" -m mypy --config-file pyproject.toml --cache-dir "$build/mypy" ;;
  syntax)   # of Python 3.9, the oldest that the package is for
    "$python" - "$project"/python/tornwalzen/*.py "$project"/python/gallery/*.py <<'PYTHON'
import ast, sys
for name in sys.argv[1:]:
    tree = ast.parse(open(name).read(), name, feature_version=(3, 9))
    if "/tornwalzen/" in name and not name.endswith("__init__.py"):
        # without it the annotations would be computed, which 3.9 cannot do with all of them
        assert any(isinstance(n, ast.ImportFrom) and n.module == "__future__" for n in tree.body), name
print(len(sys.argv) - 1, "files are of Python 3.9")
PYTHON
    ;;
  installed)   # library and package alone, in a tree that is moved and holds a blank in its path
    [ -z "$sanitizers" ] || skip 'a sanitized library does not load into a Python without the sanitizer'
    needs numpy
    unset TORNWALZEN_LIBRARY
    scratch=$(mktemp -d)
    trap 'rm -rf "$scratch"' EXIT
    for component in library python; do
      "$5" --install "$build" --prefix "$scratch/first" --component $component >/dev/null
    done
    mv "$scratch/first" "$scratch/moved tree"
    site=$(dirname "$(find "$scratch/moved tree" -path '*/tornwalzen/__init__.py' -printf '%h\n')")
    cd "$scratch"
    PYTHONPATH=$site "$python" - "$scratch/moved tree" "$project/samples/square_cup.obj" <<'PYTHON'
import importlib.metadata, sys, tornwalzen
from tornwalzen import _library, _materials
prefix, part = sys.argv[1:]
assert tornwalzen.__file__.startswith(prefix), tornwalzen.__file__
assert _library.LIBRARY._name.startswith(prefix), _library.LIBRARY._name
assert str(_materials._own_file()).startswith(prefix), _materials._own_file()
assert importlib.metadata.version("tornwalzen") == tornwalzen.__version__
result = tornwalzen.solve(*tornwalzen.read_obj(part), model="fixed", hold="x0,y0")
assert result.verdict.worth == "good", result.verdict
print("the installed package solves the cup:", result)
PYTHON
    if "$python" -c 'import matplotlib' 2>/dev/null; then   # its examples find their part
      PYTHONPATH=$site "$python" "$scratch/moved tree/share/doc/python3-tornwalzen/examples/gallery/fld.py"
    fi
    ;;
  *) sed -n 's/^# usage: /usage: /p' "$0" >&2; exit 2 ;;
esac
