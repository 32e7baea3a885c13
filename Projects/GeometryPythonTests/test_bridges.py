"""Cases for meshio, VTK and PyVista, and meshes of meshio as cases."""

import sys
import types

import conftest
import numpy as np
import pytest
from conftest import grid, library

import ovrageo
from ovrageo import bridges

# One of each kind of solid, side by side: a bar of a hexahedron, a wedge, a pyramid and a tetrahedron.
SHAPES = {
    "hexahedron": ([(0, 0, 0), (1, 0, 0), (1, 1, 0), (0, 1, 0), (0, 0, 1), (1, 0, 1), (1, 1, 1), (0, 1, 1)], 1),
    "wedge": ([(2, 0, 0), (3, 0, 0), (2, 1, 0), (2, 0, 1), (3, 0, 1), (2, 1, 1)], 1 / 2),
    "pyramid": ([(4, 0, 0), (5, 0, 0), (5, 1, 0), (4, 1, 0), (4.5, 0.5, 1)], 1 / 3),
    "tetrahedron": ([(6, 0, 0), (7, 0, 0), (6, 1, 0), (6, 0, 1)], 1 / 6),
}


def solids():
    """All four, in an order and with ids such that kinds alternate with nothing."""
    case = ovrageo.Case()
    region = case.model.add_region("all")
    region.attributes.update({"material_id": 7, "material_type": "solid"})
    for kind, (points, _) in SHAPES.items():
        added = case.mesh.add_vertices(points)
        case.mesh.add_elements(kind, [added.ids]).classify(1)
    return case


def wedges_between_tetrahedra():
    case = ovrageo.Case()
    case.model.add_region("body")
    for kind, shift in (("tetrahedron", 0), ("wedge", 10), ("tetrahedron", 20)):
        points = np.array(SHAPES[kind][0]) + (0, 0, shift)
        case.mesh.add_elements(kind, [case.mesh.add_vertices(points).ids]).classify(1)
    return case


def test_a_grid_stands_in_the_order_of_the_case():
    arrays = bridges.grid(wedges_between_tetrahedra())
    assert arrays.cell_types.tolist() == [10, 13, 10]
    assert arrays.cells.tolist() == [4, 0, 1, 2, 3, 6, 4, 6, 5, 7, 9, 8, 4, 10, 11, 12, 13]
    assert arrays.cell_data["mesh_id"].tolist() == [1, 2, 3]
    assert arrays.cell_data["model_name"].tolist() == ["body"] * 3
    assert arrays.point_data["model_dimension"].tolist() == [-1] * 14


@pytest.mark.parametrize("nothing_skipped, outcome", [(False, pytest.skip.Exception), (True, ImportError)])
def test_a_missing_library_skips_a_test_unless_nothing_may_be(monkeypatch, nothing_skipped, outcome):
    monkeypatch.setattr(conftest, "NOTHING_SKIPPED", nothing_skipped)
    monkeypatch.setitem(sys.modules, "vtk", None)
    with pytest.raises(outcome, match="vtk"):
        library("vtk")


def test_vtk_finds_the_volume_of_each_kind():
    vtk = library("vtk")
    support = library("vtk.util.numpy_support")
    sizes = vtk.vtkCellSizeFilter()
    sizes.SetInputData(bridges.to_vtk(solids()))
    sizes.Update()
    volumes = support.vtk_to_numpy(sizes.GetOutput().GetCellData().GetArray("Volume"))
    np.testing.assert_allclose(volumes, [volume for _, volume in SHAPES.values()])


def test_vtk_has_ids_names_and_attributes():
    library("vtk")
    case = solids()
    case.mesh.regions[2].attributes["in_bl"] = True
    cells = bridges.to_vtk(case, attributes=["material_id", "in_bl", "mesh_size"]).GetCellData()
    column = [cells.GetAbstractArray("model_name").GetValue(i) for i in range(4)]
    assert column == ["all"] * 4
    assert [cells.GetArray("material_id").GetValue(i) for i in range(4)] == [7] * 4
    assert [cells.GetArray("in_bl").GetValue(i) for i in range(4)] == [0, 1, 0, 0]
    assert np.isnan(cells.GetArray("mesh_size").GetValue(0))


def test_an_attribute_of_the_mesh_entity_comes_before_that_of_the_model(tetrahedron):
    tetrahedron.model.faces[1].attributes["mesh_size"] = 0.5
    tetrahedron.mesh.faces[3].attributes["mesh_size"] = 2.0
    assert bridges.field(tetrahedron, tetrahedron.mesh.faces, "mesh_size").tolist() == [0.5, 0.5, 2.0, 0.5]


def test_an_empty_case_is_an_empty_grid():
    assert all(len(array) == 0 for array in bridges.grid(ovrageo.Case())[:3])
    library("vtk")
    assert bridges.to_vtk(ovrageo.Case()).GetNumberOfCells() == 0


