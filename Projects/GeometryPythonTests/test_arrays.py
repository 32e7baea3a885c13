"""Many entities at once, as arrays."""

import numpy as np
import pytest
from conftest import grid

import ovrageo


def test_coordinates_are_rows_by_id(tetrahedron):
    vertices = tetrahedron.mesh.vertices
    expected = [[0, 0, 0], [1, 0, 0], [0, 1, 0], [0, 0, 1]]
    assert vertices.coordinates.dtype == np.float64
    np.testing.assert_array_equal(vertices.coordinates, expected)
    np.testing.assert_array_equal(vertices.select([4, 2]).coordinates, [expected[3], expected[1]])
    np.testing.assert_array_equal(tetrahedron.mesh.regions.coordinates, [[0.25, 0.25, 0.25]])


def test_coordinates_can_be_set(tetrahedron):
    vertices = tetrahedron.mesh.vertices
    vertices.coordinates = 2 * vertices.coordinates
    vertices.select([4]).coordinates = np.array([[7, 8, 9]])
    assert vertices[2].point == (2, 0, 0) and vertices[4].point == (7, 8, 9)


@pytest.mark.parametrize(
    "points, text",
    [
        (np.zeros((3, 3)), "3 points are given for 4 entities"),
        (np.zeros((4, 2)), "points are an array of n x 3 numbers"),
        (np.full((4, 3), np.inf), "row 0 of the points is not finite"),
        (np.full((4, 3), "x"), "points are an array of n x 3 numbers"),
    ],
)
def test_wrong_coordinates_change_nothing(tetrahedron, points, text):
    with pytest.raises(ValueError) as raised:
        tetrahedron.mesh.vertices.coordinates = points
    assert str(raised.value) == text
    assert tetrahedron.mesh.vertices[4].point == (0, 0, 1)


def test_ids_and_connectivity(tetrahedron):
    faces = tetrahedron.mesh.faces
    assert faces.ids.dtype == np.int32 and list(faces.ids) == [1, 2, 3, 4]
    np.testing.assert_array_equal(faces.connectivity, [[1, 3, 2], [1, 2, 4], [2, 3, 4], [1, 4, 3]])
    assert faces.kinds == {"triangle": 4}
    assert tetrahedron.mesh.edges.connectivity.shape == (0, 0)


def test_kinds_are_told_apart(channel):
    regions = channel.mesh.regions
    layers = 1104  # of which each release of Gmsh makes as many; not so of tetrahedra
    assert regions.kinds == {"tetrahedron": len(regions) - layers, "wedge": layers}
    with pytest.raises(ValueError, match="more than one kind"):
        regions.connectivity
    wedges = regions.of_kind("wedge")
    assert wedges.connectivity.shape == (layers, 6)
    first = wedges[int(wedges.ids[0])]
    assert [vertex.id for vertex in first.vertices] == list(wedges.connectivity[0])
    with pytest.raises(ValueError, match='no kind of element "wedges"'):
        regions.of_kind("wedges")


def test_parents_are_the_classification(tetrahedron):
    tetrahedron.mesh.add_vertex((5, 5, 5))
    dimensions, ids = tetrahedron.mesh.vertices.parents
    assert list(dimensions) == [3, 3, 3, 3, -1] and list(ids) == [1, 1, 1, 1, 0]
    tetrahedron.mesh.vertices.select([1, 5]).classify([0, 1], dimension=2)
    dimensions, ids = tetrahedron.mesh.vertices.parents
    assert list(dimensions) == [-1, 3, 3, 3, 2] and list(ids) == [0, 1, 1, 1, 1]


def test_a_wrong_parent_changes_nothing(tetrahedron):
    faces = tetrahedron.mesh.faces
    with pytest.raises(ValueError, match="there is no model face 2"):
        faces.classify([0, 1, 2, 1])
    with pytest.raises(ValueError, match="3 parents are given for 4 entities"):
        faces.classify([0, 0, 0])
    assert list(faces.parents[1]) == [1, 1, 1, 1]


