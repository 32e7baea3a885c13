"""Reads the text that `ovrageo solver-input` writes, in its plain and in its labelled form.

Nothing is interpreted here: a field of SolverInput holds what one section says, by the ids of the
file. The sections must all be there, in the order of the file.
"""

from collections import defaultdict
from dataclasses import dataclass, field

import numpy as np


class InputError(Exception):
    """What is wrong, in words for whoever runs the program."""


@dataclass
class ElementBlock:
    """The elements of one type code: row i of each array is one element."""

    code: int
    ids: np.ndarray
    materials: np.ndarray
    regions: np.ndarray
    nodes: np.ndarray

    def select(self, rows):
        """The block of some of the elements only."""
        return ElementBlock(
            self.code, self.ids[rows], self.materials[rows], self.regions[rows], self.nodes[rows])


@dataclass
class Region:
    """A part: a model region with the ids of the faces that bound it."""

    name: str
    faces: list


@dataclass
class MeshFace:
    """A line of surface connectivity; 0 stands for no element, far nodes are those across a shell."""

    elements: tuple
    nodes: tuple
    far_element: int = 0
    far_nodes: tuple = ()


@dataclass
class Surface:
    """A model face with its mesh."""

    name: str
    region: int
    nodes: np.ndarray
    faces: list


@dataclass
class ShellLinks:
    """The nodes of a shell's original face, each with its partner on the other face."""

    twin: int
    pairs: np.ndarray


@dataclass
class Record:
    """A tie: the value at `node` is the weighted sum of those at `links`."""

    node: int
    links: list
    weights: list
    status: int = 0


@dataclass
class Transform:
    """What takes side A of the periodic faces to side B; a translation that is not 0 goes first."""

    translation: np.ndarray
    origin: np.ndarray
    axes: np.ndarray
    matrix: np.ndarray

    def apply(self, points):
        """Takes points of side A, one a row, to side B."""
        if self.translation.any():
            return points + self.translation
        turn = self.axes.T @ self.matrix @ self.axes
        return (points - self.origin) @ turn.T + self.origin


@dataclass
class Periodic:
    """The records and element faces (element, local face) of both sides."""

    a_records: list
    b_records: list
    a_faces: list
    b_faces: list
    transform: Transform


@dataclass
class Extrusion:
    """The records of both faces of all pairs in one list; element faces with their flags."""

    records: list
    faces: list


@dataclass
class Moving:
    """Pairs of (id in the old region, id in the replica) of elements and of nodes."""

    materials: list
    elements: list
    nodes: list


@dataclass
class Rotating:
    """Pairs of (rotor node, stator node), and the element faces of both sides of one device."""

    pairs: list
    rotor_faces: list
    stator_faces: list


@dataclass
class SolverInput:
    """All sections of one file."""

    node_ids: np.ndarray
    points: np.ndarray
    elements: list
    regions: dict
    surfaces: dict
    shell_elements: list
    shell_regions: dict  # region id: (material, original face)
    shell_links: dict  # original face: ShellLinks
    periodic: Periodic
    extrusion: Extrusion
    moving: Moving
    rotating: list
    row_of: dict = field(init=False, repr=False)

    def __post_init__(self):
        self.row_of = {node: row for row, node in enumerate(self.node_ids.tolist())}

    def rows(self, nodes):
        """The rows of nodes in `points`."""
        return np.array([self.row_of[node] for node in nodes], dtype=int)


class Lines:
    """The lines of a file, taken one behind the other."""

    def __init__(self, text):
        self._lines = text.split("\n")
        self._next = 0

    def take(self):
        """The next line as it is."""
        if self._next >= len(self._lines):
            raise InputError("the file ends within a section")
        self._next += 1
        return self._lines[self._next - 1]

    def peek(self):
        """The line that take() would give."""
        return self._lines[self._next] if self._next < len(self._lines) else ""

    def ints(self):
        """The next line as integers."""
        return [int(word) for word in self.take().split()]

    def reals(self):
        """The next line as reals."""
        return [float(word) for word in self.take().split()]

    def count(self):
        """The next line as the one number that stands in it."""
        (number,) = self.ints()
        return number

    def until(self, end):
        """The lines up to one that is `end`, which is taken too."""
        while (line := self.take()) != end:
            yield line

    def id_list(self, count):
        """A list of ids, which goes over as many lines as it needs."""
        ids = []
        while len(ids) < count:
            ids += self.ints()
        return ids

    def int_rows(self):
        """A count, and so many lines of integers."""
        return [tuple(self.ints()) for _ in range(self.count())]

    def label(self, expected):
        """Takes a line such as "--- nPeriodic ---"."""
        line = self.take()
        if line != f"--- {expected} ---":
            raise InputError(f'"--- {expected} ---" is expected, not "{line}"')

    def where(self):
        """The number of the line that was taken last."""
        return self._next

    def last(self):
        """That line."""
        return self._lines[self._next - 1]