def test_faces_are_the_elements_of_a_case_without_regions():
    case = ovrageo.Case()
    points = case.mesh.add_vertices([(0, 0, 0), (1, 0, 0), (1, 1, 0), (0, 1, 0)])
    case.mesh.add_elements("quadrilateral", [points.ids])
    assert bridges.grid(case).cells.tolist() == [4, 0, 1, 2, 3]


def signed_volumes(points, wedges):
    """In VTK's order a wedge whose first triangle has its normal outwards is positive."""
    corners = points[wedges]
    normals = np.cross(corners[:, 1] - corners[:, 0], corners[:, 2] - corners[:, 0])
    return -np.einsum("ij,ij->i", normals, corners[:, 3] - corners[:, 0]) / 2


def test_meshio_gets_wedges_in_the_order_that_is_asked_for():
    library("meshio")
    for vtk_wedges, volume in ((True, 0.5), (False, -0.5)):
        mesh = bridges.to_meshio(solids(), vtk_wedges=vtk_wedges)
        assert signed_volumes(mesh.points, mesh.cells_dict["wedge"]).tolist() == [volume]


def test_meshio_gets_sets_and_data(tetrahedron):
    library("meshio")
    tetrahedron.model.regions[1].attributes.update({"material_type": "solid", "material_id": 3})
    mesh = bridges.to_meshio(tetrahedron)
    assert [(block.type, len(block.data)) for block in mesh.cells] == [("tetra", 1), ("triangle", 4)]
    assert {name: [len(each) for each in places] for name, places in mesh.cell_sets.items()} == {
        "body": [1, 0], "skin": [0, 4], "material_type:solid": [1, 0]}
    assert [each.tolist() for each in mesh.cell_data["material_id"]] == [[3], [0, 0, 0, 0]]
    assert [each.tolist() for each in mesh.cell_data["model_dimension"]] == [[3], [2] * 4]


@pytest.mark.parametrize("vtk_wedges", [True, False])
def test_a_case_comes_back_from_meshio(channel, vtk_wedges):
    library("meshio")
    mesh = bridges.to_meshio(channel, vtk_wedges=vtk_wedges)
    with pytest.warns(ovrageo.CaseWarning, match="touches without being joined"):  # no extruded_face
        back = bridges.from_meshio(mesh)
    found = ovrageo.diff(channel, back, by_place=True, tolerance=1e-6)
    changes = {change["what"] for group in found["differences"] for each in group["first"]
               for change in each["changes"]}
    assert {group["kind"] for group in found["differences"]} == {"attributes", "links"}
    assert not changes & {"name", "material_id", "material_type"}
    assert back.mesh.regions.kinds == channel.mesh.regions.kinds
    assert back.verify()
    assert [r.attributes.get("material_type") for r in back.model.regions] == [
        r.attributes.get("material_type") for r in channel.model.regions]


def test_a_case_comes_back_from_a_file_of_meshio(tetrahedron, tmp_path):
    meshio = library("meshio")
    mesh = bridges.to_meshio(tetrahedron)
    mesh.cell_sets = {}  # which .vtu has no place for
    mesh.write(tmp_path / "case.vtu")
    back = bridges.from_meshio(meshio.read(tmp_path / "case.vtu"))
    assert [len(back.mesh.faces), len(back.mesh.regions), len(back.model.faces)] == [4, 1, 1]
    assert back.verify()


def two_boxes(meshio, **data):
    points, cells = grid(2)
    return meshio.Mesh(points, [("tetra", cells)], **data), points[cells].mean(axis=1)[:, 0] < 0.5


def test_cell_sets_become_regions_and_the_rest_is_found():
    meshio = library("meshio")
    mesh, is_left = two_boxes(meshio)
    mesh.cell_sets = {"left": [np.flatnonzero(is_left)], "everything": [np.arange(len(is_left))]}
    case = bridges.from_meshio(mesh)
    assert {region.name for region in case.model.regions} == {"left", "everything"}
    assert [region.volume for region in case.model.regions] == pytest.approx([0.5, 0.5])
    assert sorted(face.area for face in case.model.faces) == pytest.approx([1, 3, 3])
    assert case.verify()


def test_a_mesh_of_gmsh_keeps_groups_and_numbers(tmp_path):
    meshio = library("meshio")
    script = tmp_path / "box.geo"
    script.write_text('SetFactory("OpenCASCADE"); Box(4) = {0, 0, 0, 1, 1, 1};\n'
                      'Physical Volume("core") = {4}; Physical Surface("lid") = {6};\n')
    ovrageo.import_file(script, mesh_size=0.5).export(tmp_path / "box.msh")
    case = bridges.from_meshio(meshio.read(tmp_path / "box.msh"))
    assert case.model.regions[4].name == "core" and case.model.faces[6].name == "lid"
    assert len(case.model.faces) == 6 and len(case.model.vertices) == 8


