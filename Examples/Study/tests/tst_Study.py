"""Runs the study in processes of this machine, and on a cluster that knows nothing of it."""

import csv
import json
import os
import re
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

STUDY = Path(__file__).resolve().parents[1]
README = (STUDY / "README.md").read_text(encoding="utf-8")
SKIPPED = 77  # CTest counts this as skipped
NOTHING_SKIPPED = "OVRA_NOTHING_SKIPPED" in os.environ  # all is installed, Scripts/test has seen to it

try:
    import distributed  # noqa: F401
    import matplotlib  # noqa: F401
    import numpy as np
    import scipy  # noqa: F401
    import vtk
    from vtk.util.numpy_support import vtk_to_numpy
except ImportError as error:
    print(f"{error}; install python3-distributed, python3-matplotlib, python3-scipy and python3-vtk9")
    sys.exit(1 if NOTHING_SKIPPED else SKIPPED)


def study(folder, *arguments):
    """Runs the study, gives its exit code and what it prints."""
    done = subprocess.run([sys.executable, "-B", STUDY / "study.py", "--output", folder, *arguments],
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    return done.returncode, done.stdout


def table(folder):
    with open(folder / "table.csv", newline="", encoding="utf-8") as file:
        return list(csv.DictReader(file))


def point_data(path):
    """Points and the arrays over them."""
    reader = vtk.vtkXMLUnstructuredGridReader()
    reader.SetFileName(str(path))
    reader.Update()
    data = reader.GetOutput().GetPointData()
    return vtk_to_numpy(reader.GetOutput().GetPoints().GetData()), {
        data.GetArrayName(i): vtk_to_numpy(data.GetArray(i)) for i in range(data.GetNumberOfArrays())}


def squares(path):
    """The mean colours of a picture in squares of 20 pixels."""
    reader = vtk.vtkPNGReader()
    reader.SetFileName(str(path))
    reader.Update()
    columns, rows, _ = reader.GetOutput().GetDimensions()
    pixels = vtk_to_numpy(reader.GetOutput().GetPointData().GetScalars()).reshape(rows, columns, -1)[:, :, :3]
    whole = pixels[:rows // 20 * 20, :columns // 20 * 20]
    return whole.reshape(rows // 20, 20, columns // 20, 20, 3).mean(axis=(1, 3))


class Cluster:
    """A scheduler and a worker, which run elsewhere than the study and without its modules."""

    def __init__(self, folder):
        self.folder = folder

    def __enter__(self):
        file = self.folder / "scheduler.json"
        run = [sys.executable, "-B", "-m"]
        quiet = {"cwd": self.folder, "stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
        self.processes = [
            subprocess.Popen([*run, "distributed.cli.dask_scheduler", "--scheduler-file", file, "--port", "0",
                              "--host", "127.0.0.1", "--no-dashboard"], **quiet),
            subprocess.Popen([*run, "distributed.cli.dask_worker", "--scheduler-file", file, "--nthreads", "1",
                              "--no-dashboard", "--no-nanny"], **quiet)]
        while not file.exists() or not file.read_text():
            if self.processes[0].poll() is not None:
                raise AssertionError("the scheduler ended")
            time.sleep(0.1)
        return json.loads(file.read_text())["address"]

    def __exit__(self, *exception):
        for process in reversed(self.processes):
            process.terminate()
            process.wait()


class TestStudy(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scope = tempfile.TemporaryDirectory()
        cls.folder = Path(cls.scope.name)
        cls.code, cls.said = study(
            cls.folder / "here", "--workers", "1", "--gaps", "0.5", "1", "2", "4", "-1", "1.0")  # 1 is there twice

    @classmethod
    def tearDownClass(cls):
        cls.scope.cleanup()

    def test_a_variant_that_fails_is_told_of_and_the_others_go_on(self):
        self.assertEqual(self.code, 1, self.said)
        self.assertRegex(self.said, r"gap--1-size-2: .*gap--1-size-2.geo: a gap of -0.001 m leaves no air")
        self.assertEqual([row["gap/mm"] for row in table(self.folder / "here")],
                         ["0.5", "0.5", "1", "1", "2", "2", "4", "4"])
        self.assertEqual(len(re.findall(r"^\[\d+/10\] ", self.said, re.MULTILINE)), 10)  # each once

    def test_readme_shows_such_a_study(self):
        """Counts hang on the release of Gmsh, and seconds on the machine."""
        shown = README.split("study.py --gaps 0.5 1 2 4 -1\n")[1].split("```")[0].splitlines()
        said = {line.split("] ")[1].replace(str(self.folder / "here"), "study")
                for line in self.said.splitlines() if line.startswith("[")}
        told = [line.split("] ")[1] for line in shown if line.startswith("[")]
        self.assertGreater(len(told), 2)
        self.assertLessEqual(set(told), said)
        heading, *rows = [line.split() for line in shown if not line.startswith(("[", "..."))]
        made = table(self.folder / "here")
        self.assertEqual(heading, list(made[0]))
        self.assertGreater(len(rows), 2)
        for row, expected in zip(rows, made):
            near = {"vertices": 0.2, "elements": 0.2, "aspect": 0.2, "peak/K": 0.003, "seconds/s": np.inf}
            for text, (column, value) in zip(row, expected.items()):
                np.testing.assert_allclose(float(text), float(value), rtol=near.get(column, 1e-9), err_msg=column)

    def test_plot_looks_like_the_kept_one(self):
        made, kept = squares(self.folder / "here" / "plot.png"), squares(STUDY / "plot.png")
        self.assertEqual(made.shape, kept.shape)
        self.assertLess(np.abs(made - kept).mean(), 1.5)
        self.assertGreater(np.abs(made[:, ::-1] - kept).mean(), 3)  # the other way round it looks like another

    def test_near_values_have_files_of_their_own(self):
        names = subprocess.run(
            [sys.executable, "-B", "-c",
             "import study, types; print(*(each.name for each in study.variants_of("
             "types.SimpleNamespace(gaps=[1, 1.0000001, 1e-7], sizes=[0.1, 0.1]))))"],
            cwd=STUDY, check=True, capture_output=True, text=True).stdout
        self.assertEqual(names, "gap-1-size-0.1 gap-1.0000001-size-0.1 gap-1e-07-size-0.1\n")

    def test_no_plot_is_left_where_all_variants_fail(self):
        folder = self.folder / "none"
        folder.mkdir()
        (folder / "plot.png").write_bytes(b"of a former study")
        code, said = study(folder, "--workers", "1", "--sizes", "4", "--gaps", "-1")
        self.assertEqual(code, 1, said)
        self.assertEqual(table(folder), [])
        self.assertFalse((folder / "plot.png").exists())

    def test_each_variant_leaves_what_it_made(self):
        for name in ("gap-0.5-size-2", "gap-2-size-1"):
            for suffix in (".geo", ".geo_model", ".geo_mesh", ".gbi"):
                self.assertTrue((self.folder / "here" / (name + suffix)).stat().st_size)
        self.assertEqual((self.folder / "here" / "plot.png").read_bytes()[:4], b"\x89PNG")

    def test_results_are_those_of_the_chip(self):
        """The temperature lies between those of a wall of air as thick as the gap, of the lid's area and of the
        chip's: heat neither flows through more than the former, nor through less than the latter."""
        for row in table(self.folder / "here"):
            gap = float(row["gap/mm"])
            self.assertAlmostEqual(float(row["chip/mm3"]), 200)
            self.assertAlmostEqual(float(row["air/mm3"]), 400 * (2 + gap) - 200, places=3)
            of_wall = 0.05 * gap * 1e-3 / 0.026 / 1e-4
            self.assertGreater(float(row["peak/K"]), 293 + of_wall / 4)
            self.assertLess(float(row["peak/K"]), 293 + of_wall)

    def test_a_cluster_gives_the_same(self):
        with Cluster(self.folder) as address:
            code, said = study(self.folder / "there", "--scheduler", address, "--sizes", "2", "--gaps", "2")
        self.assertEqual(code, 0, said)
        here, there = table(self.folder / "here")[4], table(self.folder / "there")[0]
        for row in (here, there):
            row.pop("seconds/s")
        self.assertEqual(here, there)

    def test_a_scheduler_that_does_not_answer_is_told(self):
        done = subprocess.run([sys.executable, "-B", STUDY / "study.py", "--scheduler", "tcp://127.0.0.1:1"],
                              cwd=self.folder, capture_output=True, text=True,
                              env={**os.environ, "DASK_DISTRIBUTED__COMM__TIMEOUTS__CONNECT": "1s"})
        self.assertEqual(done.returncode, 1)
        self.assertIn("study: error: Timed out trying to connect to tcp://127.0.0.1:1", done.stderr)
        self.assertNotIn("Traceback", done.stderr)

    def test_fields_are_those_of_the_vertices(self):
        subprocess.run([sys.executable, "-B", STUDY / "field.py", "here/gap-1-size-2", "lid"], cwd=self.folder,
                       check=True)
        points, arrays = point_data(self.folder / "distance.vtu")
        below = 0.003 - points[:, 2]
        np.testing.assert_allclose(arrays["distance"][below < 1e-9], 0, atol=1e-9)
        self.assertTrue((arrays["distance"] >= below - 1e-9).all())
        self.assertTrue((arrays["distance"] <= np.hypot(below, 0.002)).all())  # as lid has a vertex each 2 mm
        points, arrays = point_data(self.folder / "sizes.vtu")
        self.assertTrue(((arrays["mesh_size"] > 0.0005) & (arrays["mesh_size"] < 0.004)).all())

    def test_a_library_that_is_missing_is_told(self):
        without = self.folder / "without"
        without.mkdir()
        (without / "vtk.py").write_text("raise ImportError(\"No module named 'vtk'\")\n", encoding="utf-8")
        path = f"{without}:{os.environ['PYTHONPATH']}"
        done = subprocess.run([sys.executable, "-B", STUDY / "field.py", "here/gap-1-size-2", "lid"], cwd=self.folder,
                              capture_output=True, text=True, env={**os.environ, "PYTHONPATH": path})
        self.assertEqual((done.returncode, done.stderr), (
            1, "field: error: No module named 'vtk'; install python3-numpy, python3-scipy and python3-vtk9\n"))

    def test_a_surface_that_is_not_there_is_told(self):
        done = subprocess.run([sys.executable, "-B", STUDY / "field.py", "here/gap-1-size-2", "roof"],
                              cwd=self.folder, capture_output=True, text=True)
        self.assertEqual((done.returncode, done.stderr), (1, 'field: error: no mesh faces are on "roof"\n'))


if __name__ == "__main__":
    unittest.main(verbosity=2)
