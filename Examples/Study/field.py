#!/usr/bin/python3
"""Computes fields over the vertices of a case with NumPy, and writes them for ParaView.

sizes.vtu has the size of the elements around each vertex, as the attribute mesh_size; distance.vtu the
distance of each vertex from a surface, for which no attribute is meant.
"""

import argparse
import sys

try:
    import numpy as np
    import scipy.spatial
    import vtk
    from vtk.util.numpy_support import numpy_to_vtk
except ImportError as error:
    sys.exit(f"field: error: {error}; install python3-numpy, python3-scipy and python3-vtk9")

import ovrageo


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("case", help="a case, such as study/gap-1-size-2")
    parser.add_argument("surface", help="name of the model faces to measure the distance from")
    arguments = parser.parse_args()
    with ovrageo.open(arguments.case) as case:
        case.mesh.vertices.set_attribute("mesh_size", sizes(case))
        case.export("sizes.vtu")
        write("distance.vtu", case, distance=distances(case, arguments.surface))


def sizes(case):
    """For each vertex the mean size of its elements: the diameter that their vertices suggest."""
    vertices, regions = case.mesh.vertices, case.mesh.regions
    points, ids = vertices.coordinates, vertices.ids
    sums, counts = np.zeros(len(ids)), np.zeros(len(ids))
    for kind in regions.kinds:
        rows = np.searchsorted(ids, regions.of_kind(kind).connectivity)
        corners = points[rows]
        from_middle = np.linalg.norm(corners - corners.mean(axis=1, keepdims=True), axis=2)
        np.add.at(sums, rows, 2 * from_middle.mean(axis=1, keepdims=True))
        np.add.at(counts, rows, 1)
    return sums / np.maximum(counts, 1)


def distances(case, name):
    """For each vertex the distance to the nearest vertex on the model faces of a name."""
    faces, vertices = case.mesh.faces, case.mesh.vertices
    named = [face.id for face in case.model.faces if face.name == name]
    dimensions, parents = faces.parents
    on_named = faces.select(faces.ids[(dimensions == 2) & np.isin(parents, named)])
    if len(on_named) == 0:
        sys.exit(f'field: error: no mesh faces are on "{name}"')
    rows = [np.searchsorted(vertices.ids, np.unique(on_named.of_kind(kind).connectivity))
            for kind in on_named.kinds]
    points = vertices.coordinates
    return scipy.spatial.cKDTree(points[np.concatenate(rows)]).query(points)[0]


def write(path, case, **fields):
    """Writes the elements with fields over all vertices."""
    grid = ovrageo.bridges.to_vtk(case)
    for name, values in fields.items():
        array = numpy_to_vtk(values, deep=True)
        array.SetName(name)
        grid.GetPointData().AddArray(array)
    writer = vtk.vtkXMLUnstructuredGridWriter()
    writer.SetFileName(path)
    writer.SetInputData(grid)
    if not writer.Write():
        sys.exit(f"field: error: cannot write {path}")


if __name__ == "__main__":
    main()