def test_attributes_are_masked_arrays(tetrahedron):
    vertices = tetrahedron.mesh.vertices
    vertices.set_attribute("rotor_vertex", [5, 6], ids=[2, 4])
    values = vertices.attribute("rotor_vertex")
    assert values.dtype == np.int64
    assert values.tolist() == [None, 5, None, 6]
    assert vertices.attribute("stator_vertex").mask.all()
    vertices.set_attribute("in_bl", True)
    assert vertices.attribute("in_bl").dtype == bool and vertices.attribute("in_bl").all()
    vertices.set_attribute("visual_scale_factor", np.arange(4))
    assert vertices.attribute("visual_scale_factor").dtype == np.float64
    assert [type(v.attributes["visual_scale_factor"]) for v in vertices] == [float] * 4


def test_an_attribute_without_a_fixed_type_is_what_it_holds(tetrahedron):
    vertices = tetrahedron.mesh.vertices
    vertices.set_attribute("ex_height", np.array([1, 2, 1 << 40, 4]))
    assert vertices.attribute("ex_height").tolist() == [1, 2, 1 << 40, 4]
    vertices[2].attributes["ex_height"] = 0.5
    assert vertices.attribute("ex_height").tolist() == [1.0, 0.5, float(1 << 40), 4.0]
    vertices[2].attributes["ex_height"] = "x"
    with pytest.raises(TypeError, match="ex_height has values that are no numbers: 'x'"):
        vertices.attribute("ex_height")


@pytest.mark.parametrize(
    "tag, value, each",
    [
        ("material_type", "solid", ["solid"] * 2),
        ("material_type", ["solid", "fluid"], ["solid", "fluid"]),
        ("periodic_origin", (1, 2, 3), [(1, 2, 3)] * 2),
        ("periodic_origin", [(1, 2, 3), (4, 5, 6)], [(1, 2, 3), (4, 5, 6)]),
        ("periodic_origin", np.arange(6.0).reshape(2, 3), [(0, 1, 2), (3, 4, 5)]),
        ("hot_faces", [1, 2, 3], [[1, 2, 3]] * 2),
        ("hot_faces", [[1], [2, 3]], [[1], [2, 3]]),
        ("periodic_matrix", np.eye(3), [((1, 0, 0), (0, 1, 0), (0, 0, 1))] * 2),
        ("periodic_matrix", np.stack([np.eye(3), 2 * np.eye(3)]),
         [((1, 0, 0), (0, 1, 0), (0, 0, 1)), ((2, 0, 0), (0, 2, 0), (0, 0, 2))]),
    ],
)
def test_one_value_for_all_or_one_for_each(tag, value, each):
    model = ovrageo.Case().model
    model.add_face()
    model.add_face()
    model.faces.set_attribute(tag, value)
    assert [face.attributes[tag] for face in model.faces] == each


@pytest.mark.parametrize(
    "values, ids, error",
    [
        ([1, 2], None, ValueError),
        (np.arange(5), None, ValueError),
        ([1, 2, 3, "x"], None, TypeError),
        (np.array([1.5, 2, 3, 4]), None, TypeError),
        (np.array([1, 2, 3, 1 << 31]), None, OverflowError),
        (1, [1, 9], KeyError),
        (1, [1.5], TypeError),
        (1, [[1]], ValueError),
    ],
)
def test_wrong_values_change_nothing(tetrahedron, values, ids, error):
    vertices = tetrahedron.mesh.vertices
    with pytest.raises(error):
        vertices.set_attribute("rotor_vertex", values, ids)
    assert vertices.attribute("rotor_vertex").mask.all()


def test_a_mesh_of_arrays_is_sound_and_comes_back():
    points, cells = grid(4)
    case = ovrageo.Case()
    case.model.add_region("cube")
    vertices = case.mesh.add_vertices(points)
    vertices.classify(1, dimension=3)
    case.mesh.add_elements("tetrahedron", vertices.ids[cells]).classify(1)
    found = case.verify()
    assert found.is_sound and set(found.counts) == {"uncovered-side"}  # as there are no faces
    np.testing.assert_array_equal(case.mesh.vertices.coordinates, points)
    np.testing.assert_array_equal(case.mesh.regions.connectivity, cells + 1)
    a, b, c, d = (points[cells[:, i]] for i in range(4))
    volumes = np.einsum("ij,ij->i", np.cross(b - a, c - a), d - a) / 6
    assert volumes.min() > 0 and volumes.sum() == pytest.approx(1)


