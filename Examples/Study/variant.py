"""One variant of the study: a chip below a lid, from its measures to its peak temperature.

Dask brings this module to its workers, so that it runs in any process that has ovrageo, NumPy and SciPy.
"""

import dataclasses
import os
import time

import conduction
import problem
import solver_input

import ovrageo

ATTRIBUTES = {
    "groups": {
        "air": {"material_type": "fluid", "material_id": 1},
        "chip": {"material_type": "solid", "material_id": 2},
    }
}
PROBLEM = problem.Problem(
    materials={1: 0.026, 2: 120.0},  # W/(m K)
    heat={"chip": 0.05},  # W
    surfaces={"lid": {"temperature": 293.0}},  # K; nothing passes floor and walls
)


@dataclasses.dataclass(frozen=True)
class Variant:
    """Distance of the lid from the chip, and largest edge of elements, in millimetres."""

    gap: float
    size: float

    @property
    def name(self):
        return f"gap-{exact(self.gap)}-size-{exact(self.size)}"


@dataclasses.dataclass(frozen=True)
class Result:
    """What the table has of a variant: counts, worst element, volumes in mm^3, peak temperature in K."""

    gap: float
    size: float
    vertices: int
    elements: int
    aspect: float
    air: float
    chip: float
    peak: float
    seconds: float


@dataclasses.dataclass(frozen=True)
class Failure:
    """Why there is no result."""

    text: str


class NotSound(Exception):
    """A case that the verification finds errors in."""


def exact(number):
    """The shortest text of a number that no other number has: 1, 0.5, 1.0000001."""
    short = f"{number:g}"
    return short if float(short) == number else repr(number)


def run(variant, script, folder):
    """The result of a variant, or its failure; files of its name are left in the folder.

    script is the text of the geometry for Gmsh, to which the gap is given.
    """
    try:
        return result(variant, script, os.path.join(folder, variant.name))
    except (ovrageo.Error, solver_input.InputError, NotSound) as error:
        return Failure(str(error))


def result(variant, script, name):
    """Imports, prepares, verifies, writes the case and its solver input, and solves."""
    begin = time.monotonic()
    with imported(variant, script, name + ".geo") as case:
        case.prepare()
        require_sound(case)
        case.save(name)
        case.write_solver_input(name + ".gbi")
        return Result(variant.gap, variant.size, **measures(case), peak=peak(name + ".gbi"),
                      seconds=time.monotonic() - begin)


def imported(variant, script, path):
    with open(path, "w", encoding="utf-8") as file:
        file.write(f"gap = {variant.gap / 1000!r};\n{script}")
    return ovrageo.import_file(path, attributes=ATTRIBUTES, mesh_size=variant.size / 1000)


def require_sound(case):
    verification = case.verify()
    if not verification:
        raise NotSound(str(verification))


def measures(case):
    solids = next(each for each in case.info()["quality"] if each["dimension"] == 3)
    volumes = {region.name: region.volume * 1e9 for region in case.model.regions}
    return {"vertices": len(case.mesh.vertices), "elements": len(case.mesh.regions),
            "aspect": solids["aspect"]["largest"]["value"], **volumes}


def peak(path):
    """The highest temperature, by the solver of Examples/HeatConduction."""
    return conduction.Conduction(solver_input.read(path), PROBLEM).solve().temperatures.max()
