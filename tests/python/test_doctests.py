"""The examples of the package's docstrings and of its page run as they stand, from the project's folder."""
import doctest
import importlib
import pkgutil

import pytest

import tornwalzen
from conftest import ROOT

MODULES = ["tornwalzen"] + ["tornwalzen." + module.name for module in pkgutil.iter_modules(tornwalzen.__path__)]
FLAGS = doctest.NORMALIZE_WHITESPACE | doctest.ELLIPSIS


def examples():
    finder = doctest.DocTestFinder()
    for name in MODULES:
        module = importlib.import_module(name)
        yield from (test for test in finder.find(module, name, module) if test.examples)


@pytest.mark.parametrize("example", examples(), ids=lambda example: example.name)
def test_docstring(example, cup, monkeypatch):
    monkeypatch.chdir(ROOT)
    example.globs.update(tornwalzen=tornwalzen, cup=cup)
    assert doctest.DocTestRunner(optionflags=FLAGS).run(example).failed == 0


def test_page(cup, monkeypatch, tmp_path):
    page = ROOT / "docs" / "python.md"
    test = doctest.DocTestParser().get_doctest(page.read_text(), {"cup": cup}, page.name, str(page), 0)
    assert len(test.examples) > 5
    (tmp_path / "samples").symlink_to(ROOT / "samples")
    monkeypatch.chdir(tmp_path)
    assert doctest.DocTestRunner(optionflags=FLAGS).run(test).failed == 0


def test_everything_public_is_described():
    for name in tornwalzen.__all__:
        thing = getattr(tornwalzen, name)
        assert thing.__doc__ and not thing.__doc__.startswith(f"{name}("), name