def read(path):
    """Reads a file; raises InputError with the number of the line that does not fit."""
    try:
        with open(path, encoding="utf-8") as stream:
            lines = Lines(stream.read())
    except UnicodeDecodeError as error:
        raise InputError(f"{path}: this is no text, at byte {error.start}, and so no solver input") from error
    try:
        return _read_sections(lines)
    except InputError as error:
        raise InputError(f"{path}:{lines.where()}: {error}") from error
    except (ValueError, IndexError) as error:
        raise InputError(f"{path}:{lines.where()}: no line of a solver input: {lines.last()[:60]!r}") from error


def _read_sections(lines):
    node_ids, points = _read_nodes(lines)
    sections = [node_ids, points, _read_elements(lines), _read_regions(lines), _read_surfaces(lines),
                _read_elements(lines), _read_shell_regions(lines), _read_shell_links(lines)]
    labelled = lines.peek().startswith("---")
    topics = _LABELLED_TOPICS if labelled else _PLAIN_TOPICS
    return SolverInput(*sections, *(read_topic(lines) for read_topic in topics))


def _read_nodes(lines):
    ids, points = [], []
    for line in lines.until("-1"):
        number, x, y, z = line.split()
        ids.append(int(number))
        points.append((float(x), float(y), float(z)))
    return np.array(ids, dtype=int), np.array(points).reshape(-1, 3)


def _read_elements(lines):
    """Both sections of elements have the same columns: id, code, node count, material, region, flag."""
    by_code = defaultdict(list)
    for line in lines.until("-1"):
        row = [int(word) for word in line.split()]
        by_code[row[1]].append(row)
    return [_element_block(code, np.array(rows)) for code, rows in sorted(by_code.items())]


def _element_block(code, table):
    return ElementBlock(code, table[:, 0], table[:, 3], table[:, 4], table[:, 6:])


def _read_regions(lines):
    regions = {}
    for line in lines.until("-1"):
        region, count, name = line.split(" ", 2)
        lines.reals()  # the centroid
        regions[int(region)] = Region(name, lines.id_list(int(count)))
    return regions


def _read_surfaces(lines):
    surfaces = {}
    for line in lines.until("-1"):
        surface, region, face_count, node_count, name = line.split(" ", 4)
        lines.reals()  # the centroid and the normal
        nodes = np.array(lines.id_list(int(node_count)), dtype=int)
        faces = [_mesh_face(lines.ints()) for _ in range(int(face_count))]
        surfaces[int(surface)] = Surface(name, int(region), nodes, faces)
    return surfaces


def _mesh_face(fields):
    """Either "element, nodes, element" or "element, nodes, -element, as many nodes"."""
    negative = next((i for i, value in enumerate(fields) if value < 0), None)
    if negative is None:
        return MeshFace((fields[0], fields[-1]), tuple(fields[1:-1]))
    return MeshFace((fields[0], 0), tuple(fields[1:negative]), -fields[negative], tuple(fields[negative + 1:]))


def _read_shell_regions(lines):
    rows = ([int(word) for word in line.split()] for line in lines.until("-1"))
    return {region: (material, face) for region, material, face in rows}


def _read_shell_links(lines):
    links = {}
    for line in lines.until("-1 -1 -1"):
        face, twin, count = (int(word) for word in line.split())
        pairs = np.array([lines.ints() for _ in range(count)], dtype=int).reshape(-1, 2)
        links[face] = ShellLinks(twin, pairs)
    return links


