"""The enclosure with a heated chip, solved by CalculiX too, on the case as it was before the split."""

import shutil
import tempfile
import unittest

import testing
from testing import PROBLEMS, np

import calculix

WEDGES_CUT = ("--decompose-wedges",)  # CalculiX sums over wedges with fewer points than it takes


@unittest.skipUnless(shutil.which("ccx"), "calculix-ccx is not installed")
class Enclosure(unittest.TestCase):
    """The two meshes have the same tetrahedra; ours has doubled faces between solids and air."""

    def difference(self, problem):
        """The largest difference of all nodes, as a part of the largest rise of temperature."""
        mesh, materials = self.mesh()
        with tempfile.TemporaryDirectory() as folder:
            found = calculix.run(folder, calculix.deck(mesh, problem, materials))
        theirs = {tuple(mesh.points[node]): temperature for node, temperature in found.items()}
        read = testing.case("enclosure")
        ours = testing.conduction.Conduction(read, problem).solve().temperatures
        expected = np.array([theirs[tuple(point)] for point in read.points.tolist()])
        self.assertGreater(len(ours), len(theirs))
        return np.abs(ours - expected).max() / (expected.max() - 293)

    @staticmethod
    def mesh():
        whole = testing.case("enclosure", prepare=WEDGES_CUT)
        materials = {whole.regions[region].name: material for block in whole.elements
                     for region, material in zip(block.regions.tolist(), block.materials.tolist())}
        return calculix.mesh_of(whole), materials

    def test_heated_chip(self):
        """CalculiX cools a face by the temperature of its middle, where it varies within the face."""
        self.assertLess(self.difference(testing.problem.read(PROBLEMS / "enclosure.json")), 0.01)

    def test_heated_chip_with_given_temperatures_only(self):
        problem = testing.problem.read(PROBLEMS / "enclosure.json")
        problem.surfaces["board_bottom"] = {"temperature": 293}
        self.assertLess(self.difference(problem), 1e-4)  # CalculiX prints seven digits


if __name__ == "__main__":
    testing.main()
