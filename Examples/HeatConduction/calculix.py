"""The same problem for CalculiX: writes its input deck for a mesh, runs it, and reads temperatures.

CalculiX knows linear tetrahedra, wedges and hexahedra. Its mesh is one whole: nodes of solids and fluid
are the same where they touch. Take the case as it was before the preparation.
"""

import re
import subprocess
from collections import defaultdict
from dataclasses import dataclass, field
from pathlib import Path

import numpy as np

from solver_input import InputError

# CalculiX's name of each kind by its number of nodes, and the local nodes of its faces from number 1.
_KINDS = {4: "C3D4", 6: "C3D6", 8: "C3D8"}
_FACES = {4: ((0, 1, 2), (0, 3, 1), (1, 3, 2), (2, 3, 0)),
          6: ((0, 1, 2), (3, 4, 5), (0, 1, 4, 3), (1, 2, 5, 4), (2, 0, 3, 5)),
          8: ((0, 1, 2, 3), (4, 5, 6, 7), (0, 1, 5, 4), (1, 2, 6, 5), (2, 3, 7, 6), (3, 0, 4, 7))}


@dataclass
class Mesh:
    """Nodes by id, elements by id, and what goes by a name: elements of parts, faces of surfaces."""

    points: dict
    elements: dict  # id: nodes
    parts: dict = field(default_factory=dict)  # name: ids of elements
    surfaces: dict = field(default_factory=dict)  # name: faces as tuples of nodes


def mesh_of(solver_input):
    """The mesh of a solver input that was written without preparation."""
    mesh = Mesh(dict(zip(solver_input.node_ids.tolist(), solver_input.points.tolist())), {})
    parts = defaultdict(list)
    for block in solver_input.elements:
        mesh.elements.update(zip(block.ids.tolist(), block.nodes.tolist()))
        for element, region in zip(block.ids.tolist(), block.regions.tolist()):
            parts[solver_input.regions[region].name].append(element)
    mesh.parts = dict(parts)
    surfaces = defaultdict(list)
    for surface in solver_input.surfaces.values():
        surfaces[surface.name] += [face.nodes for face in surface.faces]
    mesh.surfaces = dict(surfaces)
    return mesh


def deck(mesh, problem, materials):
    """The text of the input deck, in fields of up to 20 characters, all that CalculiX reads.

    `materials` is the number of the material of each part.
    """
    lines = ["*NODE, NSET=ALL"]
    lines += [f"{node}, {x:.12e}, {y:.12e}, {z:.12e}" for node, (x, y, z) in mesh.points.items()]
    for number, (name, elements) in enumerate(mesh.parts.items()):
        lines += _part(mesh, f"PART{number}", elements, problem.materials[materials[name]])
    lines += ["*INITIAL CONDITIONS, TYPE=TEMPERATURE", "ALL, 300", "*STEP", "*HEAT TRANSFER, STEADY STATE"]
    lines += _heat(mesh, problem)
    lines += _surfaces(mesh, problem)
    lines += ["*NODE PRINT, NSET=ALL", "NT", "*END STEP", ""]
    return "\n".join(lines)


def _part(mesh, name, elements, conductivity):
    lines = []
    for count in sorted({len(mesh.elements[element]) for element in elements}):
        lines.append(f"*ELEMENT, TYPE={_KINDS[count]}, ELSET={name}")
        lines += [", ".join(map(str, [element, *mesh.elements[element]]))
                  for element in elements if len(mesh.elements[element]) == count]
    return lines + [f"*MATERIAL, NAME={name}", "*CONDUCTIVITY", repr(float(conductivity)),
                    f"*SOLID SECTION, ELSET={name}, MATERIAL={name}"]


def _heat(mesh, problem):
    lines = []
    for name, heat in problem.heat.items():
        volume = sum(_volume(mesh, element) for element in mesh.parts[name])
        lines += ["*DFLUX", f"PART{list(mesh.parts).index(name)}, BF, {heat / volume:.12e}"]
    return lines


def _volume(mesh, element):
    """The volume within the faces of an element, seen from its first node."""
    nodes = mesh.elements[element]
    points = np.array([mesh.points[node] for node in nodes]) - mesh.points[nodes[0]]
    volume = 0.0
    for face in _FACES[len(nodes)]:
        for second, third in zip(face[1:], face[2:]):
            volume += abs(np.linalg.det(points[[face[0], second, third]])) / 6
    return volume


def _surfaces(mesh, problem):
    owner = _owners(mesh)
    lines = []
    for name, condition in problem.surfaces.items():
        faces = mesh.surfaces[name]
        if "temperature" in condition:
            nodes = sorted({node for face in faces for node in face})
            lines += ["*BOUNDARY"] + [f"{node}, 11, 11, {condition['temperature']}" for node in nodes]
        elif "coefficient" in condition:
            lines += ["*FILM"] + [f"{element}, F{number}, {condition['ambient']}, {condition['coefficient']}"
                                  for element, number in (owner[frozenset(face)] for face in faces)]
        else:
            lines += ["*DFLUX"] + [f"{element}, S{number}, {condition['flux']}"
                                   for element, number in (owner[frozenset(face)] for face in faces)]
    return lines


def _owners(mesh):
    """An element of each face, and the number of the face in it, by the face's nodes."""
    return {frozenset(nodes[i] for i in face): (element, number)
            for element, nodes in mesh.elements.items()
            for number, face in enumerate(_FACES[len(nodes)], start=1)}


def run(folder, text):
    """Runs ccx on a deck in a folder; the temperatures by node."""
    folder = Path(folder)
    (folder / "deck.inp").write_text(text, encoding="ascii")
    done = subprocess.run(["ccx", "deck"], cwd=folder, capture_output=True, text=True)
    if done.returncode != 0 or "*ERROR" in done.stdout:
        raise InputError(f"ccx: {done.stdout[-2000:]}")
    rows = re.findall(r"^\s+(\d+)\s+(\S+)\s*$", (folder / "deck.dat").read_text(encoding="ascii"), re.M)
    return {int(node): float(temperature) for node, temperature in rows}
