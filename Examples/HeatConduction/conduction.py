"""Steady heat conduction on what the solver input describes: assembles, solves, and keeps the account."""

from dataclasses import dataclass

import numpy as np
from scipy import sparse
from scipy.sparse.csgraph import connected_components
from scipy.sparse.linalg import splu

import elements
import ties
from solver_input import InputError


@dataclass
class Solution:
    """Temperatures by row of the nodes, not a number where no element is; heat in watts, in is positive."""

    temperatures: np.ndarray
    heat_in: dict  # where: heat

    def imbalance(self):
        """What is lost or gained on the way, as a part of all the heat that goes in."""
        flows = np.array(list(self.heat_in.values()))
        return abs(flows.sum()) / max(np.abs(flows).sum() / 2, np.finfo(float).tiny)


@dataclass
class System:
    """stiffness * unknowns = load + heat that flows in where unknowns are given (others: not a number).

    The unknown of row i of the nodes is `unknown_of[i]`; the matrix `take` makes temperatures by row of
    unknowns, the tied ones among them.
    """

    stiffness: sparse.csr_matrix
    load: np.ndarray
    given: np.ndarray
    take: sparse.csr_matrix
    unknown_of: np.ndarray


class Conduction:
    """The system of equations of one solver input with one Problem."""

    def __init__(self, solver_input, problem):
        self.input = solver_input
        self.problem = problem
        self.blocks = self._active_blocks()
        self._count = len(solver_input.node_ids)
        self._material = {element: material for block in self.blocks
                          for element, material in zip(block.ids.tolist(), block.materials.tolist())}
        self._used = np.zeros(self._count, dtype=bool)
        for block in self.blocks:
            self._used[self.rows(block.nodes)] = True
        self._clear()

    def _clear(self):
        self._entries = []
        self._load = np.zeros(self._count)
        self._ambient = []  # where, rows of faces, coefficients by node, temperature
        self.heat_in = {}

    def rows(self, nodes):
        """Rows of an array of nodes, in its shape."""
        return self.input.rows(np.ravel(nodes).tolist()).reshape(np.shape(nodes))

    def points(self, nodes):
        """Points of an array of nodes."""
        return self.input.points[self.rows(nodes)]

    def solve(self):
        """The temperatures and the account of the heat."""
        system = self.system()
        solved = solve_with_given(system.stiffness, system.load, system.given, self._describe(system))
        temperatures = np.where(self._used, system.take @ solved, np.nan)
        self._account(system, temperatures, system.stiffness @ solved - system.load)
        return Solution(temperatures, self.heat_in)

    def system(self):
        """The equations between those nodes that are neither one with others nor tied to them."""
        self._clear()
        self._conduct()
        self._heat_regions()
        self._heat_surfaces()
        self._join_shells()
        same = self._join_contacts()
        fixed = self._fixed_temperatures()
        unknown_of, ties_matrix = self._tie(same, fixed)
        rows, columns, values = (np.concatenate(part) for part in zip(*self._entries))
        take = sparse.csr_matrix((np.ones(self._count), (np.arange(self._count), unknown_of))) @ ties_matrix
        stiffness = sparse.csr_matrix((values, (rows, columns)), (self._count, self._count))
        return System((take.T @ stiffness @ take).tocsr(), take.T @ self._load,
                      _of_unknowns(fixed, unknown_of), take, unknown_of)

    def fluxes(self, block, temperatures):
        """The mean heat flux in W/m^2 of each element of one of the blocks."""
        return elements.fluxes(block, self.points(block.nodes),
                               self.problem.conductivities(block.materials),
                               temperatures[self.rows(block.nodes)])

    # What takes part

    def _active_blocks(self):
        """All elements but those of old regions, in whose place replicas stand, and of thin shells."""
        covered = np.array([old for old, _ in self.input.moving.elements], dtype=int)
        blocks = [block.select(~np.isin(block.ids, covered)) for block in self.input.elements]
        if not self.problem.thin_shells:
            blocks += self.input.shell_elements
        self._refuse_unknown(blocks)
        return [block for block in blocks if len(block.ids)]

    def _refuse_unknown(self, blocks):
        for block in blocks:
            if block.code not in elements.NAMES:
                raise InputError(f"element {block.ids[0]} is no tetrahedron, wedge, pyramid or hexahedron")

    # Matrix and load

    def _add(self, rows, matrices):
        """Adds element matrices (n, m, m) of nodes in `rows` (n, m)."""
        self._entries.append((np.repeat(rows, rows.shape[1], axis=1).ravel(),
                              np.tile(rows, rows.shape[1]).ravel(), matrices.ravel()))

    def _conduct(self):
        for block in self.blocks:
            conductivity = self.problem.conductivities(block.materials)
            self._add(self.rows(block.nodes),
                      elements.conductances(block, self.points(block.nodes), conductivity))

    def _heat_regions(self):
        for name, heat in self.problem.heat.items():
            regions = [number for number, region in self.input.regions.items() if region.name == name]
            blocks = [block.select(np.isin(block.regions, regions)) for block in self.blocks]
            parts = [(self.rows(block.nodes), elements.node_volumes(block, self.points(block.nodes)))
                     for block in blocks if len(block.ids)]
            volume = sum(volumes.sum() for _, volumes in parts)
            if volume == 0:
                raise InputError(f'no region "{name}" has elements to be heated')
            for rows, volumes in parts:
                np.add.at(self._load, rows, volumes * heat / volume)
            self.heat_in[name] = heat

    def _heat_surfaces(self):
        for where, condition in self.problem.surfaces.items():
            if "flux" in condition:
                self._add_flux(where, condition["flux"])
            if "coefficient" in condition:
                self._add_convection(where, condition["coefficient"], condition["ambient"])

    def _faces(self, where):
        """The mesh faces of the surfaces that `where` means, by number of nodes, as arrays of nodes."""
        active = self._material.keys()
        faces = [face.nodes for surface in self.problem.select(self.input, where)
                 for face in self.input.surfaces[surface].faces
                 if any(element in active for element in face.elements)]
        return by_size(faces)

    def _rows_on(self, where):
        """The rows of all nodes on the surfaces that `where` means and on an element."""
        rows = [self.rows(nodes).ravel() for nodes in self._faces(where)]
        rows = np.unique(np.concatenate(rows)) if rows else np.array([], dtype=int)
        return rows[self._used[rows]]

    def _add_flux(self, where, flux):
        heat = 0.0
        for nodes in self._faces(where):
            parts = elements.face_masses(self.points(nodes)).sum(axis=2) * flux
            np.add.at(self._load, self.rows(nodes), parts)
            heat += parts.sum()
        self.heat_in[where] = heat

    def _add_convection(self, where, coefficient, ambient):
        for nodes in self._faces(where):
            masses = elements.face_masses(self.points(nodes)) * coefficient
            self._add(self.rows(nodes), masses)
            np.add.at(self._load, self.rows(nodes), masses.sum(axis=2) * ambient)
            self._ambient.append((where, self.rows(nodes), masses.sum(axis=2), ambient))

    def _add_resistance(self, first, second, conductance):
        """Lets heat pass between faces (n, m) and (n, m) by conductance (n) times the difference."""
        masses = elements.face_masses(self.points(first)) * conductance[:, None, None]
        both = np.block([[masses, -masses], [-masses, masses]])
        self._add(self.rows(np.hstack([first, second])), both)

    # Ties

    def _join_shells(self):
        """A thin shell is a resistance between the nodes of its original face and their partners."""
        if not self.problem.thin_shells:
            return
        for material, face in self.input.shell_regions.values():
            if face not in self.input.shell_links:
                raise InputError(f"face {face} of a shell has no links to the other side")
            self._join_shell(face, self.problem.conductivities(np.array([material]))[0])

    def _join_shell(self, face, conductivity):
        partner = {first: second for first, second in self.input.shell_links[face].pairs.tolist()}
        for nodes in by_size([mesh_face.nodes for mesh_face in self.input.surfaces[face].faces]):
            far = np.vectorize(lambda node: partner[node] or node)(nodes)
            self._require_used(far)
            distance = np.linalg.norm(self.points(far) - self.points(nodes), axis=2)
            thickness = distance.sum(axis=1) / np.count_nonzero(distance, axis=1)
            self._add_resistance(nodes, far, conductivity / thickness)

    def _join_contacts(self):
        """Pairs of rows that are one; finite contacts go into the matrix instead."""
        same, resistances = self._rotating_pairs(), []
        for first, second in ties.coincident_faces(self.input, self._material.keys()):
            conductance = self.problem.contact(self._material[first[0]], self._material[second[0]])
            if np.isinf(conductance):
                same += zip(first[1], second[1])
            else:
                resistances.append((first[1], second[1], conductance))
        self._add_resistances(resistances)
        return self.rows(np.array(same, dtype=int).reshape(-1, 2))

    def _add_resistances(self, resistances):
        for size in {len(first) for first, _, _ in resistances}:
            first, second, conductance = zip(*(row for row in resistances if len(row[0]) == size))
            self._add_resistance(np.array(first), np.array(second), np.array(conductance))

    def _rotating_pairs(self):
        return [pair for device in self.input.rotating for pair in device.pairs]

    def _fixed_temperatures(self):
        """Temperatures by row, not a number where none is given."""
        fixed = np.full(self._count, np.nan)
        for where, condition in self.problem.surfaces.items():
            if "temperature" in condition:
                rows = self._rows_on(where)
                temperature = condition["temperature"]
                fixed[rows] = temperature(self.input.points[rows]) if callable(temperature) else temperature
        return fixed

    def _tie(self, same, fixed):
        """The unknown of each row, and the matrix that takes free unknowns to all of them."""
        unknown_of = ties.classes(self._count, same)
        weighted = ties.WeightedTies(unknown_of.max() + 1)
        is_fixed = np.zeros(unknown_of.max() + 1, dtype=bool)
        is_fixed[unknown_of[~np.isnan(fixed)]] = True
        for record in ties.slave_records(self.input):
            slave = self.input.row_of[record.node]
            if self._used[slave] and not is_fixed[unknown_of[slave]]:
                self._require_used(record.links)
                weighted.add(unknown_of[slave], self._stencil(record, unknown_of))
        return unknown_of, weighted.matrix()

    def _stencil(self, record, unknown_of):
        """The weights by unknown; they have six digits in places, and are brought to a sum of 1."""
        total, stencil = sum(record.weights), {}
        if not record.links:
            raise InputError(f"node {record.node} is tied to nothing")
        for row, weight in zip(self.input.rows(record.links), record.weights):
            unknown = unknown_of[row]
            stencil[unknown] = stencil.get(unknown, 0.0) + weight / total
        return stencil

    def _require_used(self, nodes):
        nodes = np.ravel(nodes)
        unused = nodes[~self._used[self.rows(nodes)]]
        if unused.size:
            raise InputError(f"node {unused[0]}, to which others are tied, is on no element")

    # The solution

    def _describe(self, system):
        """A function that says where an unknown is, for messages."""
        return lambda unknown: f"node {self.input.node_ids[np.flatnonzero(system.unknown_of == unknown)[0]]}"

    def _account(self, system, temperatures, reactions):
        for where, rows, coefficients, ambient in self._ambient:
            heat = (coefficients * (ambient - temperatures[rows])).sum()
            self.heat_in[where] = self.heat_in.get(where, 0.0) + heat
        left = np.where(np.isnan(system.given), 0.0, reactions)
        for where, condition in self.problem.surfaces.items():
            if "temperature" in condition:
                unknowns = np.unique(system.unknown_of[self._rows_on(where)])
                self.heat_in[where] = left[unknowns].sum()
                left[unknowns] = 0.0


