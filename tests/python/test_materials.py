"""Materials: the laws against their formulas, the library file and everything in it that is refused."""
import json

import numpy as np
import pytest

import tornwalzen
from conftest import ROOT
from tornwalzen import _materials

FORMULAS = {
    "hollomon": (dict(K=500.0, n=0.2), lambda e: 500.0 * np.maximum(e, 0.002)**0.2),
    "swift": (dict(K=549.03, e0=0.007, n=0.22), lambda e: 549.03 * (0.007 + e)**0.22),
    "ludwik": (dict(s0=150.0, K=400.0, n=0.5), lambda e: 150.0 + 400.0 * e**0.5),
    "voce": (dict(s0=150.0, ss=400.0, rate=8.0), lambda e: 400.0 - 250.0 * np.exp(-8.0 * e)),
    "hockett-sherby": (dict(s0=150.0, ss=400.0, rate=5.0, n=0.8), lambda e: 400.0 - 250.0 * np.exp(-5.0 * e**0.8)),
}


@pytest.mark.parametrize("name", FORMULAS)
def test_laws(name):
    parameters, formula = FORMULAS[name]
    curve = tornwalzen.law(name, to=0.8, **parameters)
    assert len(curve.strain) == 49 and curve.strain[0] == 0.0 and curve.strain[-1] == 0.8
    assert np.allclose(curve.stress, formula(curve.strain), rtol=1e-12)


def test_laws_that_are_refused():
    for match, name, parameters in (("no law 'steel'", "steel", {}), ("also needs n", "swift", dict(K=1.0, e0=0.1)),
                                    ("has no 'm'", "hollomon", dict(K=1.0, m=0.1)),
                                    ("wanted a number", "hollomon", dict(K="1", n=0.1))):
        with pytest.raises(tornwalzen.InputError, match=match):
            tornwalzen.law(name, **parameters)
    with pytest.raises(tornwalzen.InputError) as caught:
        tornwalzen.law("swift", K=-5.0, e0=0.1, n=0.2)
    assert caught.value.code == -11
    with pytest.raises(tornwalzen.InputError, match="as long"):
        tornwalzen.curve([0.0, 0.1], [200.0])


def test_the_library_is_the_hosts_file():
    assert json.loads(_materials._own_file().read_text()) == json.loads(
        (ROOT / "app" / "materials" / "materials.json").read_text())
    library = tornwalzen.materials()
    assert all(value.source for material in library.values() for value in material.values.values())
    assert _materials.material_named("dc04") is not None
    assert library["DC04"].flow_curve() is None and library["DC04"].mean_r is None  # a minimum is no value


def file_of(tmp_path, **changes):
    entry = {"name": "coil", "class": "mild steel", "values": {
        "K_MPa": {"value": 540, "source": "test"}, "e0": {"value": 0.006, "source": "test"},
        "n": {"value": 0.22, "source": "test"}, "r0": {"value": 1.8, "source": "test"},
        "r45": {"value": 1.4, "source": "test"}, "r90": {"value": 2.2, "source": "test"}}}
    values = changes.pop("values", {})
    entry["values"].update(values)
    entry.update(changes)
    path = tmp_path / "own.json"
    path.write_text(json.dumps({"format": "tornwalzen materials 1", "materials": [entry]}))
    return path


def test_a_coil_of_ones_own(tmp_path, dome):
    library = tornwalzen.materials(file_of(tmp_path))
    coil = library["coil"]
    assert coil.mean_r == pytest.approx(1.7) and "DC04" in library
    result = tornwalzen.solve(*dome, material=coil, thickness=1.0)
    assert result.settings.r == coil.mean_r and not result.remarks
    by_hand = tornwalzen.solve(*dome, material=tornwalzen.law("swift", K=540.0, e0=0.006, n=0.22), r=coil.mean_r,
                               thickness=1.0, press=tornwalzen.Press(planar_r=(1.8, 1.4, 2.2)))
    assert np.array_equal(result.blank, by_hand.blank)
    replaced = tornwalzen.materials(file_of(tmp_path, name="dc04"))
    assert "DC04" not in replaced and replaced["dc04"].flow_curve() is not None


@pytest.mark.parametrize("changes, match", [
    ({"name": ""}, "material 1: \"name\""),
    ({"name": "5"}, "whole number"),
    ({"class": "iron"}, "no class 'iron'"),
    ({"class": "steel", "limit_curve": "keeler"}, "mild steel only"),
    ({"limit_curve": "other"}, "limit_curve"),
    ({"colour": "grey"}, "no key 'colour'"),
    ({"values": {"R": {"value": 1, "source": "x"}}}, "no key 'R'"),
    ({"values": {"n": {"value": 1}}}, "'n' has no \"source\""),
    ({"values": {"n": {"value": 7, "source": "x"}}}, "'n' is 7, not between"),
    ({"values": {"n": {"value": True, "source": "x"}}}, "'n' is True"),
    ({"values": {"n": {"value": 0.2, "source": "x", "bound": "maximum"}}}, "\"bound\" of 'n'"),
    ({"values": {"n": 0.2}}, "wants"),
])
def test_files_that_are_refused(tmp_path, changes, match):
    with pytest.raises(tornwalzen.InputError, match=match):
        tornwalzen.materials(file_of(tmp_path, **changes))


@pytest.mark.parametrize("text", ["", "{}", "[1]", "{\"format\": \"tornwalzen materials 1\", \"materials\": [5]}",
                                  "{\"format\": \"other\", \"materials\": []}"])
def test_files_that_are_none(tmp_path, text):
    path = tmp_path / "own.json"
    path.write_text(text)
    with pytest.raises(tornwalzen.InputError, match="own.json"):
        tornwalzen.materials(path)
    with pytest.raises(tornwalzen.InputError, match="absent"):
        tornwalzen.materials(tmp_path / "absent.json")
