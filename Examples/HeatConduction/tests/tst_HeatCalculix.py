"""The enclosure with a heated chip, solved by CalculiX too, on its exported mesh as it was before the split."""

import functools
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

import testing
from testing import PROBLEMS, np

from scipy.spatial import cKDTree

import calculix

WEDGES_CUT = ("--decompose-wedges",)  # CalculiX sums over wedges with fewer points than it takes


@functools.cache
def exported():
    """The text of the exported mesh."""
    testing.case("enclosure", prepare=WEDGES_CUT)
    folder = Path(testing.case_folder("enclosure").name)
    testing.ovrageo("export", folder / f"case{''.join(WEDGES_CUT)}", "-o", folder / "mesh.inp")
    return (folder / "mesh.inp").read_text(encoding="utf-8")


@unittest.skipUnless(testing.NOTHING_SKIPPED or shutil.which("ccx"), "calculix-ccx is not installed")
class Enclosure(unittest.TestCase):
    """The two meshes have the same tetrahedra; ours has doubled faces between solids and air."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        (self.folder / "mesh.inp").write_text(exported(), encoding="utf-8")
        self.problem = testing.problem.read(PROBLEMS / "enclosure.json")

    def theirs(self):
        """Points and their temperatures by CalculiX."""
        mesh = calculix.read_mesh(self.folder / "mesh.inp")
        (self.folder / "deck.inp").write_text(calculix.deck(mesh, self.problem), encoding="ascii")
        found = calculix.run(self.folder / "deck.inp")
        return np.array([mesh.points[node] for node in found]), np.array(list(found.values()))

    def difference(self):
        """The largest difference of all nodes, as a part of the largest rise of temperature."""
        points, temperatures = self.theirs()
        read = testing.case("enclosure")
        ours = testing.conduction.Conduction(read, self.problem).solve().temperatures
        self.assertGreater(len(ours), len(points))
        distance, nearest = cKDTree(points).query(read.points)
        self.assertLess(distance.max(), 1e-9)
        return np.abs(ours - temperatures[nearest]).max() / (temperatures.max() - 293)

    def test_heated_chip(self):
        """CalculiX cools a face by the temperature of its middle, where it varies within the face."""
        self.assertLess(self.difference(), 0.01)

    def test_heated_chip_with_given_temperatures_only(self):
        self.problem.surfaces["board_bottom"] = {"temperature": 293}
        self.assertLess(self.difference(), 1e-4)  # CalculiX prints seven digits

    def test_flux_on_a_surface(self):
        self.problem.surfaces["board_bottom"] = {"temperature": 293}
        self.problem.heat = {}
        self.problem.surfaces["thermal_joint"] = {"flux": 2000.0}
        self.assertLess(self.difference(), 1e-4)

    def test_program(self):
        done = subprocess.run([sys.executable, calculix.__file__, self.folder / "mesh.inp",
                               PROBLEMS / "enclosure.json", self.folder / "deck.inp"])
        self.assertEqual(done.returncode, 0)
        expected = calculix.deck(calculix.read_mesh(self.folder / "mesh.inp"), self.problem)
        self.assertEqual((self.folder / "deck.inp").read_text(encoding="ascii"), expected)


if __name__ == "__main__":
    testing.main()
