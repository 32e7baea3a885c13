"""Linear finite elements: tetrahedra, wedges, pyramids, hexahedra, and their faces.

All are isoparametric: place and temperature within an element are the same weighted sum of those at
its nodes. So a temperature that is linear in space is met exactly, whatever the shape. The pyramid is
a hexahedron whose upper nodes have fallen together; its triangles carry the linear field of the
tetrahedra beside them.
"""

from itertools import product

import numpy as np

from solver_input import InputError

HEXAHEDRON, TETRAHEDRON, WEDGE, PYRAMID = 3, 4, 5, 6

NAMES = {HEXAHEDRON: "hexahedron", TETRAHEDRON: "tetrahedron", WEDGE: "wedge", PYRAMID: "pyramid"}

# The local nodes of each local face, counter-clockwise for somebody outside the element.
LOCAL_FACES = {
    TETRAHEDRON: ((1, 2, 3), (0, 3, 2), (0, 1, 3), (0, 2, 1)),
    PYRAMID: ((3, 2, 1, 0), (0, 1, 4), (1, 2, 4), (2, 3, 4), (3, 0, 4)),
    WEDGE: ((0, 1, 4, 3), (1, 2, 5, 4), (2, 0, 3, 5), (0, 2, 1), (3, 4, 5)),
    HEXAHEDRON: ((0, 4, 7, 3), (1, 2, 6, 5), (0, 1, 5, 4), (2, 3, 7, 6), (0, 3, 2, 1), (4, 5, 6, 7)),
}

_GAUSS = (-1 / np.sqrt(3), 1 / np.sqrt(3))
_SQUARE = ((-1, -1), (1, -1), (1, 1), (-1, 1))


def _tetrahedron(x, y, z):
    return [1 - x - y - z, x, y, z]


def _hexahedron(x, y, z):
    corners = [(a, b, -1) for a, b in _SQUARE] + [(a, b, 1) for a, b in _SQUARE]
    return [(1 + a * x) * (1 + b * y) * (1 + c * z) / 8 for a, b, c in corners]


def _pyramid(x, y, z):
    shape = _hexahedron(x, y, z)
    return shape[:4] + [sum(shape[4:])]


def _wedge(x, y, z):
    triangle = [1 - x - y, x, y]
    return [t * (1 - z) / 2 for t in triangle] + [t * (1 + z) / 2 for t in triangle]


def _triangle(x, y):
    return [1 - x - y, x, y]


def _quadrilateral(x, y):
    return [(1 + a * x) * (1 + b * y) / 4 for a, b in _SQUARE]


_TRIANGLE_POINTS = [((1 / 6, 1 / 6), 1 / 6), ((2 / 3, 1 / 6), 1 / 6), ((1 / 6, 2 / 3), 1 / 6)]
_SQUARE_POINTS = [(point, 1.0) for point in product(_GAUSS, repeat=2)]
_CUBE_POINTS = [(point, 1.0) for point in product(_GAUSS, repeat=3)]
_WEDGE_POINTS = [((*point, z), weight) for point, weight in _TRIANGLE_POINTS for z in _GAUSS]
_TETRAHEDRON_POINTS = [((1 / 4, 1 / 4, 1 / 4), 1 / 6)]

# Shape functions and quadrature, by type code for volumes and by number of nodes for faces.
_VOLUMES = {TETRAHEDRON: (_tetrahedron, _TETRAHEDRON_POINTS), HEXAHEDRON: (_hexahedron, _CUBE_POINTS),
            WEDGE: (_wedge, _WEDGE_POINTS), PYRAMID: (_pyramid, _CUBE_POINTS)}
_FACES = {3: (_triangle, _TRIANGLE_POINTS), 4: (_quadrilateral, _SQUARE_POINTS)}


def _gradient(shape, point):
    """Derivatives of shape functions, which are linear in each coordinate: a difference is exact."""
    rows = []
    for axis in range(len(point)):
        ends = [[1.0 if i == axis and end else 0.0 if i == axis else x for i, x in enumerate(point)]
                for end in (0, 1)]
        rows.append(np.array(shape(*ends[1])) - np.array(shape(*ends[0])))
    return np.array(rows)


def _tables(shape, quadrature):
    """Weights, shape functions and gradients at the points of a quadrature."""
    weights = np.array([weight for _, weight in quadrature])
    values = np.array([shape(*point) for point, _ in quadrature])
    gradients = np.array([_gradient(shape, point) for point, _ in quadrature])
    return weights, values, gradients


def _jacobians(gradients, points):
    return np.einsum("gin,enj->egij", gradients, points)


def _volume_parts(block, points):
    """Shape functions, their gradients in space, and the volume that each quadrature point stands for."""
    weights, values, local = _tables(*_VOLUMES[block.code])
    jacobians = _jacobians(local, points)
    parts = np.linalg.det(jacobians) * weights
    _refuse_inverted(block, parts)
    return values, np.linalg.solve(jacobians, local[None]), parts


def _refuse_inverted(block, parts):
    bad = np.flatnonzero((parts <= 0).any(axis=1))
    if bad.size:
        raise InputError(f"{NAMES[block.code]} {block.ids[bad[0]]} is inverted or flat")


def conductances(block, points, conductivity):
    """The matrices (n, m, m) of the integral of conductivity * grad N_i . grad N_j.

    `points` (n, m, 3) are those of the nodes, `conductivity` (n) that of each element.
    """
    _, gradients, parts = _volume_parts(block, points)
    return np.einsum("e,eg,egin,egim->enm", conductivity, parts, gradients, gradients, optimize=True)


def node_volumes(block, points):
    """The integrals (n, m) of the shape functions: what part of the element each node stands for."""
    values, _, parts = _volume_parts(block, points)
    return parts @ values


def fluxes(block, points, conductivity, temperatures):
    """The mean heat flux (n, 3) of each element from the temperatures (n, m) at its nodes."""
    _, gradients, parts = _volume_parts(block, points)
    integral = np.einsum("eg,egin,en->ei", parts, gradients, temperatures, optimize=True)
    return -conductivity[:, None] * integral / parts.sum(axis=1)[:, None]


def face_masses(points):
    """The matrices (n, m, m) of the integral of N_i * N_j over triangles or quadrilaterals (n, m, 3)."""
    weights, values, local = _tables(*_FACES[points.shape[1]])
    jacobians = _jacobians(local, points)
    areas = np.linalg.norm(np.cross(jacobians[:, :, 0], jacobians[:, :, 1]), axis=2) * weights
    return np.einsum("eg,gn,gm->enm", areas, values, values, optimize=True)