def test_ids_may_be_given(tetrahedron):
    mesh = tetrahedron.mesh
    added = mesh.add_vertices([[2, 2, 2], [3, 3, 3]], ids=[70, 60])
    assert list(added.ids) == [70, 60] and mesh.vertices[60].point == (3, 3, 3)
    assert mesh.add_vertex((0, 0, 0)).id == 71
    assert mesh.add_vertex((0, 0, 0), id=99).id == 99


@pytest.mark.parametrize("ids", [[1, 8], [8, 8], [0, 8], [8], [[8], [9]], [8.0, 9.0]])
def test_ids_that_cannot_be_add_nothing(tetrahedron, ids):
    with pytest.raises((ValueError, TypeError)):
        tetrahedron.mesh.add_vertices([[2, 2, 2], [3, 3, 3]], ids=ids)
    assert len(tetrahedron.mesh.vertices) == 4


@pytest.mark.parametrize(
    "kind, rows, text",
    [
        ("tetrahedron", [[1, 2, 3, 5]], "there is no mesh vertex 5"),
        ("tetrahedron", [[1, 2, 3]], "vertices of tetrahedra are an array of n x 4 ids"),
        ("tet", [[1, 2, 3, 4]], 'there is no kind of element "tet"'),
    ],
)
def test_wrong_elements_add_nothing(tetrahedron, kind, rows, text):
    with pytest.raises(ValueError, match=text):
        tetrahedron.mesh.add_elements(kind, rows)
    assert len(tetrahedron.mesh.regions) == 1


def test_a_selection_knows_its_own(tetrahedron):
    chosen = tetrahedron.mesh.vertices.select([3, 1])
    assert [vertex.id for vertex in chosen] == [3, 1] and len(chosen) == 2
    assert 1 in chosen and 2 not in chosen
    with pytest.raises(KeyError, match="there is no mesh vertex 2 in this selection"):
        chosen[2]
    with pytest.raises(KeyError, match="there is no mesh vertex 9"):
        tetrahedron.mesh.vertices.select([9])


def test_a_mask_selects_as_ids_do(tetrahedron):
    vertices = tetrahedron.mesh.vertices
    upper = vertices.select(vertices.coordinates[:, 2] > 0.5)
    assert list(upper.ids) == [4]
    assert list(vertices.select([4, 1]).select([True, False]).ids) == [4]
    assert len(vertices.select(np.zeros(4, dtype=bool))) == 0
    with pytest.raises(ValueError, match="^1 truth value is given for 4 entities$"):
        vertices.select([True])
    with pytest.raises(ValueError, match="^2 truth values are given for 1 entity$"):
        upper.select([True, True])


def test_what_is_masked_stays_as_it_is(tetrahedron):
    vertices = tetrahedron.mesh.vertices
    vertices.select([1]).set_attribute("mesh_size", 2.0)
    vertices.set_attribute("mesh_size", 2 * vertices.attribute("mesh_size"))
    assert vertices.attribute("mesh_size").tolist() == [4.0, None, None, None]
    masked = np.ma.MaskedArray([1, 2], [True, False])
    vertices.set_attribute("rotor_vertex", masked, ids=[3, 4])
    assert vertices.attribute("rotor_vertex").tolist() == [None, None, None, 2]
    with pytest.raises(ValueError, match="2 values are given for 4 entities"):
        vertices.set_attribute("rotor_vertex", masked)


def test_a_masked_truth_value_is_false(tetrahedron):
    vertices = tetrahedron.mesh.vertices
    vertices.select([1, 3]).set_attribute("mesh_size", [2.0, 0.5])
    assert list(vertices.select(vertices.attribute("mesh_size") < 1.0).ids) == [3]
    assert list(vertices.select(vertices.attribute("mesh_size") > 1.0).ids) == [1]
    assert list(tetrahedron.model.faces.select(np.ma.MaskedArray([True], [True])).ids) == []


@pytest.mark.parametrize("kind", [np.int32, np.int64, np.uint8])
@pytest.mark.parametrize(
    "use",
    [
        lambda mesh, ids: mesh.vertices.select(ids),
        lambda mesh, ids: mesh.vertices.select(list(ids.reshape(2, 1))),
        lambda mesh, ids: mesh.vertices.set_attribute("rotor_vertex", 7, ids=ids),
        lambda mesh, ids: mesh.vertices.select([1, 2]).classify(ids, dimension=2),
        lambda mesh, ids: mesh.add_vertices([[0, 0, 0], [1, 1, 1]], ids=ids + 7),
        lambda mesh, ids: mesh.add_elements("line", [ids]),
        lambda mesh, ids: mesh.add_elements("line", ids.reshape(1, 2)),
    ],
)
def test_masked_ids_are_refused(tetrahedron, kind, use):
    before = tetrahedron.text()
    with pytest.raises(TypeError, match=r"^ids of a masked array are not all known; give its compressed\(\)$"):
        use(tetrahedron.mesh, np.ma.MaskedArray([1, 1], [True, False], dtype=kind))
    assert tetrahedron.text() == before


