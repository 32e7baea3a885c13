"""Which nodes of the solver input carry the same temperature, or one that follows from others.

Two kinds of ties are told apart:

- nodes in one place that are one for the heat: the two sides of a face that the preparation has
  doubled, if their contact is perfect, and the pairs of rotor and stator nodes;
- nodes whose temperature is the weighted sum of those of others: periodic and extruded faces.

Each kind of nodes that are one becomes one unknown. A weighted sum takes its node out of the unknowns.
"""

from collections import Counter, defaultdict, deque

import numpy as np
from scipy import sparse
from scipy.sparse.csgraph import connected_components

from elements import LOCAL_FACES
from solver_input import InputError


def places(points):
    """A number for each point, the same for points in exactly the same place."""
    _, number = np.unique(points + 0.0, axis=0, return_inverse=True)
    return number


def face_nodes(blocks):
    """A function that gives the nodes of an element face by the element and its local face number."""
    row_of = {element: (block, row)
              for block in blocks for row, element in enumerate(block.ids.tolist())}

    def nodes(element, local_face):
        block, row = row_of[element]
        return tuple(block.nodes[row, list(LOCAL_FACES[block.code][local_face])].tolist())

    return nodes


def coincident_faces(solver_input, active):
    """Pairs of mesh faces in the same place with one element each: the two sides of a doubled face.

    `active` are the ids of the elements that take part. A pair is two lists of (element, nodes); the
    nodes of the second stand in the order of those of the first. Faces that the extrusion ties are
    left out, also where their meshes happen to match.
    """
    number = places(solver_input.points)
    tied = _extruded_faces(solver_input)
    by_place = defaultdict(dict)
    for element, nodes in _one_sided_faces(solver_input, active):
        if (element, frozenset(nodes)) in tied:
            continue
        by_place[frozenset(number[solver_input.rows(nodes)])][frozenset(nodes)] = (element, nodes)
    return [_in_step(list(sides.values()), solver_input, number)
            for sides in by_place.values() if len(sides) > 1]


def _one_sided_faces(solver_input, active):
    for surface in solver_input.surfaces.values():
        for face in surface.faces:
            elements = [element for element in face.elements if element in active]
            if len(elements) == 1:
                yield elements[0], face.nodes


def _extruded_faces(solver_input):
    nodes = face_nodes(solver_input.elements + solver_input.shell_elements)
    return {(element, frozenset(nodes(element, local_face)))
            for element, local_face, *_ in solver_input.extrusion.faces}


def _in_step(sides, solver_input, number):
    if len(sides) > 2:
        raise InputError(f"elements {', '.join(str(element) for element, _ in sides)} "
                         "have faces in one place, where no more than two can meet")
    (first, first_nodes), (second, second_nodes) = sides
    at = {number[solver_input.row_of[node]]: node for node in second_nodes}
    return (first, first_nodes), (second, [at[number[solver_input.row_of[node]]] for node in first_nodes])


def classes(count, pairs):
    """The class of each of `count` nodes where the two of each pair are one; pairs are rows."""
    first, second = np.array(pairs, dtype=int).reshape(-1, 2).T
    graph = sparse.coo_matrix((np.ones(len(first)), (first, second)), shape=(count, count))
    return connected_components(graph, directed=False)[1]


def slave_records(solver_input):
    """The records that are imposed, of all those in the periodic and extrusion sections.

    The sections tie each side to the other, and imposing both is circular. Of each pair of sides the
    one with more nodes is tied: so no node between those of a coarser partner stays free.
    """
    return periodic_slaves(solver_input.periodic) + _extruded_slaves(solver_input)


def periodic_slaves(periodic):
    """The records of the side with more nodes, and those by which pairs that share nodes hang together."""
    masters, slaves = sorted((periodic.a_records, periodic.b_records), key=len)
    both = {record.node for record in masters} & {record.node for record in slaves}
    chained = [record for record in masters if both.intersection(record.links)]
    return slaves + chained


def _extruded_slaves(solver_input):
    """The two sides are told apart by colouring: a tie leads to the other side, a face stays on its own."""
    records = solver_input.extrusion.records
    colour, part = _colours(records, _extruded_faces(solver_input))
    sizes = Counter((part[record.node], colour[record.node]) for record in records)
    return [record for record in records if _is_larger(sizes, part[record.node], colour[record.node])]


def _is_larger(sizes, part, colour):
    own, other = sizes[part, colour], sizes[part, 1 - colour]
    return own > other or (own == other and colour == 0)


def _colours(records, faces):
    """Side and connected part of each node of the extrusion."""
    neighbours = defaultdict(list)
    for record in records:
        for link in record.links:
            neighbours[record.node].append((link, 1))
            neighbours[link].append((record.node, 1))
    for _, nodes in faces:
        first, *others = sorted(nodes)
        for node in others:
            neighbours[first].append((node, 0))
            neighbours[node].append((first, 0))
    colour, part = {}, {}
    for node in sorted(neighbours):
        if node not in colour:
            _colour_part(node, neighbours, colour, part)
    return colour, part


def _colour_part(start, neighbours, colour, part):
    colour[start], part[start] = 0, start
    queue = deque([start])
    while queue:
        node = queue.popleft()
        for other, step in neighbours[node]:
            if other not in colour:
                colour[other], part[other] = (colour[node] + step) % 2, start
                queue.append(other)


class WeightedTies:
    """Unknowns that are weighted sums of others, each told once, in whatever order and chain."""

    def __init__(self, count):
        self._count = count
        self._sums = {}

    def add(self, slave, masters):
        """Ties an unknown to a sum {unknown: weight}; says nothing new where it is tied already.

        A sum that leads back to the slave itself is solved for it: the axis of a rotation is its own
        image and stays free.
        """
        if slave in self._sums:
            return
        resolved = self._resolve(masters)
        own = resolved.pop(slave, 0.0)
        if 1 - own > 1e-9 and resolved:
            self._sums[slave] = {master: weight / (1 - own) for master, weight in resolved.items()}

    def _resolve(self, masters):
        resolved = defaultdict(float)
        for master, weight in masters.items():
            inner = self._resolve(self._sums[master]) if master in self._sums else {master: 1.0}
            for unknown, part in inner.items():
                resolved[unknown] += weight * part
        return resolved

    def matrix(self):
        """The matrix that takes the unknowns to all: a row of each tied one, unit rows of the others."""
        entries = [(slave, master, weight)
                   for slave, masters in self._sums.items()
                   for master, weight in self._resolve(masters).items()]
        entries += [(i, i, 1.0) for i in range(self._count) if i not in self._sums]
        rows, columns, weights = zip(*entries)
        return sparse.csr_matrix((weights, (rows, columns)), shape=(self._count, self._count))