def test_a_planar_mesh_is_a_planar_case():
    meshio = library("meshio")
    case = bridges.from_meshio(meshio.Mesh([[0, 0], [1, 0], [1, 1], [0, 1]], [("quad", [[0, 1, 2, 3]])]))
    assert not case.model.is_3d and case.mesh.faces.kinds == {"quadrilateral": 1}


POINTS = [[0, 0, 0], [1, 0, 0], [0, 1, 0], [0, 0, 1.0]]


@pytest.mark.parametrize(
    "points, cells, error, text",
    [
        (POINTS, [("tetra", [[0, 1, 2, 9]])], ValueError,
         "a cell of the kind tetra names point 9, and the mesh has 4, from 0 on"),
        (POINTS, [("wedge", [[0, 1, 2, 3, 3, -1]])], ValueError,
         "a cell of the kind wedge names point -1, and the mesh has 4, from 0 on"),
        (POINTS, [("polygon", [[0, 1, 2, 3]])], ovrageo.UnsuitableError,
         "cells of the kind polygon have no place in a case"),
        ([[np.nan] * 3] * 4, [("tetra", [[0, 1, 2, 3]])], ovrageo.DamagedFileError,
         "the mesh: node 1 has a coordinate that is no finite number"),
    ],
)
def test_a_mesh_that_cannot_be_a_case_is_told(points, cells, error, text):
    meshio = library("meshio")
    with pytest.raises(error) as raised:
        bridges.from_meshio(meshio.Mesh(points, cells))
    assert str(raised.value) == text


def test_names_come_with_every_letter():
    meshio = library("meshio")
    mesh = meshio.Mesh(POINTS, [("tetra", [[0, 1, 2, 3]])], cell_sets={'a "b" ü': [[0]], "none": [None]})
    assert [region.name for region in bridges.from_meshio(mesh).model.regions] == ['a "b" ü']


def test_a_field_over_the_vertices_is_one_over_the_points(channel, tmp_path):
    meshio = library("meshio")
    mesh = bridges.to_meshio(channel)
    mesh.point_data["height"] = channel.mesh.vertices.coordinates[:, 2]
    mesh.cell_sets = {}
    mesh.write(tmp_path / "field.vtu")
    read = meshio.read(tmp_path / "field.vtu")
    np.testing.assert_array_equal(read.point_data["height"], read.points[:, 2])


def test_pyvista_has_volumes_names_and_fields():
    pyvista = pytest.importorskip("pyvista")  # Debian has it from 13 on
    made = bridges.to_pyvista(solids(), attributes=["material_id", "mesh_size"])
    assert isinstance(made, pyvista.UnstructuredGrid) and made.n_points == 23
    np.testing.assert_allclose(made.compute_cell_sizes()["Volume"], [volume for _, volume in SHAPES.values()])
    assert list(made.cell_data["model_name"]) == ["all"] * 4
    assert made.cell_data["material_id"].tolist() == [7] * 4
    assert np.isnan(made.cell_data["mesh_size"]).all()
    assert made.point_data["mesh_id"].tolist() == list(range(1, 24))


def test_an_empty_case_is_an_empty_grid_of_pyvista():
    pytest.importorskip("pyvista")
    assert bridges.to_pyvista(ovrageo.Case()).n_cells == 0


def test_pyvista_gets_the_arrays_of_the_grid(monkeypatch, tetrahedron):
    """Where there is no PyVista, as on Debian 12: this holds what it is called with."""
    class UnstructuredGrid:
        def __init__(self, cells, cell_types, points):
            self.given = (points, cells, cell_types)
            self.point_data, self.cell_data = {}, {}

    monkeypatch.setitem(sys.modules, "pyvista", types.SimpleNamespace(UnstructuredGrid=UnstructuredGrid))
    made, arrays = bridges.to_pyvista(tetrahedron), bridges.grid(tetrahedron)
    for given, expected in zip(made.given, arrays):
        np.testing.assert_array_equal(given, expected)
    assert list(made.point_data) == list(arrays.point_data) and list(made.cell_data) == list(arrays.cell_data)


@pytest.mark.parametrize(
    "function, library", [("to_vtk", "vtk"), ("to_pyvista", "pyvista"), ("to_meshio", "meshio"),
                          ("from_meshio", "meshio")])
def test_a_missing_library_is_named(monkeypatch, tetrahedron, function, library):
    monkeypatch.setitem(sys.modules, library, None)
    with pytest.raises(ImportError, match=f"^{library} is needed for this and cannot be imported .*: install "):
        getattr(bridges, function)(tetrahedron)
