"""Entities of model and mesh, one at a time."""

import math
import types

import pytest

import ovrageo
from ovrageo import _core


def test_a_new_case_is_empty():
    case = ovrageo.Case()
    for side in (case.model, case.mesh):
        assert [len(side.vertices), len(side.edges), len(side.faces), len(side.regions)] == [0, 0, 0, 0]
    assert case.name is None
    assert repr(case) == (
        "<Case: <Model: 0 vertices, 0 edges, 0 faces, 0 regions>, "
        "<Mesh: 0 vertices, 0 edges, 0 faces, 0 regions>>"
    )


def test_entities_are_walked_by_ascending_id():
    model = ovrageo.Case().model
    for id in (7, 2, 40, 3):
        model.add_face(f"face {id}", id)
    assert [face.id for face in model.faces] == [2, 3, 7, 40]
    assert [face.name for face in model.faces] == ["face 2", "face 3", "face 7", "face 40"]
    assert model.add_face().id == 41


def test_entities_are_found_by_id(tetrahedron):
    faces = tetrahedron.mesh.faces
    assert faces[3].id == 3
    assert 3 in faces and 5 not in faces and "3" not in faces
    assert faces[3] in faces and faces[3] not in tetrahedron.mesh.edges
    with pytest.raises(KeyError, match="there is no mesh face 5"):
        faces[5]


def test_classes_tell_the_dimension(tetrahedron):
    model = ovrageo.Case().model
    assert type(model.add_vertex((1, 2, 3))) is ovrageo.ModelVertex
    assert type(model.add_edge()) is ovrageo.ModelEdge
    assert type(model.add_face()) is ovrageo.ModelFace
    assert type(model.add_region()) is ovrageo.ModelRegion
    assert type(tetrahedron.mesh.vertices[1]) is ovrageo.MeshVertex
    assert type(tetrahedron.mesh.faces[1]) is ovrageo.MeshFace
    assert type(tetrahedron.mesh.regions[1]) is ovrageo.MeshRegion
    assert isinstance(model.faces[1], ovrageo.ModelEntity)
    assert [entity.dimension for entity in (model.vertices[1], model.regions[1])] == [0, 3]


def test_geometry_of_model_entities_is_what_was_stored():
    model = ovrageo.Case().model
    vertex, edge = model.add_vertex((1, 2, 3)), model.add_edge()
    face, region = model.add_face(), model.add_region()
    vertex.point = (4, 5, 6)
    edge.length, face.area, region.volume = 1.5, 2.5, 3.5
    face.normal, face.is_planar = (0, 0, 1), True
    region.box = ((0, 0, 0), (1, 2, 3))
    region.centroid = (0.5, 1, 1.5)
    assert vertex.point == ovrageo.Vector(4, 5, 6) == vertex.centroid
    assert (edge.length, face.area, region.volume) == (1.5, 2.5, 3.5)
    assert face.normal == (0, 0, 1) and face.is_planar
    assert region.box == ovrageo.Box(ovrageo.Vector(0, 0, 0), ovrageo.Vector(1, 2, 3))
    assert region.box.maximum.z == 3
    assert region.centroid == (0.5, 1, 1.5)


def members():
    """Everything public of the extension that has a docstring to read."""
    for name, item in vars(_core).items():
        if not name.startswith("_") and name not in ("CaseState", "open", "make", "model_of", "mesh_of"):
            yield name, item
            for member, value in vars(item).items() if isinstance(item, type) else ():
                if not member.startswith("_") and not isinstance(value, types.FunctionType):  # those of a mapping
                    yield f"{name}.{member}", value


def test_everything_says_what_it_is():
    """pybind11 begins the docstring of a function with its signature."""
    for name, item in members():
        if item.__doc__ is not None and "\n\n" in item.__doc__ and item.__doc__.startswith(name.split(".")[-1] + "("):
            assert item.__doc__.split("\n\n", 1)[1].strip(), name
        else:
            assert item.__doc__ and "(" not in item.__doc__.split()[0], name


def test_links_go_both_ways_and_once():
    model = ovrageo.Case().model
    region, face = model.add_region(), model.add_face()
    region.link(face, face)
    face.link(region)
    assert region.neighbours(2) == [face] and face.neighbours(3) == [region]
    region.unlink(face)
    assert region.neighbours(2) == [] and face.neighbours(3) == []


def test_links_within_a_dimension_or_across_cases_are_refused():
    model, other = ovrageo.Case().model, ovrageo.Case().model
    region = model.add_region()
    with pytest.raises(ValueError, match="model region 1 and model region 2 are of the same dimension"):
        region.link(model.add_region())
    with pytest.raises(ValueError, match="model face 1 is of another case"):
        region.link(other.add_face())
    with pytest.raises(ValueError, match="a dimension is 0, 1, 2 or 3"):
        region.neighbours(4)


