"""What the tests share: cases made by ovrageo, and linear temperatures on them."""

import functools
import json
import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

COARSE = {"carriage": 0.018, "channel": 0.010, "enclosure": 0.010, "fan": 0.025, "sector": 0.008}
SKIPPED = 77  # CTest counts this as skipped
NOTHING_SKIPPED = "OVRA_NOTHING_SKIPPED" in os.environ  # all is installed, Scripts/test has seen to it

HERE = Path(__file__).resolve().parent
ROOT = HERE.parents[2]
CASES = ROOT / "Cases"
PROBLEMS = HERE.parent / "problems"
OVRAGEO = os.environ.get("OVRAGEO") or next(
    map(str, ROOT.glob("build/*/Projects/GeometryTool/ovrageo")), "ovrageo")
sys.path.insert(0, str(HERE.parent))

try:
    import numpy as np
    import scipy  # noqa: F401
except ImportError as error:
    print(f"{error}; install python3-numpy and python3-scipy", file=sys.stderr)
    sys.exit(1 if NOTHING_SKIPPED else SKIPPED)

import conduction  # noqa: E402
import problem  # noqa: E402
import solver_input  # noqa: E402


def ovrageo(*arguments):
    """Runs the tool; what it says is shown where it fails, and where it is without what a test needs."""
    done = subprocess.run([OVRAGEO, "--quiet", *map(str, arguments)], capture_output=True, text=True)
    if "ovrageo was built without" in done.stderr and not NOTHING_SKIPPED:
        raise unittest.SkipTest(done.stderr.strip())
    if done.returncode != 0:
        raise AssertionError(f"ovrageo {' '.join(map(str, arguments))}: {done.stderr}")


def imported(folder, source, attributes, *importing):
    """Imports a geometry or mesh file; `attributes` is the path of a file or what is to be in one."""
    if not isinstance(attributes, Path):
        (folder / "attributes.json").write_text(json.dumps(attributes), encoding="utf-8")
        attributes = folder / "attributes.json"
    ovrageo("import", source, "--attributes", attributes, "-o", folder / "case", *importing)


def written(folder, prepare, writing):
    """The solver input of the case in a folder; without `prepare` that of the case as it was imported."""
    name = "case" + "".join(prepare)
    if not (folder / f"{name}.geo_mesh").exists():
        ovrageo("prepare", folder / "case", "-o", folder / name, *prepare)
    ovrageo("solver-input", folder / name, "-o", folder / "input.txt", *writing)
    return solver_input.read(folder / "input.txt")


def made(script, attributes, *, suffix=".geo", prepare=("--all",), writing=()):
    """The solver input of a script for Gmsh, or of another file given as text."""
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        (folder / f"source{suffix}").write_text(script, encoding="utf-8")
        imported(folder, folder / f"source{suffix}", attributes)
        return written(folder, prepare, writing)


@functools.cache
def case_folder(name):
    """One of the Cases, imported with a coarser mesh than its own; kept as long as the tests run."""
    folder = tempfile.TemporaryDirectory()
    imported(Path(folder.name), CASES / name / f"{name}.geo", CASES / name / f"{name}.json",
             "--mesh-size", COARSE[name])
    return folder


@functools.cache
def case(name, *, prepare=("--all",), writing=()):
    """The solver input of one of the Cases."""
    return written(Path(case_folder(name).name), prepare, writing)


def solve(read, **parts):
    """Solves a problem made of the parts of Problem."""
    return conduction.Conduction(read, problem.Problem(**parts)).solve()


def within(read, low, high):
    """The surfaces whose nodes all lie in a box, as places of a problem."""
    slack = 1e-6 * np.ptp(read.points, axis=0).max()
    inside = ((read.points >= np.array(low) - slack) & (read.points <= np.array(high) + slack)).all(axis=1)
    return [f"#{number}" for number, surface in read.surfaces.items()
            if len(surface.nodes) and inside[read.rows(surface.nodes)].all()]


def outer(read):
    """The surfaces on the box around all nodes: all others have nodes inside of it."""
    low, high = read.points.min(axis=0), read.points.max(axis=0)
    on_box = (np.isclose(read.points, low) | np.isclose(read.points, high)).any(axis=1)
    return [f"#{number}" for number, surface in read.surfaces.items()
            if len(surface.nodes) and on_box[read.rows(surface.nodes)].all()]


def linear(*gradient):
    """A linear temperature, as a function of points."""
    return lambda points: 300 + points @ np.array(gradient, dtype=float)


def uniform(read, conductivity=1.0):
    """The same conductivity for all materials of a case."""
    blocks = read.elements + read.shell_elements
    return {int(material): conductivity for block in blocks for material in block.materials}


def errors(read, solution, exact):
    """The differences from an exact temperature, as parts of its range."""
    used = ~np.isnan(solution.temperatures)
    expected = exact(read.points[used])
    return np.abs(solution.temperatures[used] - expected) / np.ptp(expected)


def given(sides, exact):
    """An exact temperature on some surfaces."""
    return {side: {"temperature": exact} for side in sides}


def error(read, sides, exact, **parts):
    """The largest error where an exact temperature is given on some surfaces, and no heat passes others."""
    solution = solve(read, materials=uniform(read), surfaces=given(sides, exact), **parts)
    return errors(read, solution, exact).max()


def patch_error(read, exact, *, more=(), **parts):
    """The error inside where the temperature is given on the outside, and on `more` surfaces."""
    return error(read, [*outer(read), *more], exact, **parts)


def main():
    """Runs the tests of a file; where all were skipped, CTest is told so."""
    result = unittest.main(exit=False).result
    if not result.wasSuccessful():
        sys.exit(1)
    if result.skipped and len(result.skipped) == result.testsRun:
        sys.exit(SKIPPED)
