"""Every case is solved: no heat is lost, and temperatures stay between those that are given."""

import re
import unittest

import testing
from testing import PROBLEMS, np

from scipy import sparse
from scipy.sparse.linalg import spsolve

problem, conduction = testing.problem, testing.conduction


def told(pattern):
    """A figure of the page about this example."""
    text = (testing.HERE.parent / "README.md").read_text(encoding="utf-8")
    return float(re.search(pattern, text)[1])


def given_range(temperatures):
    return np.nanmin(temperatures), np.nanmax(temperatures)


def solved(solver):
    """The system of a solver, what solves it, and which unknowns are neither given nor unused."""
    system = solver.system()
    unknowns = conduction.solve_with_given(system.stiffness, system.load, system.given, str)
    free = np.isnan(system.given) & (system.stiffness.diagonal() > 0)
    return system, np.nan_to_num(unknowns), free


def explained(system, unknowns, beyond):
    """How far temperatures can lie beyond those given, by elements with obtuse angles and by ties.

    Where no entry K_ij beside the diagonal is positive, none does. With the positive ones moved to the
    diagonal, K becomes a matrix M whose inverse has no negative entry, and what lies beyond, w, obeys
    M w <= g with g_i = sum of K_ij * |T_j - T_i| over the positive K_ij, in the rows beyond alone.
    """
    entries = system.stiffness.tocoo()
    positive = (entries.row != entries.col) & (entries.data > 0)
    row, column, value = (part[positive] for part in (entries.row, entries.col, entries.data))
    moved = sparse.csr_matrix((value, (row, column)), entries.shape)
    matrix = system.stiffness - moved + sparse.diags(np.asarray(moved.sum(axis=1)).ravel())
    right = np.zeros(len(unknowns))
    np.add.at(right, row, value * np.abs(unknowns[column] - unknowns[row]) * beyond[row])
    free = np.flatnonzero(np.isnan(system.given) & (system.stiffness.diagonal() > 0))
    return spsolve(matrix[free][:, free].tocsc(), right[free]).max()


class Cases(unittest.TestCase):
    """With the problem of the same name in problems/."""

    def solver(self, name):
        return conduction.Conduction(testing.case(name), problem.read(PROBLEMS / f"{name}.json"))

    def test_heat_in_equals_heat_out(self):
        for name in testing.COARSE:
            with self.subTest(case=name):
                solution = self.solver(name).solve()
                self.assertGreater(max(solution.heat_in.values()), 0.01)
                self.assertLess(solution.imbalance(), 1e-8)

    def test_temperatures_are_within_bounds(self):
        for name in ("carriage", "channel", "fan", "sector"):
            with self.subTest(case=name):
                solver = self.solver(name)
                given = [condition["temperature"] for condition in solver.problem.surfaces.values()]
                low, high = given_range(solver.solve().temperatures)
                self.assertGreaterEqual(low, min(given) - 1e-9)
                self.assertLessEqual(high, max(given) + 1e-9)

    def test_what_is_heated_is_hardly_colder_than_given(self):
        system, unknowns, free = solved(self.solver("enclosure"))
        below = np.where(free, 293 - unknowns, 0)
        self.assertLess(below.max(), 1e-4)
        self.assertLessEqual(below.max(), explained(system, unknowns, below > 0) + 1e-9)
        # To what the mesh of another release of Gmsh would move it.
        self.assertAlmostEqual(unknowns[free].max(), told(r"reach ([0-9.]+) K at a mesh size of 0.010"), delta=0.5)
        self.assertLess(below.max(), 10 * told(r"and go ([0-9.e-]+) K below 293 K"))

    def test_what_lies_beyond_the_bounds_is_explained(self):
        """The board's elements are flat: some have obtuse angles, and lend heat in the wrong direction."""
        hot, cold = ("thermal_joint",), ("walls", "inlet", "fan_opening", "board_bottom")
        solver = self.solver("enclosure")
        solver.problem.heat = {}
        solver.problem.surfaces = {where: {"temperature": 350 if where in hot else 293}
                                   for where in hot + cold}
        system, unknowns, free = solved(solver)
        below, above = np.where(free, 293 - unknowns, 0), np.where(free, unknowns - 350, 0)
        for beyond in (below, above):
            self.assertLess(beyond.max(), 0.005 * (350 - 293))
            self.assertLessEqual(beyond.max(), explained(system, unknowns, beyond > 0) + 1e-9)
        self.assertGreater(below.max(), 0.01)


if __name__ == "__main__":
    testing.main()