def test_an_element_names_its_vertices_and_neighbours(tetrahedron):
    region = tetrahedron.mesh.regions[1]
    assert region.kind == "tetrahedron"
    assert [vertex.id for vertex in region.vertices] == [1, 2, 3, 4]
    assert [face.id for face in region.neighbours(2)] == [1, 2, 3, 4]
    assert region.neighbours(1) == region.neighbours(3) == []
    vertex = tetrahedron.mesh.vertices[4]
    assert [face.id for face in vertex.neighbours(2)] == [2, 3, 4]
    assert vertex.neighbours(3) == [region] and vertex.vertices == ()
    face = tetrahedron.mesh.faces[3]
    assert face.neighbours(3) == [region] and [v.id for v in face.neighbours(0)] == [2, 3, 4]
    assert face.normal == pytest.approx((1 / math.sqrt(3),) * 3)
    assert face.box == ((0, 0, 0), (1, 1, 1))
    assert region.centroid == (0.25, 0.25, 0.25)


def test_neighbours_follow_what_is_added_and_removed(tetrahedron):
    mesh = tetrahedron.mesh
    mesh.add_vertex((1, 1, 1))
    added, = mesh.add_elements("tetrahedron", [[2, 3, 4, 5]])
    assert mesh.faces[3].neighbours(3) == [mesh.regions[1], added]
    mesh.remove(added)
    assert mesh.faces[3].neighbours(3) == [mesh.regions[1]]
    mesh.remove(mesh.vertices[5])
    assert list(mesh.vertices.ids) == [1, 2, 3, 4]


def test_a_used_vertex_is_not_removed(tetrahedron):
    with pytest.raises(ValueError, match="mesh vertex 1 is used by mesh face 1"):
        tetrahedron.mesh.remove(tetrahedron.mesh.vertices[1])


def test_classification_is_the_parent(tetrahedron):
    region, element = tetrahedron.model.regions[1], tetrahedron.mesh.regions[1]
    assert element.parent == region and list(region.children) == [element]
    element.parent = None
    assert element.parent is None and list(region.children) == []
    element.parent = region
    assert list(region.children) == [element]


def test_a_removed_model_entity_leaves_no_trace(tetrahedron):
    model, mesh = tetrahedron.model, tetrahedron.mesh
    model.remove(model.regions[1])
    assert mesh.regions[1].parent is None and mesh.vertices[1].parent is None
    assert model.faces[1].neighbours(3) == []
    assert mesh.faces[1].parent == model.faces[1]


def test_renumbering_closes_gaps_and_keeps_children(tetrahedron):
    mesh, skin = tetrahedron.mesh, tetrahedron.model.faces[1]
    mesh.remove(mesh.faces[1])
    mesh.renumber()
    assert list(mesh.faces.ids) == list(skin.children.ids) == [1, 2, 3]
    mesh.remove(mesh.faces[1])  # which the parent has to know by its new id
    assert list(skin.children.ids) == [2, 3]
    assert [face.parent for face in skin.children] == [skin, skin]


def test_names_and_tags_are_texts_of_any_kind():
    face = ovrageo.Case().model.add_face("Ein\u00adla\u00df \U0001f300")
    face.tag = "t"
    assert (face.name, face.tag) == ("Ein\u00adla\u00df \U0001f300", "t")
    assert repr(face) == f"<ModelFace 1 {face.name!r}>"


@pytest.mark.parametrize("id", [-1, 3])
def test_an_id_that_is_taken_or_none_is_refused(id):
    model = ovrageo.Case().model
    model.add_face(id=3)
    with pytest.raises(ValueError):
        model.add_face(id=id)
    assert len(model.faces) == 1


@pytest.mark.parametrize(
    "point, error",
    [((1, 2), TypeError), ("abc", TypeError), ((1, 2, "x"), TypeError), ((1, 2, math.nan), ValueError)],
)
def test_a_point_is_three_finite_numbers(point, error):
    model = ovrageo.Case().model
    with pytest.raises(error):
        model.add_vertex(point)
    assert len(model.vertices) == 0


def test_entities_are_found_by_name():
    model = ovrageo.Case().model
    for name in ("chip_1", "chip_2", "chip", "a[1].*", ""):
        model.add_face(name)
    faces = model.faces
    assert [face.id for face in faces.named("chip_?")] == [1, 2]
    assert [face.id for face in faces.named("chip*")] == [1, 2, 3]
    assert [face.id for face in faces.named("a[1].*")] == [4]
    assert len(faces.named("Chip")) == 0 and list(faces.named("").ids) == [5]
    faces.named("chip*").set_attribute("is_thermal", True)
    assert faces.attribute("is_thermal").count() == 3


@pytest.mark.parametrize("key, shown", [("skin", "'skin'"), (1.0, "1.0"), (slice(1, 2), "slice(1, 2, None)")])
def test_what_is_no_id_is_refused_with_its_value(tetrahedron, key, shown):
    with pytest.raises(TypeError) as raised:
        tetrahedron.model.faces[key]
    assert str(raised.value) == f"entities are asked for by id, an integer, and not by {shown}"
    with pytest.raises(KeyError, match="there is no id 1000000000000"):
        tetrahedron.mesh.faces[10**12]