def by_size(faces):
    """Faces as one array for each number of nodes."""
    return [np.array([face for face in faces if len(face) == size])
            for size in sorted({len(face) for face in faces})]


def _of_unknowns(fixed, unknown_of):
    given = np.full(unknown_of.max() + 1, np.nan)
    rows = np.flatnonzero(~np.isnan(fixed))
    given[unknown_of[rows]] = fixed[rows]
    return given


def solve_with_given(stiffness, load, given, describe):
    """All unknowns, of which those in `given` that are a number are known."""
    free = np.flatnonzero(np.isnan(given) & (stiffness.diagonal() > 0))
    known = np.flatnonzero(~np.isnan(given))
    _refuse_floating(stiffness, free, known, describe)
    solved = np.zeros(len(given))
    solved[known] = given[known]
    if free.size:
        inner = stiffness[free][:, free].tocsc()
        right = load[free] - stiffness[free][:, known] @ given[known]
        solved[free] = _factorised(inner, right)
    return solved


def _factorised(matrix, right):
    """A symmetric factorisation, and one step of refinement."""
    factors = splu(matrix, permc_spec="MMD_AT_PLUS_A", diag_pivot_thresh=0.0,
                   options={"SymmetricMode": True})
    solved = factors.solve(right)
    return solved + factors.solve(right - matrix @ solved)


def _refuse_floating(stiffness, free, known, describe):
    """What hangs together needs a temperature given somewhere, or a surface that cools it."""
    parts = connected_components(stiffness, directed=False)[1]
    row_sums = np.abs(np.asarray(stiffness.sum(axis=1)).ravel())
    cooled = np.flatnonzero(row_sums > 1e-9 * stiffness.diagonal())
    held = set(parts[known]) | set(parts[cooled])
    floating = [unknown for unknown in free if parts[unknown] not in held]
    if floating:
        raise InputError(f"nothing holds the temperature of {describe(floating[0])} and of what it joins")
