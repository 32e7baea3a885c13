"""Cases that several tests begin with."""

import importlib
import os
from pathlib import Path

import numpy as np
import pytest

import ovrageo

NOTHING_SKIPPED = "OVRA_NOTHING_SKIPPED" in os.environ  # all is installed, Scripts/test has seen to it
CASES = Path(__file__).resolve().parents[2] / "Cases"


def library(name):
    """A library that not every machine has; a test of one that has not is skipped, unless nothing may be."""
    return importlib.import_module(name) if NOTHING_SKIPPED else pytest.importorskip(name)


@pytest.fixture
def tetrahedron():
    """A region of one tetrahedron with its four faces, all of it classified and linked."""
    case = ovrageo.Case()
    region = case.model.add_region("body")
    face = case.model.add_face("skin")
    region.link(face)
    case.mesh.add_vertices([[0, 0, 0], [1, 0, 0], [0, 1, 0], [0, 0, 1]]).classify(1, dimension=3)
    case.mesh.add_elements("tetrahedron", [[1, 2, 3, 4]]).classify(1)
    case.mesh.add_elements("triangle", [[1, 3, 2], [1, 2, 4], [2, 3, 4], [1, 4, 3]]).classify(1)
    return case


@pytest.fixture(scope="session")
def channel_files(tmp_path_factory):
    """The case channel, imported once."""
    name = tmp_path_factory.mktemp("channel") / "channel"
    ovrageo.import_file(
        CASES / "channel/channel.geo", attributes=CASES / "channel/channel.json", output=name
    ).close()
    return name


@pytest.fixture
def channel(channel_files):
    """The case channel, to be changed at will."""
    return ovrageo.open(channel_files)


def grid(count):
    """Points of a grid of count cells a side, and the vertices, from 0, of six tetrahedra a cell."""
    side = count + 1
    points = np.stack(np.meshgrid(*3 * [np.linspace(0, 1, side)], indexing="ij"), -1).reshape(-1, 3)
    i, j, k = np.meshgrid(*3 * [np.arange(count)], indexing="ij")
    corner = ((i * side + j) * side + k).reshape(-1, 1)
    x, y, z = side * side, side, 1
    steps = ((x, x + y), (y, y + z), (z, z + x), (y + x, y), (z + y, z), (x + z, x))  # right-handed
    cells = [np.hstack([corner, corner + a, corner + b, corner + x + y + z]) for a, b in steps]
    return points, np.vstack(cells)


def cube(count):
    """A region of six tetrahedra for each cell of a grid of count cells a side."""
    points, cells = grid(count)
    case = ovrageo.Case()
    case.model.add_region("cube")
    vertices = case.mesh.add_vertices(points)
    vertices.classify(1, dimension=3)
    case.mesh.add_elements("tetrahedron", vertices.ids[cells]).classify(1)
    return case, cells
