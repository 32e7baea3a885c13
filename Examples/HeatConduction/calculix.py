#!/usr/bin/python3
"""The same problem for CalculiX: makes an input deck for ccx of what `ovrageo export` wrote as .inp.

    ovrageo export case -o mesh.inp
    calculix.py mesh.inp problem.json deck.inp
    ccx deck

The mesh is one whole: nodes of solids and fluid are the same where they touch. Export the case as it
was before its faces were doubled.
"""

import re
import subprocess
import sys
from dataclasses import dataclass, field
from pathlib import Path

import numpy as np

import problem
from solver_input import InputError

# The local nodes of the faces of each type, from number 1.
_FACES = {"C3D4": ((0, 1, 2), (0, 3, 1), (1, 3, 2), (2, 3, 0)),
          "C3D6": ((0, 1, 2), (3, 4, 5), (0, 1, 4, 3), (1, 2, 5, 4), (2, 0, 3, 5)),
          "C3D8": ((0, 1, 2, 3), (4, 5, 6, 7), (0, 1, 5, 4), (1, 2, 6, 5), (2, 3, 7, 6), (3, 0, 4, 7))}


@dataclass
class Mesh:
    """What an .inp file has: nodes, elements with their types, and sets of elements by name."""

    points: dict = field(default_factory=dict)  # node: x, y, z
    elements: dict = field(default_factory=dict)  # element: (type, nodes)
    sets: dict = field(default_factory=dict)  # name: elements

    def solids(self, name):
        """The elements of a set that have a volume."""
        return [element for element in self._set(name) if self.elements[element][0] in _FACES]

    def faces(self, name):
        """The nodes of the faces in a set."""
        return [self.elements[element][1] for element in self._set(name)
                if self.elements[element][0].startswith("CPS")]

    def _set(self, name):
        if name not in self.sets:
            raise InputError(f'the mesh has no set "{name}"')
        return self.sets[name]

    def materials(self):
        """The solids of each material: the export has sets such as solid_3, by kind and number."""
        found = {int(match[1]): self.solids(name) for name in self.sets
                 if (match := re.fullmatch(r"[a-z_]+_(\d+)", name))
                 and not re.fullmatch(r"(line|surface|volume)\d+", name)}
        return {number: solids for number, solids in found.items() if solids}


def read_mesh(path):
    """Reads nodes, elements and sets of elements of an .inp file."""
    mesh = Mesh()
    take = None
    for line in Path(path).read_text(encoding="utf-8").splitlines():
        if line.startswith("*"):
            take = _taker(mesh, line)
        elif take:
            take([word.strip() for word in line.split(",") if word.strip()])
    return mesh


def _taker(mesh, keyword_line):
    """What is to be done with the lines behind a keyword."""
    keyword, *options = [word.strip() for word in keyword_line.split(",")]
    values = {key.upper(): value for key, _, value in (option.partition("=") for option in options)}
    if keyword.upper() == "*NODE":
        return lambda words: mesh.points.update({int(words[0]): tuple(map(float, words[1:]))})
    if keyword.upper() == "*ELEMENT":
        return lambda words: mesh.elements.update(
            {int(words[0]): (values["TYPE"], tuple(map(int, words[1:])))})
    if keyword.upper() == "*ELSET":
        elements = mesh.sets.setdefault(values["ELSET"], [])
        return lambda words: elements.extend(map(int, words))
    return None


def deck(mesh, given):
    """The text of the input deck of a Problem, in fields of up to 20 characters, all that ccx reads."""
    lines = ["*NODE, NSET=ALL"]
    lines += [f"{node}, {x:.12e}, {y:.12e}, {z:.12e}" for node, (x, y, z) in mesh.points.items()]
    lines += _parts(mesh, given)
    lines += ["*INITIAL CONDITIONS, TYPE=TEMPERATURE", "ALL, 300", "*STEP", "*HEAT TRANSFER, STEADY STATE"]
    lines += _heat(mesh, given)
    lines += _surfaces(mesh, given)
    return "\n".join(lines + ["*NODE PRINT, NSET=ALL", "NT", "*END STEP", ""])


def _parts(mesh, given):
    lines = []
    for material, solids in mesh.materials().items():
        name = f"MATERIAL{material}"
        for kind in sorted({mesh.elements[element][0] for element in solids}):
            lines.append(f"*ELEMENT, TYPE={kind}, ELSET={name}")
            lines += [", ".join(map(str, [element, *mesh.elements[element][1]]))
                      for element in solids if mesh.elements[element][0] == kind]
        lines += [f"*MATERIAL, NAME={name}", "*CONDUCTIVITY",
                  str(given.conductivities(np.array([material]))[0]),
                  f"*SOLID SECTION, ELSET={name}, MATERIAL={name}"]
    return lines


def _heat(mesh, given):
    lines = []
    for name, heat in given.heat.items():
        solids = mesh.solids(name)
        density = heat / sum(_volume(mesh, element) for element in solids)
        lines += ["*DFLUX"] + [f"{element}, BF, {density:.12e}" for element in solids]
    return lines


def _volume(mesh, element):
    """The volume within the faces of an element, seen from its first node."""
    kind, nodes = mesh.elements[element]
    points = np.array([mesh.points[node] for node in nodes]) - mesh.points[nodes[0]]
    return sum(abs(np.linalg.det(points[[face[0], second, third]])) / 6
               for face in _FACES[kind] for second, third in zip(face[1:], face[2:]))


def _surfaces(mesh, given):
    owner = _owners(mesh)
    lines = []
    for name, condition in given.surfaces.items():
        faces = mesh.faces(name)
        sides = [owner[frozenset(face)] for face in faces]
        if "temperature" in condition:
            nodes = sorted({node for face in faces for node in face})
            lines += ["*BOUNDARY"] + [f"{node}, 11, 11, {condition['temperature']}" for node in nodes]
        elif "coefficient" in condition:
            lines += ["*FILM"] + [f"{element}, F{side}, {condition['ambient']}, {condition['coefficient']}"
                                  for element, side in sides]
        else:
            lines += ["*DFLUX"] + [f"{element}, S{side}, {condition['flux']}" for element, side in sides]
    return lines


def _owners(mesh):
    """An element of each face, and the number of the face in it, by the face's nodes."""
    return {frozenset(nodes[i] for i in face): (element, number)
            for element, (kind, nodes) in mesh.elements.items() if kind in _FACES
            for number, face in enumerate(_FACES[kind], start=1)}


def run(path):
    """Runs ccx on a deck; the temperatures by node."""
    done = subprocess.run(["ccx", path.stem], cwd=path.parent, capture_output=True, text=True)
    if done.returncode != 0 or "*ERROR" in done.stdout:
        raise InputError(f"ccx: {done.stdout[-2000:]}")
    rows = re.findall(r"^\s+(\d+)\s+(\S+)\s*$", path.with_suffix(".dat").read_text(encoding="ascii"), re.M)
    return {int(node): float(temperature) for node, temperature in rows}


def main():
    """Returns the exit code."""
    if len(sys.argv) != 4:
        print("usage: calculix.py MESH.inp PROBLEM.json DECK.inp", file=sys.stderr)
        return 2
    try:
        text = deck(read_mesh(sys.argv[1]), problem.read(sys.argv[2]))
        Path(sys.argv[3]).write_text(text, encoding="ascii")
    except (InputError, OSError) as error:
        print(f"calculix: error: {error}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
