"""Attributes as mappings, with values of Python."""

from collections.abc import MutableMapping

import numpy as np
import pytest

import ovrageo


@pytest.fixture
def attributes():
    case = ovrageo.Case()
    return case.model.add_region("body").attributes


def test_they_are_a_mutable_mapping(attributes):
    assert isinstance(attributes, MutableMapping)
    assert attributes == {} and not attributes
    attributes.update(material_type="solid", material_id=3)
    assert dict(attributes) == {"material_id": 3, "material_type": "solid"} == attributes
    assert list(attributes) == ["material_id", "material_type"]
    assert attributes.pop("material_id") == 3
    assert "material_id" not in attributes and 5 not in attributes
    assert attributes.get("material_id", 7) == 7
    del attributes["material_type"]
    assert len(attributes) == 0
    with pytest.raises(KeyError, match="material_type"):
        attributes["material_type"]
    assert repr(attributes) == "<Attributes of model region 1: {}>"


@pytest.mark.parametrize(
    "tag, value",
    [
        ("material_id", 2147483647),
        ("is_shell", True),
        ("visual_scale_factor", 0.25),
        ("material_type", "fluid \U0001f300"),
        ("hot_faces", [1, 2, 3]),
        ("periodic_weights", [0.5, 0.25, 0.25]),
        ("periodic_origin", ovrageo.Vector(1.0, 2.0, 3.0)),
        ("periodic_matrix", ovrageo.Matrix(*map(ovrageo.Vector._make, np.eye(3).tolist()))),
        ("ex_type", None),
        ("ex_type", True),
        ("ex_type", 1 << 40),
        ("ex_type", b"\x00\xff"),
        ("ex_type", [1, [2.5, "x", [ovrageo.Vector(1.0, 0.0, 0.0)]], {"a": [True, None]}]),
    ],
)
def test_a_value_comes_back_as_it_was_set(attributes, tmp_path, tag, value):
    attributes[tag] = value
    assert attributes[tag] == value and type(attributes[tag]) is type(value)


def test_values_outlive_a_file(tetrahedron, tmp_path):
    region = tetrahedron.model.regions[1]
    region.attributes["periodic_origin"] = (1, 2, 3)
    region.attributes["hot_faces"] = np.array([4, 5])
    tetrahedron.save(tmp_path / "case")
    again = ovrageo.open(tmp_path / "case").model.regions[1].attributes
    assert again == {"periodic_origin": ovrageo.Vector(1, 2, 3), "hot_faces": [4, 5]}


@pytest.mark.parametrize(
    "tag, value, text",
    [
        ("material_id", "3", "material_id takes an integer, and not '3'"),
        ("material_id", 3.0, "material_id takes an integer, and not 3.0"),
        ("material_id", True, "material_id takes an integer, and not True"),
        ("material_type", 3, "material_type takes a text, and not 3"),
        ("is_shell", 1, "is_shell takes true or false, and not 1"),
        ("visual_scale_factor", "1", "visual_scale_factor takes a number, and not '1'"),
        ("hot_faces", 3, "hot_faces takes a list of integers, and not 3"),
        ("periodic_matrix", 3, "periodic_matrix takes a matrix, and not 3"),
        ("periodic_matrix", [1, 2], "a matrix is a sequence of 3 rows of 3 numbers"),
        ("ex_type", object, "no attribute can hold <class 'object'>"),
    ],
)
def test_a_value_of_another_type_is_refused(attributes, tag, value, text):
    with pytest.raises(TypeError) as raised:
        attributes[tag] = value
    assert str(raised.value) == text
    assert tag not in attributes


def test_integers_have_32_bits_where_the_library_reads_them(attributes):
    with pytest.raises(OverflowError):
        attributes["material_id"] = 1 << 31
    with pytest.raises(OverflowError):
        attributes["ex_type"] = 1 << 63