@pytest.mark.parametrize("masked", [lambda points: points, lambda points: list(points)])
def test_masked_points_are_refused(tetrahedron, masked):
    mesh, before = tetrahedron.mesh, tetrahedron.text()
    points = np.ma.MaskedArray(np.full((4, 3), 5.0), mask=True)
    for use in (lambda: setattr(mesh.vertices, "coordinates", masked(points)), lambda: mesh.add_vertices(masked(points))):
        with pytest.raises(TypeError, match="^points of a masked array are not all known"):
            use()
    assert tetrahedron.text() == before
    mesh.vertices.coordinates = np.ma.MaskedArray(np.full((4, 3), 5.0))
    assert mesh.vertices[1].point == (5, 5, 5)


def test_what_has_a_method_mask_is_no_masked_array(tetrahedron):
    class Series:
        """As of pandas."""

        def __array__(self, *_):
            return np.array([3, 1])

        def mask(self):
            raise AssertionError

    assert list(tetrahedron.mesh.vertices.select(Series()).ids) == [3, 1]


@pytest.mark.parametrize(
    "use, error",
    [
        (lambda mesh: mesh.faces.classify(1, dimension=4), ValueError),
        (lambda mesh: mesh.faces.classify(1, dimension=-1), ValueError),
        (lambda mesh: mesh.faces.classify(1, dimension="2"), TypeError),
        (lambda mesh: mesh.faces.classify([[1, 1], [1, 1]]), ValueError),
        (lambda mesh: mesh.faces.select(np.array([2**63 + 1], dtype=np.uint64)), OverflowError),
        (lambda mesh: setattr(mesh.regions, "coordinates", [[0, 0, 0]]), TypeError),
        (lambda mesh: mesh.vertices.set_attribute("ex_height", [1, None, 2, 3]), TypeError),
        (lambda mesh: setattr(mesh.faces[1], "parent", mesh.faces[2]), TypeError),
    ],
)
def test_arguments_that_mean_nothing(tetrahedron, use, error):
    with pytest.raises(error):
        use(tetrahedron.mesh)
    assert list(tetrahedron.mesh.faces.parents[1]) == [1, 1, 1, 1]


def test_a_sequence_that_says_it_is_longer(tetrahedron):
    class Short(list):
        def __len__(self):
            return 100004

    with pytest.raises((ValueError, TypeError)):
        tetrahedron.mesh.vertices.set_attribute("visual_scale_factor", Short([1.0]))


def test_a_list_that_holds_itself_is_no_column(tetrahedron):
    endless = []
    endless.append(endless)
    with pytest.raises((TypeError, RecursionError)):
        tetrahedron.mesh.vertices.set_attribute("periodic_translation", endless)


def test_a_single_number_of_an_array_is_one_for_all(tetrahedron):
    tetrahedron.mesh.vertices.set_attribute("rotor_vertex", np.array(7))
    assert list(tetrahedron.mesh.vertices.attribute("rotor_vertex")) == [7, 7, 7, 7]


def test_elements_of_no_kind_have_no_place(tetrahedron, tmp_path):
    """A file may hold a triangle of two vertices: what stands for four bytes in the middle of the file."""
    tetrahedron.save(tmp_path / "case")
    path = tmp_path / "case.geo_mesh"
    content = path.read_bytes()
    face = b"".join(number.to_bytes(4, "big") for number in (3, 2, 3, 4))
    assert content.count(face) == 1
    path.write_bytes(content.replace(face, face[:3] + b"\x02" + face[4:12]))
    opened = ovrageo.open(tmp_path / "case")
    assert opened.mesh.faces.kinds["unknown"] == 1
    with pytest.raises(ValueError, match="has 2 vertices, as no kind of element does"):
        opened.mesh.faces.coordinates
