"""Cases as objects of meshio, VTK and PyVista, and meshes of meshio as cases.

None of the three is needed to import this; a function whose library is missing raises ImportError.

>>> import ovrageo
>>> case = ovrageo.Case()
>>> _ = case.mesh.add_vertices([[0, 0, 0], [1, 0, 0], [0, 1, 0], [0, 0, 1]])
>>> _ = case.mesh.add_elements("tetrahedron", [[1, 2, 3, 4]])
>>> grid = ovrageo.bridges.grid(case)
>>> grid.cells
array([4, 0, 1, 2, 3])
>>> grid.cell_types
array([10], dtype=uint8)
"""

from __future__ import annotations

import importlib
import os
import tempfile
from collections.abc import Iterator, Sequence
from typing import Any, NamedTuple

import numpy as np
import numpy.typing as npt

from . import _core, _host, errors
from .case import Case, import_file

_Array = npt.NDArray[Any]


class _Kind(NamedTuple):
    """What others call a kind of element, and which of our vertices comes where with them."""

    name: str
    vtk: int
    order: tuple[int, ...]


# A wedge of VTK begins with the triangle whose normal points out of it, ours with the same turned round.
_WEDGE = (0, 2, 1, 3, 5, 4)
_KINDS = {
    "line": _Kind("line", 3, (0, 1)),
    "triangle": _Kind("triangle", 5, (0, 1, 2)),
    "quadrilateral": _Kind("quad", 9, (0, 1, 2, 3)),
    "tetrahedron": _Kind("tetra", 10, (0, 1, 2, 3)),
    "pyramid": _Kind("pyramid", 14, (0, 1, 2, 3, 4)),
    "wedge": _Kind("wedge", 13, _WEDGE),
    "hexahedron": _Kind("hexahedron", 12, (0, 1, 2, 3, 4, 5, 6, 7)),
}
# Kinds of second order that Gmsh has as well: the import leaves out their middle nodes.
_SECOND_ORDER = {"line3", "triangle6", "quad8", "quad9", "tetra10", "pyramid13", "pyramid14", "wedge15",
                 "wedge18", "hexahedron20", "hexahedron27"}
_TYPE_SET = "material_type:"  #: begins the names of the cell sets that tell of the kind of material


class Grid(NamedTuple):
    """The elements of a case as the arrays of an unstructured grid of VTK."""

    #: n x 3, the vertices of the case in their order.
    points: _Array
    #: For each element its number of vertices, and these as rows of points, in VTK's order.
    cells: _Array
    #: VTK's number for the kind of each element.
    cell_types: _Array
    #: Arrays over the points, by name.
    point_data: dict[str, _Array]
    #: Arrays over the elements, by name.
    cell_data: dict[str, _Array]


def grid(case: Case, *, attributes: Sequence[str] = ("material_id",)) -> Grid:
    """The elements of a case, of its highest dimension, as arrays of VTK.

    Points and cells stand in the order of `case.mesh.vertices` and of `case.mesh.regions` (or faces,
    where it has no regions), so that a field over these is one over those. Data of both are mesh_id,
    model_id and model_dimension; cells have model_name and attributes too, see `field`.
    """
    elements = _elements(case)
    ids = elements.ids
    sizes = np.zeros(len(ids), dtype=np.int64)
    types = np.zeros(len(ids), dtype=np.uint8)
    blocks = [(np.searchsorted(ids, each.ids), _rows(case, each, kind), kind)
              for kind, each in _by_kind(elements)]
    for places, _, kind in blocks:
        sizes[places] = len(kind.order)
        types[places] = kind.vtk
    begins = np.cumsum(sizes + 1) - sizes - 1
    cells = np.zeros(int((sizes + 1).sum()), dtype=np.int64)
    cells[begins] = sizes
    for places, rows, _ in blocks:
        cells[begins[places, None] + 1 + np.arange(rows.shape[1])] = rows
    cell_data = {**_data(elements), "model_name": _names(case, elements),
                 **{tag: field(case, elements, tag) for tag in attributes}}
    return Grid(case.mesh.vertices.coordinates, cells, types, _data(case.mesh.vertices), cell_data)


def field(case: Case, entities: _core.MeshEntities[Any], tag: str) -> _Array:
    """An attribute of numbers over mesh entities: their own, else that of the model entity they stand on.

    Where neither has it, 0, or NaN among reals. Truth values are 0 and 1.
    """
    values: Any = entities.attribute(tag)
    dimensions, ids = entities.parents
    for dimension in range(4):
        parents = _of_model(case, dimension)
        inherited: Any = parents.attribute(tag)
        on_these = np.flatnonzero((dimensions == dimension) & values.mask)
        if len(on_these) and not inherited.mask.all():
            kind = np.result_type(inherited, *([] if values.mask.all() else [values]))
            values = values.astype(kind)
            values[on_these] = inherited[np.searchsorted(parents.ids, ids[on_these])]
    if values.dtype.kind == "b":
        values = values.astype(np.uint8)
    return np.asarray(values.filled(np.nan if values.dtype.kind == "f" else 0))


