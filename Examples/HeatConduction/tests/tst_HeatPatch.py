"""Temperatures that are known exactly come back: across everything that the solver input ties."""

import unittest

import testing
from testing import linear, made, np, patch_error, solve

TWO_BOXES = """
SetFactory("OpenCASCADE");
Box(1) = {0, 0, 0, 1, 1, 0.5};
Box(2) = {0, 0, 0.5, 1, 1, 0.7};
BooleanFragments{ Volume{1, 2}; Delete; }{ }
Physical Volume("lower") = {1};
Physical Volume("upper") = {2};
Mesh.MeshSizeMax = 0.3;
"""
FLUID_AND_SOLID = {"groups": {"lower": {"material_type": "fluid", "material_id": 1},
                              "upper": {"material_type": "solid", "material_id": 2}}}


class SplitInterface(unittest.TestCase):
    """Fluid below z = 0.5 and solid above it, on nodes of their own."""

    @classmethod
    def setUpClass(cls):
        cls.read = made(TWO_BOXES, FLUID_AND_SOLID)

    def solve(self, conductance):
        return solve(self.read, materials={1: 2.0, 2: 5.0}, contacts={frozenset((1, 2)): conductance},
                     surfaces={"z=0": {"temperature": 400}, "z=1.2": {"temperature": 300}})

    @staticmethod
    def exact(conductance):
        """One flux through both and the contact between them."""
        flux = 100 / (0.5 / 2 + 1 / conductance + 0.7 / 5)

        def temperature(points, is_upper):
            below = 400 - flux * points[:, 2] / 2
            above = 300 + flux * (1.2 - points[:, 2]) / 5
            return np.where(is_upper, above, below)

        return temperature

    def upper_nodes(self):
        (block,) = self.read.elements
        is_upper = np.zeros(len(self.read.points), dtype=bool)
        is_upper[self.read.rows(block.nodes[block.materials == 2].ravel().tolist())] = True
        return is_upper

    def test_both_sides_have_nodes_of_their_own(self):
        at_interface = np.isclose(self.read.points[:, 2], 0.5)
        self.assertEqual(2 * (at_interface & self.upper_nodes()).sum(), at_interface.sum())

    def test_linear_temperature(self):
        self.assertLess(patch_error(self.read, linear(20, -30, 10)), 1e-9)

    def test_jump_at_a_contact(self):
        for conductance in (0.1, 10, 1e3, np.inf):
            with self.subTest(conductance=conductance):
                expected = self.exact(conductance)(self.read.points, self.upper_nodes())
                found = self.solve(conductance).temperatures
                self.assertLess(np.abs(found - expected).max() / 100, 1e-9)

    def test_perfect_contact_is_the_limit(self):
        perfect = self.solve(np.inf).temperatures
        far = [np.abs(self.solve(10.0 ** power).temperatures - perfect).max() for power in (2, 4, 6)]
        self.assertAlmostEqual(far[0] / far[1], 100, delta=3)
        self.assertAlmostEqual(far[1] / far[2], 100, delta=0.1)


def mixed_mesh():
    """Four layers along x: hexahedra, pyramids, hexahedra again, wedges; nodes moved out of line.

    Layer 1 has six pyramids in each cell, around its centre.
    """
    n, layers = 3, 4
    node = {}
    points = []

    def at(*place):
        if place not in node:
            node[place] = len(points) + 1
            points.append(place)
        return node[place]

    elements = []
    for layer in range(layers):
        for j in range(n):
            for k in range(n):
                cell = [at(layer + a, j + b, k + c)
                        for c in (0, 1) for a, b in ((0, 0), (1, 0), (1, 1), (0, 1))]
                centre = (layer + 0.5, j + 0.5, k + 0.5)
                elements += [(kind, layer + 1, nodes) for kind, nodes in cut(cell, layer, at, centre)]
    return points, elements


def cut(cell, layer, at, centre):
    """A hexahedron as what its layer is made of, by Gmsh's numbers of kinds."""
    if layer == 1:
        faces = ((3, 2, 1, 0), (4, 5, 6, 7), (0, 1, 5, 4), (1, 2, 6, 5), (2, 3, 7, 6), (3, 0, 4, 7))
        return [(7, [cell[i] for i in reversed(face)] + [at(*centre)]) for face in faces]
    if layer == 3:
        return [(6, [cell[i] for i in corners]) for corners in ((0, 1, 2, 4, 5, 6), (0, 2, 3, 4, 6, 7))]
    return [(5, cell)]


def moved(place, n=3, layers=4):
    """Inner nodes leave their place, so that no element is a parallelepiped."""
    x, y, z = place
    inner = 0 < x < layers and 0 < y < n and 0 < z < n
    shift = 0.15 * np.sin([3 * x + y, 2 * y - z, z + 5 * x]) if inner else 0
    return np.array(place) / n + shift / n


def as_msh(points, elements):
    lines = ["$MeshFormat", "2.2 0 8", "$EndMeshFormat", "$PhysicalNames", "4"]
    lines += [f'3 {layer + 1} "layer_{layer}"' for layer in range(4)]
    lines += ["$EndPhysicalNames", "$Nodes", str(len(points))]
    lines += [f"{i + 1} " + " ".join(repr(float(x)) for x in moved(place)) for i, place in enumerate(points)]
    lines += ["$EndNodes", "$Elements", str(len(elements))]
    lines += [f"{i + 1} {kind} 2 {group} {group} " + " ".join(map(str, nodes))
              for i, (kind, group, nodes) in enumerate(elements)]
    return "\n".join(lines + ["$EndElements", ""])


