"""The program heat.py: its report, its files, and what it says of bad input."""

import json
import os
import subprocess
import sys
import tempfile
import unittest
import unittest.mock
from pathlib import Path

import testing
from testing import PROBLEMS, np

try:
    import results
    from vtkmodules.util.numpy_support import vtk_to_numpy
    from vtkmodules.vtkIOImage import vtkPNGReader
    from vtkmodules.vtkIOXML import vtkXMLUnstructuredGridReader
except ImportError:
    results = None

import tst_HeatPatch

PROGRAM = testing.HERE.parent / "heat.py"


def heat(*arguments):
    """Runs the program."""
    return subprocess.run([sys.executable, PROGRAM, *arguments], capture_output=True, text=True)


def squares(path):
    """The mean colours of a picture in squares of 20 pixels."""
    reader = vtkPNGReader()
    reader.SetFileName(str(path))
    reader.Update()
    columns, rows, _ = reader.GetOutput().GetDimensions()
    pixels = vtk_to_numpy(reader.GetOutput().GetPointData().GetScalars()).reshape(rows, columns, 3)
    whole = pixels[:rows // 20 * 20, :columns // 20 * 20]
    return whole.reshape(rows // 20, 20, columns // 20, 20, 3).mean(axis=(1, 3))


@unittest.skipUnless(testing.NOTHING_SKIPPED or results, "python3-vtk9 is not installed")
class KeptPicture(unittest.TestCase):
    """That of the documentation, of a finer mesh."""

    def test_looks_like_one_that_is_made_now(self):
        solver = testing.conduction.Conduction(testing.case("enclosure"),
                                               testing.problem.read(PROBLEMS / "enclosure.json"))
        with tempfile.TemporaryDirectory() as folder:
            results.write_picture(results.grid(solver, solver.solve()), Path(folder, "made.png"))
            made = squares(Path(folder, "made.png"))
        kept = squares(testing.HERE.parent / "enclosure.png")
        self.assertEqual(made.shape, kept.shape)
        self.assertLess(np.abs(made - kept).mean(), 1.5)
        self.assertGreater(np.abs(made[:, ::-1] - kept).mean(), 3)  # the other way round it looks like another


class Program(unittest.TestCase):
    """On an input of two boxes, of which each test has a copy."""

    @classmethod
    def setUpClass(cls):
        with tempfile.TemporaryDirectory() as name:
            folder = Path(name)
            (folder / "boxes.geo").write_text(tst_HeatPatch.TWO_BOXES, encoding="utf-8")
            testing.imported(folder, folder / "boxes.geo", tst_HeatPatch.FLUID_AND_SOLID)
            testing.written(folder, ("--all",), ())
            cls.text = (folder / "input.txt").read_text(encoding="utf-8")

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.input = self.folder / "input.txt"
        self.input.write_text(self.text, encoding="utf-8")
        self.problem = {"materials": {"1": {"conductivity": 2}, "2": {"conductivity": 5}},
                        "surfaces": {"z=0": {"temperature": 400}, "z=1.2": {"temperature": 300}},
                        "contacts": [{"materials": [1, 2], "conductance": 10}]}

    def run_heat(self, *options):
        (self.folder / "problem.json").write_text(json.dumps(self.problem), encoding="utf-8")
        return heat(self.input, self.folder / "problem.json", *options)

    def assert_refused(self, message):
        self.assert_refuses(self.run_heat(), message)

    def assert_refuses(self, done, message):
        self.assertEqual(done.returncode, 1)
        self.assertEqual(done.stdout, "")
        self.assertIn(message, done.stderr)
        self.assertEqual(len(done.stderr.splitlines()), 1)

    def test_report(self):
        lines = self.run_heat().stdout.splitlines()
        self.assertEqual(lines[0].split(), ["z=0", "204.082", "W"])  # 100 / (0.25 + 0.1 + 0.14)
        self.assertEqual(lines[1].split(), ["z=1.2", "-204.082", "W"])
        self.assertEqual(lines[-1], "temperatures from 300.000 K to 400.000 K")

    @unittest.skipUnless(testing.NOTHING_SKIPPED or results, "python3-vtk9 is not installed")
    def test_vtu(self):
        self.assertEqual(self.run_heat("--vtu", self.folder / "out.vtu").returncode, 0)
        reader = vtkXMLUnstructuredGridReader()
        reader.SetFileName(str(self.folder / "out.vtu"))
        reader.Update()
        grid = reader.GetOutput()
        read = testing.solver_input.read(self.input)
        self.assertEqual(grid.GetNumberOfPoints(), len(read.node_ids))
        self.assertEqual(grid.GetNumberOfCells(), len(read.elements[0].ids))
        flux = vtk_to_numpy(grid.GetCellData().GetArray("heat_flux"))
        self.assertTrue(np.allclose(flux, [0, 0, 100 / 0.49]))
        materials = vtk_to_numpy(grid.GetCellData().GetArray("material"))
        self.assertEqual(set(materials.tolist()), {1, 2})

    @unittest.skipUnless(testing.NOTHING_SKIPPED or results, "python3-vtk9 is not installed")
    def test_folder_that_is_missing(self):
        for option in ("--vtu", "--picture"):
            done = self.run_heat(option, self.folder / "none" / "out")
            self.assertEqual(done.returncode, 1)
            self.assertIn("No such file or directory", done.stderr)
            self.assertEqual(len(done.stderr.splitlines()), 1)

    @unittest.skipUnless(testing.NOTHING_SKIPPED or results, "python3-vtk9 is not installed")
    def test_picture(self):
        self.assertEqual(self.run_heat("--picture", self.folder / "out.png").returncode, 0)
        reader = vtkPNGReader()
        reader.SetFileName(str(self.folder / "out.png"))
        reader.Update()
        image = reader.GetOutput()
        columns, rows, _ = image.GetDimensions()
        pixels = vtk_to_numpy(image.GetPointData().GetScalars()).reshape(rows, columns, 3)
        cut_across_z = pixels[::-1][100:300, 100:300].reshape(-1, 3)
        self.assertEqual(len(np.unique(cut_across_z, axis=0)), 1)  # one temperature
        cut_across_y = pixels[::-1][30:510, 600].astype(int)
        brightness = cut_across_y.sum(axis=1)
        self.assertTrue((np.diff(brightness[:470]) >= -2).all())  # hotter further down, but for rounding
        self.assertGreater(brightness[470], brightness[10] + 300)

    @unittest.skipUnless(testing.NOTHING_SKIPPED or results, "python3-vtk9 is not installed")
    def test_cells_of_all_kinds_turn_outwards(self):
        read = testing.made(tst_HeatPatch.as_msh(*tst_HeatPatch.mixed_mesh()),
                            {"groups": {f"layer_{i}": {"material_type": "solid"} for i in range(4)}},
                            suffix=".msh", prepare=())
        surfaces = testing.given(testing.outer(read), testing.linear(1, 2, 3))
        solver = testing.conduction.Conduction(
            read, testing.problem.Problem(materials={0: 1.0}, surfaces=surfaces))
        grid = results.grid(solver, solver.solve())
        self.assertEqual(grid.GetNumberOfCells(), 90)
        for i in range(grid.GetNumberOfCells()):
            cell = grid.GetCell(i)
            middle = corners(cell).mean(axis=0)
            for number in range(cell.GetNumberOfFaces()):
                face = corners(cell.GetFace(number))
                normal = np.cross(face[1] - face[0], face[2] - face[0])
                self.assertGreater(normal @ (face.mean(axis=0) - middle), 0)

    def test_package_that_is_missing(self):
        for module, option, package in (("scipy", "--vtu", "python3-scipy"), ("vtkmodules", "--vtu", "python3-vtk9"),
                                        ("vtkmodules", "--picture", "python3-vtk9")):
            without = self.folder / f"without-{module}"
            without.mkdir(exist_ok=True)
            (without / f"{module}.py").write_text(f"raise ImportError(\"No module named '{module}'\")\n", encoding="utf-8")
            with unittest.mock.patch.dict(os.environ, PYTHONPATH=str(without)):
                done = self.run_heat(option, self.folder / "out")
            self.assertEqual(done.returncode, 1)
            self.assertRegex(done.stderr, f"^heat: error: No module named '{module}'; install .*{package}\n$")

    def test_unknown_material(self):
        del self.problem["materials"]["2"]
        self.assert_refused("the problem has no material 2")

    def test_unknown_surface(self):
        self.problem["surfaces"]["lid"] = {"temperature": 300}
        self.assert_refused('no surface is "lid"')

    def test_unknown_region(self):
        self.problem["heat"] = {"chip": 1}
        self.assert_refused('no region "chip" has elements to be heated')

    def test_unknown_section(self):
        self.problem["sources"] = {}
        self.assert_refused('"sources" is no section of a problem')

    def test_bad_conditions(self):
        for condition in ({}, {"temprature": 300}, {"temperature": 300, "flux": 1}, {"coefficient": 1}):
            self.problem["surfaces"]["z=0"] = condition
            self.assert_refused('surface "z=0" needs a temperature, a flux, or a coefficient and ambient')

    def test_bad_numbers(self):
        self.problem["surfaces"]["z=0"] = {"temperature": "hot"}
        self.assert_refused('surface "z=0" needs a number as "temperature"')
        self.problem["materials"]["1"] = {"name": "air"}
        self.assert_refused('material 1 needs a number as "conductivity"')

    def test_bad_shells(self):
        self.problem["shells"] = "thick"
        self.assert_refused('shells are "thin" or "resolved", not "thick"')

    def test_bad_json(self):
        for text, message in (
                (b"{ materials", "bad.json:1:3: no JSON: Expecting property name"),
                (b'{"shells":\n"th\xff"}', "bad.json: this is no text, at byte 14, and so no JSON"),
                (b"[1]", "bad.json: a problem must be an object, not [1]"),
                (b'{"materials": 3}', 'bad.json: "materials" must be an object, not 3'),
                (b'{"materials": {"1": 3}}', "bad.json: material 1 must be an object, not 3"),
                (b'{"materials": {"air": {}}}', 'bad.json: "air" is no number of a material'),
                (b'{"surfaces": {"z=0": 300}}', 'bad.json: surface "z=0" must be an object, not 300'),
                (b'{"contacts": {}}', 'bad.json: "contacts" must be a list, not {}'),
                (b'{"contacts": [{"materials": [1]}]}', "bad.json: a contact needs two numbers of materials")):
            (self.folder / "bad.json").write_bytes(text)
            self.assert_refuses(heat(self.input, self.folder / "bad.json"), message)

    def test_nothing_holds_the_temperature(self):
        self.problem["surfaces"] = {}
        self.assert_refused("nothing holds the temperature of node 1")

    def test_bad_plane(self):
        self.problem["surfaces"]["z=up"] = {"temperature": 300}
        self.assert_refused('"z=up" names no place of a plane, as "x=0.5" does')

    def test_damaged_input(self):
        first, second, _, rest = self.text.split("\n", 3)
        self.input.write_text("\n".join([first, second, "3 0 x 0", rest]), encoding="utf-8")
        self.assert_refused("input.txt:3: no line of a solver input: '3 0 x 0'")

    def test_other_input(self):
        self.input.write_text("$MeshFormat\n", encoding="utf-8")
        self.assert_refused("input.txt:1: no line of a solver input: '$MeshFormat'")
        self.input.write_bytes(b"\x00\xff")
        self.assert_refused("input.txt: this is no text, at byte 1, and so no solver input")

    def test_cut_input(self):
        self.input.write_text(self.text[:len(self.text) // 2], encoding="utf-8")
        self.assert_refused("the file ends within a section")

    def test_files_that_cannot_be_read(self):
        for name, reason in (("nowhere.txt", "No such file or directory"), (".", "Is a directory")):
            path = self.folder / name
            self.assert_refuses(heat(path, PROBLEMS / "fan.json"), f"heat: error: {path}: {reason}\n")
            self.assert_refuses(heat(self.input, path), f"heat: error: {path}: {reason}\n")


def corners(cell):
    """The points of a VTK cell."""
    points = cell.GetPoints()
    return np.array([points.GetPoint(i) for i in range(cell.GetNumberOfPoints())])


if __name__ == "__main__":
    testing.main()