def to_vtk(case: Case, *, attributes: Sequence[str] = ("material_id",)) -> Any:
    """The elements as a vtkUnstructuredGrid (Debian's python3-vtk9, or vtk), see `grid`."""
    vtk = _library("vtk", "python3-vtk9, or by pip vtk")
    support = _library("vtk.util.numpy_support", "python3-vtk9, or by pip vtk")
    arrays = grid(case, attributes=attributes)
    points = vtk.vtkPoints()
    points.SetData(support.numpy_to_vtk(arrays.points, deep=True))
    cells = vtk.vtkCellArray()
    cells.ImportLegacyFormat(support.numpy_to_vtkIdTypeArray(arrays.cells, deep=True))
    result = vtk.vtkUnstructuredGrid()
    result.SetPoints(points)
    if len(arrays.cell_types):
        result.SetCells(support.numpy_to_vtk(arrays.cell_types, deep=True), cells)
    _add_data(vtk, support, result.GetPointData(), arrays.point_data)
    _add_data(vtk, support, result.GetCellData(), arrays.cell_data)
    return result


def to_pyvista(case: Case, *, attributes: Sequence[str] = ("material_id",)) -> Any:
    """The elements as a pyvista.UnstructuredGrid (python3-pyvista, from Debian 13 on, or pyvista), see `grid`."""
    pyvista = _library("pyvista", "python3-pyvista, or by pip pyvista")
    arrays = grid(case, attributes=attributes)
    result = pyvista.UnstructuredGrid(arrays.cells, arrays.cell_types, arrays.points)
    result.point_data.update(arrays.point_data)
    result.cell_data.update(arrays.cell_data)
    return result


def to_meshio(case: Case, *, vtk_wedges: bool = True) -> Any:
    """The case as a meshio.Mesh: its elements, and the mesh entities on model faces, edges and vertices.

    The points are `case.mesh.vertices` in their order. Data of points and cells are mesh_id, model_id,
    model_dimension, data of cells material_id; a cell set stands for each name, and one such as
    "material_type:fluid" for each kind of material. meshio passes the vertices of wedges on as they
    are: they have VTK's order, as for .vtu and .vtk; formats such as Gmsh's, Abaqus's and Nastran's
    begin with the other triangle upwards, and need vtk_wedges=False.
    """
    meshio = _library("meshio", "python3-meshio, or by pip meshio")
    vertices = case.mesh.vertices
    blocks: list[tuple[str, _Array]] = []
    views: list[_core.MeshEntities[Any]] = []
    for view in _shown(case):
        for kind, each in _by_kind(view):
            rows = _rows(case, each, kind)
            blocks.append((kind.name, rows if vtk_wedges or kind.order != _WEDGE else rows[:, _WEDGE]))
            views.append(each)
    corners = vertices.select(vertices.ids[vertices.parents[0] == 0])
    if len(corners):
        blocks.append(("vertex", np.searchsorted(vertices.ids, corners.ids)[:, None]))
        views.append(corners)
    data = [{**_data(view), "material_id": field(case, view, "material_id").astype(np.int64)}
            for view in views]
    return meshio.Mesh(
        vertices.coordinates,
        blocks,
        point_data=_data(vertices),
        cell_data={key: [each[key] for each in data] for key in (data[0] if data else ())},
        cell_sets=_sets([_labels(case, view) for view in views]),
    )


def from_meshio(mesh: Any, **options: object) -> Case:
    """A case of a meshio.Mesh, made by the import of the host, see `ovrageo.import_file` for options.

    Cells stand on the model entity that their data tell, model_id or gmsh:geometrical, else on one for
    each combination of cell sets or number in gmsh:physical; what no data tell of, faces between
    regions for instance, the import finds. A model entity has the name of the smallest cell set (or
    group of Gmsh) that has its cells. Wedges may have either order. Mesh entities are numbered anew.
    """
    meshio = _library("meshio", "python3-meshio, or by pip meshio")
    _require_known(mesh)
    entities, sets = _entities_of(mesh), _sets_of(mesh)
    cells = [(block.type, _upright(mesh.points, block.data) if block.type == "wedge" else block.data)
             for block in mesh.cells]
    tags = [each.astype(np.intc) for each in entities]
    written = meshio.Mesh(mesh.points, cells, cell_data={
        "gmsh:physical": [np.zeros_like(each) for each in tags], "gmsh:geometrical": tags})
    with tempfile.TemporaryDirectory(prefix="ovrageo-") as folder:
        path = os.path.join(folder, "mesh.msh")
        meshio.write(path, written, file_format="gmsh22", binary=True)
        with _host.told_as(path, "the mesh"):
            case = import_file(path, **options)  # type: ignore[arg-type]
    _name(case, mesh, entities, sets)
    _give_materials(case, mesh, entities, sets)
    return case