class ElementKinds(unittest.TestCase):
    """Hexahedra, pyramids and wedges side by side, the first of them fluid."""

    @classmethod
    def setUpClass(cls):
        layers = {f"layer_{i}": {"material_type": "solid" if i else "fluid", "material_id": i}
                  for i in range(4)}
        cls.read = made(as_msh(*mixed_mesh()), {"groups": layers}, suffix=".msh",
                        prepare=("--split-fluid-solid", "--renumber"))

    def test_all_kinds_are_there(self):
        self.assertEqual({block.code: len(block.ids) for block in self.read.elements},
                         {3: 18, 5: 18, 6: 54})

    def test_linear_temperature(self):
        self.assertLess(patch_error(self.read, linear(7, -5, 3)), 1e-9)

    def test_flux(self):
        exact = linear(7, -5, 3)
        surfaces = testing.given(testing.outer(self.read), exact)
        solver = testing.conduction.Conduction(
            self.read, testing.problem.Problem(materials=testing.uniform(self.read, 2.0), surfaces=surfaces))
        temperatures = solver.solve().temperatures
        for block in solver.blocks:
            flux = solver.fluxes(block, temperatures)
            self.assertLess(np.abs(flux - [-14, 10, -6]).max(), 1e-9)


class Wedges(unittest.TestCase):
    """The board of the enclosure is layers of wedges, under tetrahedra of air and of chips."""

    def check(self, prepare, codes):
        read = testing.case("enclosure", prepare=prepare)
        self.assertEqual([block.code for block in read.elements], codes)
        self.assertLess(patch_error(read, linear(100, 200, -300)), 1e-9)

    def test_as_they_are(self):
        self.check((), [4, 5])

    def test_on_both_sides_of_a_split(self):
        self.check(("--split-fluid-solid", "--renumber"), [4, 5])

    def test_cut_to_tetrahedra(self):
        self.check(("--all",), [4])


class Shells(unittest.TestCase):
    """A sheet of thickness t between two bodies: its resistance, t over its conductivity, makes a jump."""

    SCRIPT = """
SetFactory("OpenCASCADE");
Box(1) = {0, 0, 0, 1, 1, 0.5};
below() = Surface In BoundingBox {-0.1, -0.1, 0.49, 1.1, 1.1, 0.51};
sheet[] = Extrude {0, 0, 0.02} { Surface{below()}; Layers{1}; Recombine; };
above[] = Extrude {0, 0, 0.48} { Surface{sheet[0]}; };
Physical Volume("lower") = {1};
Physical Volume("sheet") = {sheet[1]};
Physical Volume("upper") = {above[1]};
Physical Surface("below") = {below()};
Physical Surface("above") = {sheet[0]};
Mesh.MeshSizeMax = 0.3;
"""
    CONDUCTIVITIES = {1: 2.0, 2: 3.0, 3: 0.05}
    RESISTANCES = (0.5 / 2, 0.02 / 0.05, 0.48 / 3)

    def made(self, lower, upper):
        return made(self.SCRIPT, {
            "groups": {"lower": {"material_type": lower, "material_id": 1},
                       "upper": {"material_type": upper, "material_id": 2},
                       "sheet": {"material_type": "solid", "material_id": 3}},
            "shells": [{"region": "sheet", "original_face": "below", "new_face": "above"}]})

    def check(self, lower, upper):
        read = self.made(lower, upper)
        flux = 100 / sum(self.RESISTANCES)
        for thin in (True, False):
            found = solve(read, materials=self.CONDUCTIVITIES, thin_shells=thin,
                          surfaces={"z=0": {"temperature": 400}, "z=1": {"temperature": 300}})
            depth = read.points[:, 2]
            expected = np.interp(depth, (0, 0.5, 0.52, 1),
                                 400 - flux * np.cumsum([0, *self.RESISTANCES]))
            used = ~np.isnan(found.temperatures)
            self.assertLess(np.abs(found.temperatures - expected)[used].max() / 100, 1e-9)
            self.assertAlmostEqual(found.heat_in["z=0"], flux, delta=1e-9 * flux)

    def test_between_fluids(self):
        self.check("fluid", "fluid")

    def test_between_a_solid_and_fluid(self):
        self.check("solid", "fluid")
        self.check("fluid", "solid")

    def test_between_solids(self):
        self.check("solid", "solid")


class MovingAndRotating(unittest.TestCase):
    """Replicas stand in the place of their old regions; a rotor is tied to its stator."""

    def test_linear_temperature_through_moving_blocks(self):
        read = testing.case("carriage")
        self.assertEqual(len(read.moving.materials), 2)
        self.assertLess(patch_error(read, linear(30, -20, 50)), 1e-9)

    def test_linear_temperature_through_a_rotor(self):
        read = testing.case("fan")
        self.assertEqual(len(read.rotating), 1)
        devices = testing.within(read, (0.145, -0.020, -0.040), (0.157, 0.020, -0.034))
        self.assertLess(patch_error(read, linear(30, -20, 50), more=devices), 1e-9)


if __name__ == "__main__":
    testing.main()