def test_values_of_numpy_are_taken_for_what_they_are(attributes):
    attributes["material_id"] = np.int64(5)
    attributes["is_shell"] = np.bool_(True)
    attributes["visual_scale_factor"] = np.float32(0.5)
    attributes["periodic_origin"] = np.array([1.0, 2.0, 3.0])
    assert dict(attributes) == {
        "is_shell": True,
        "material_id": 5,
        "periodic_origin": (1, 2, 3),
        "visual_scale_factor": 0.5,
    }


def test_a_list_that_holds_itself_is_an_error(attributes):
    endless = []
    endless.append(endless)
    with pytest.raises(RecursionError):
        attributes["ex_type"] = endless
    assert attributes == {}


def test_a_masked_number_is_no_value(tetrahedron):
    """Python would take it for NaN."""
    vertices = tetrahedron.mesh.vertices
    vertices.select([1]).set_attribute("mesh_size", 2.0)
    one, other = vertices.attribute("mesh_size")[:2]
    assert one == 2
    for tag, value in (("visual_scale_factor", other), ("periodic_weights", [0.5, other])):
        with pytest.raises(TypeError, match=f"{tag} takes .*, and not "):
            vertices[2].attributes[tag] = value
    with pytest.raises(TypeError, match="visual_scale_factor takes a number, and not masked"):
        vertices.set_attribute("visual_scale_factor", [1.0, other, 3.0, 4.0])
    assert vertices[2].attributes == {}


@pytest.mark.parametrize(
    "others, more, error",
    [
        ({"material_id": 3, "material_type": 5}, {}, TypeError),
        ([("material_id", 3), ("materialid", 5)], {}, KeyError),
        ({"material_id": 3}, {"is_shell": 5}, TypeError),
        ({"material_id": 3, 5: 5}, {}, TypeError),
        ([("material_id", 3), ("material_type",)], {}, ValueError),
    ],
)
def test_an_update_of_which_one_is_refused_sets_none(attributes, others, more, error):
    attributes["material_id"] = 1
    with pytest.raises(error):
        attributes.update(others, **more)
    assert attributes == {"material_id": 1}


def test_an_update_takes_what_that_of_a_dict_takes(attributes, tetrahedron):
    attributes.update()
    attributes.update([("material_id", 3)], is_shell=True)
    other = tetrahedron.model.regions[1].attributes
    other.update(attributes, material_id=4)
    assert attributes == {"material_id": 3, "is_shell": True} and other == {"material_id": 4, "is_shell": True}
    with pytest.raises(TypeError):
        attributes.update({}, {})


def test_an_unknown_tag_is_refused_and_not_found(attributes):
    for use in (lambda: attributes.__setitem__("materialid", 3), lambda: attributes["materialid"],
                lambda: attributes.__delitem__("materialid")):
        with pytest.raises(KeyError, match="there is no attribute 'materialid'; see ovrageo.attribute_tags"):
            use()
    assert "materialid" not in attributes and attributes.get("materialid") is None
    assert "material_id" in ovrageo.attribute_tags() and len(ovrageo.attribute_tags()) == 77


def test_model_and_mesh_have_attributes_too(tetrahedron):
    tetrahedron.model.attributes["coordinate_system"] = 2
    tetrahedron.mesh.attributes["ex_type"] = "a"
    assert tetrahedron.model.attributes == {"coordinate_system": 2}
    assert tetrahedron.mesh.attributes == {"ex_type": "a"}


@pytest.mark.parametrize("tag, kind", [("hot_faces", "integers"), ("periodic_weights", "numbers")])
def test_a_list_of_other_things_is_refused_with_its_tag(tetrahedron, tag, kind):
    with pytest.raises(TypeError, match=rf"^{tag} takes a list of {kind}, and not \[<ModelFace 1 'skin'>\]$"):
        tetrahedron.model.regions[1].attributes[tag] = [tetrahedron.model.faces[1]]
    assert tag not in tetrahedron.model.regions[1].attributes