def _library(name: str, package: str) -> Any:
    try:
        return importlib.import_module(name)
    except ImportError as error:
        raise ImportError(f"{name} is needed for this and cannot be imported ({error}): install {package}") from error


def _of_model(case: Case, dimension: int) -> _core.ModelEntities[Any]:
    model = case.model
    return (model.vertices, model.edges, model.faces, model.regions)[dimension]


def _elements(case: Case) -> _core.MeshEntities[Any]:
    mesh = case.mesh
    return next((view for view in (mesh.regions, mesh.faces) if len(view)), mesh.edges)


def _shown(case: Case) -> Iterator[_core.MeshEntities[Any]]:
    """The elements, and of lower dimensions what stands on a model entity of its own dimension."""
    elements = _elements(case)
    yield elements
    for view in (case.mesh.faces, case.mesh.edges):
        if view.dimension < elements.dimension:
            yield view.select(view.ids[view.parents[0] == view.dimension])


def _by_kind(view: _core.MeshEntities[Any]) -> Iterator[tuple[_Kind, _core.MeshEntities[Any]]]:
    for kind, count in view.kinds.items():
        if kind not in _KINDS:
            raise errors.UnsuitableError(f"{count} of the elements are of no kind that others know")
        yield _KINDS[kind], view.of_kind(kind)


def _rows(case: Case, view: _core.MeshEntities[Any], kind: _Kind) -> _Array:
    """The vertices of elements of one kind, as rows of all vertices, in VTK's order."""
    rows: _Array = np.searchsorted(case.mesh.vertices.ids, view.connectivity[:, kind.order])
    return rows


def _data(view: _core.MeshEntities[Any]) -> dict[str, _Array]:
    dimensions, ids = view.parents
    return {"mesh_id": view.ids, "model_id": ids, "model_dimension": dimensions.astype(np.int32)}


def _of_parents(case: Case, view: _core.MeshEntities[Any], what: Any) -> _Array:
    """what(model entity) over mesh entities; an empty text for those on none."""
    dimensions, ids = view.parents
    keys, places = np.unique(dimensions.astype(np.int64) << 32 | ids, return_inverse=True)
    texts = [what(_of_model(case, key >> 32)[key & 0xffffffff]) if key >= 0 else "" for key in keys.tolist()]
    return np.asarray(np.array(texts, dtype=str)[places])


def _names(case: Case, view: _core.MeshEntities[Any]) -> _Array:
    return _of_parents(case, view, lambda entity: entity.name)


def _labels(case: Case, view: _core.MeshEntities[Any]) -> list[_Array]:
    """The names of the sets that mesh entities are in; an empty one is none."""
    types = _of_parents(case, view, lambda entity: entity.attributes.get("material_type", ""))
    return [_names(case, view), np.where(types == "", "", np.char.add(_TYPE_SET, types))]


def _sets(labels: list[list[_Array]]) -> dict[str, list[_Array]]:
    """Cell sets of meshio: for each name the places in each block."""
    names = sorted({str(name) for block in labels for each in block for name in np.unique(each)} - {""})
    return {name: [np.flatnonzero(np.any([each == name for each in block], axis=0)) for block in labels]
            for name in names}


def _add_data(vtk: Any, support: Any, target: Any, data: dict[str, _Array]) -> None:
    for name, values in data.items():
        if values.dtype.kind == "U":
            array = vtk.vtkStringArray()
            for value in values:
                array.InsertNextValue(str(value))
        else:
            array = support.numpy_to_vtk(values, deep=True)
        array.SetName(name)
        target.AddArray(array)


def _require_known(mesh: Any) -> None:
    known = {kind.name for kind in _KINDS.values()} | _SECOND_ORDER | {"vertex"}
    for block in mesh.cells:
        if block.type not in known:
            raise errors.UnsuitableError(f"cells of the kind {block.type} have no place in a case")
        wrong = block.data[(block.data < 0) | (block.data >= len(mesh.points))]
        if len(wrong):
            raise ValueError(f"a cell of the kind {block.type} names point {wrong[0]}, and the mesh has "
                             f"{len(mesh.points)}, from 0 on")