def _record(line, ints_ahead):
    """A line "node, [status,] link count, links, weights"; `ints_ahead` stand ahead of the links."""
    words = line.split()
    ahead = [int(word) for word in words[:ints_ahead]]
    count = ahead[-1]
    links = [int(word) for word in words[ints_ahead:ints_ahead + count]]
    weights = [float(word) for word in words[ints_ahead + count:]]
    if len(weights) != count:
        raise InputError(f"node {ahead[0]} has {len(weights)} weights for {count} links")
    return Record(ahead[0], links, weights, ahead[1] if ints_ahead == 3 else 0)


def _read_records(lines, ints_ahead):
    return [_record(lines.take(), ints_ahead) for _ in range(lines.count())]


def _read_transform(lines):
    translation, origin, axes, matrix = (np.array(lines.reals()) for _ in range(4))
    return Transform(translation, origin, axes.reshape(3, 3), matrix.reshape(3, 3))


def _read_periodic(lines):
    a_records = _read_records(lines, 3)
    b_records = _read_records(lines, 3)
    return Periodic(a_records, b_records, lines.int_rows(), lines.int_rows(), _read_transform(lines))


def _read_extrusion(lines):
    return Extrusion(_read_records(lines, 2), lines.int_rows())


def _read_moving(lines):
    materials = [lines.count() for _ in range(lines.count())]
    if not materials:
        return Moving([], [], [])
    return Moving(materials, lines.int_rows(), lines.int_rows())


def _read_rotating(lines):
    regions = []
    for _ in range(lines.ints()[0]):
        lines.ints()  # the region and its material
        regions.append(Rotating(lines.int_rows(), lines.int_rows(), lines.int_rows()))
    return regions


def _labelled(lines, label, read_block):
    lines.label(label)
    return read_block(lines)


def _read_labelled_periodic(lines):
    _labelled(lines, "nPeriodic", Lines.count)
    status = dict(_labelled(lines, "node_per_status", Lines.int_rows))
    a_faces, b_faces = (_labelled(lines, f"{side}FaceList", Lines.int_rows) for side in "AB")
    for side in "AB":
        _labelled(lines, f"{side}NodeList", lambda block: block.id_list(block.count()))
    for side in "AB":
        _labelled(lines, f"nMax{side}Nabors", Lines.count)
    a_records, b_records = (_read_labelled_links(lines, side, status) for side in "AB")
    _labelled(lines, "Transform", Lines.count)
    return Periodic(a_records, b_records, a_faces, b_faces, _read_transform(lines))


def _read_labelled_links(lines, side, status):
    lines.label(f"{side}LinksCon and {side}LinksWht")
    records = _read_records(lines, 2)
    for record in records:
        record.status = status[record.node]
    return records


def _read_labelled_extrusion(lines):
    count = lines.count()
    lines.label("i_extrusion")
    stencils = [lines.take() for _ in range(count)]
    lines.label("f_extrusion")
    records = [_record(f"{stencil} {lines.take()}", 2) for stencil in stencils]
    faces = _labelled(lines, "EFaceList", Lines.int_rows)
    return Extrusion(records, faces)


def _read_labelled_moving(lines):
    lines.label("nReplicate")
    materials = [lines.count() for _ in range(lines.count())]
    elements = _labelled(lines, "RepElems", Lines.int_rows)
    return Moving(materials, elements, _labelled(lines, "RepNodes", Lines.int_rows))


def _read_labelled_rotating(lines):
    count = _labelled(lines, "nRotSystems", Lines.count)
    blocks = [_read_indexed(lines, label, count)
              for label in ("RotatingNodeList", "RotorFaceList", "StatorFaceList")]
    return [Rotating(*lists) for lists in zip(*blocks)]


def _read_indexed(lines, label, count):
    lines.label(label)
    return [_labelled(lines, str(index), Lines.int_rows) for index in range(count)]


_PLAIN_TOPICS = (_read_periodic, _read_extrusion, _read_moving, _read_rotating)
_LABELLED_TOPICS = (_read_labelled_periodic, _read_labelled_extrusion, _read_labelled_moving,
                    _read_labelled_rotating)