def _dimension(block: Any) -> int:
    """Of a block of meshio, whose second-order kinds have their number of vertices behind the name."""
    name = block.type.rstrip("0123456789")
    return {"vertex": 0, "line": 1, "triangle": 2, "quad": 2, "polygon": 2}.get(name, 3)


def _upright(points: _Array, wedges: _Array) -> _Array:
    """Wedges in our order, from either."""
    corners = np.asarray(points, dtype=float)[wedges]
    normals = np.cross(corners[:, 1] - corners[:, 0], corners[:, 2] - corners[:, 0])
    heights = corners[:, 3:].mean(axis=1) - corners[:, :3].mean(axis=1)
    is_turned = np.einsum("ij,ij->i", normals, heights) < 0
    result: _Array = np.where(is_turned[:, None], wedges[:, _WEDGE], wedges)
    return result


def _sets_of(mesh: Any) -> list[tuple[str, list[_Array]]]:
    """The named sets of a mesh, the largest first, each with a mask for each block."""
    sets = [(name, [_mask(places, len(block.data)) for places, block in zip(places_of, mesh.cells)])
            for name, places_of in mesh.cell_sets.items() if not name.startswith("gmsh:")]
    physical = mesh.cell_data.get("gmsh:physical")
    for name, (tag, dimension) in mesh.field_data.items() if physical else ():
        sets.append((name, [(tags == tag) & (_dimension(block) == dimension)
                            for tags, block in zip(physical, mesh.cells)]))
    return sorted(sets, key=lambda each: -sum(int(mask.sum()) for mask in each[1]))


def _mask(places: Any, count: int) -> _Array:
    mask = np.zeros(count, dtype=bool)
    if places is not None:
        mask[np.asarray(places, dtype=np.int64)] = True
    return mask


def _entities_of(mesh: Any) -> list[_Array]:
    """The model entity of each cell by block; 0 where nothing tells."""
    for key in ("model_id", "gmsh:geometrical"):
        if key in mesh.cell_data:
            return [np.maximum(np.asarray(each), 0) for each in _on_own_dimension(mesh, key)]
    numbers: dict[tuple[int, bytes], int] = {}
    marks = [mask for _, mask in _sets_of(mesh)] + [
        [np.asarray(each) for each in mesh.cell_data[key]]
        for key in ("gmsh:physical",) if key in mesh.cell_data]
    result = []
    for i, block in enumerate(mesh.cells):
        columns = np.stack([mark[i] for mark in marks] or [np.zeros(len(block.data))], axis=1)
        rows, places = np.unique(columns, axis=0, return_inverse=True)
        found = [numbers.setdefault((_dimension(block), row.tobytes()), len(numbers) + 1) if row.any() else 0
                 for row in rows]
        result.append(np.array(found, dtype=np.int64)[places.ravel()])
    return result


def _on_own_dimension(mesh: Any, key: str) -> Iterator[_Array]:
    dimensions = mesh.cell_data.get("model_dimension") if key == "model_id" else None
    for i, (block, ids) in enumerate(zip(mesh.cells, mesh.cell_data[key])):
        yield np.where(np.asarray(dimensions[i]) == _dimension(block), ids, 0) if dimensions else ids


def _firsts(mesh: Any, entities: list[_Array]) -> Iterator[tuple[int, int, int, int]]:
    """Dimension and id of each model entity, with block and place of its first cell."""
    seen = set()
    for i, block in enumerate(mesh.cells):
        ids, places = np.unique(entities[i], return_index=True)
        for id, place in zip(ids.tolist(), places.tolist()):
            if id > 0 and (_dimension(block), id) not in seen:
                seen.add((_dimension(block), id))
                yield _dimension(block), id, i, place


def _name(case: Case, mesh: Any, entities: list[_Array], sets: list[tuple[str, list[_Array]]]) -> None:
    for dimension, id, block, place in _firsts(mesh, entities):
        names = [name for name, masks in sets if masks[block][place] and not name.startswith(_TYPE_SET)]
        if names and id in _of_model(case, dimension).ids:
            _of_model(case, dimension)[id].name = names[-1]


def _give_materials(
    case: Case, mesh: Any, entities: list[_Array], sets: list[tuple[str, list[_Array]]]
) -> None:
    numbers = mesh.cell_data.get("material_id")
    regions = case.model.regions
    for dimension, id, block, place in _firsts(mesh, entities):
        if dimension != 3 or id not in regions.ids:
            continue
        if numbers and numbers[block][place] > 0:
            regions[id].attributes["material_id"] = int(numbers[block][place])
        for name, masks in sets:
            if name.startswith(_TYPE_SET) and masks[block][place]:
                regions[id].attributes["material_type"] = name[len(_TYPE_SET):]
