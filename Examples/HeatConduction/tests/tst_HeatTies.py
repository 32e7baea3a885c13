"""Periodic and extruded faces whose meshes do not match: what the ties carry, and with which error."""

import unittest

import testing
from testing import error, errors, given, linear, made, np, patch_error, solve

import ties

PERIODIC_BOX = """
SetFactory("OpenCASCADE");
Box(1) = {{0, 0, 0, 0.6, 1, 0.6}};
Physical Volume("body") = {{1}};
first() = Surface In BoundingBox {{-0.1, -0.1, -0.1, 1.1, 0.1, 1.1}};
second() = Surface In BoundingBox {{-0.1, 0.9, -0.1, 1.1, 1.1, 1.1}};
Physical Surface("first") = {{first()}};
Physical Surface("second") = {{second()}};
Transfinite Curve{{Boundary{{ Surface{{first()}}; }}}} = 1 + {first};
Transfinite Curve{{Boundary{{ Surface{{second()}}; }}}} = 1 + {second};
Transfinite Surface{{first(), second()}};
Mesh.MeshSizeMax = 0.6 / {first};
"""

# A sector of 90 degrees about the z axis, from the radius `bore` to 1.
PERIODIC_SECTOR = """
SetFactory("OpenCASCADE");
Rectangle(1) = {{{bore}, 0, 0, 1 - {bore}, 0.3}};
Rotate {{{{1, 0, 0}}, {{0, 0, 0}}, Pi / 2}} {{ Surface{{1}}; }}
sector[] = Extrude {{{{0, 0, 1}}, {{0, 0, 0}}, Pi / 2}} {{ Surface{{1}}; }};
Physical Volume("body") = {{sector[1]}};
first() = Surface In BoundingBox {{-0.1, -0.01, -0.1, 1.1, 0.01, 1.1}};
second() = Surface In BoundingBox {{-0.01, -0.1, -0.1, 0.01, 1.1, 1.1}};
Physical Surface("first") = {{first()}};
Physical Surface("second") = {{second()}};
MeshSize{{ PointsOf{{ Volume{{:}}; }} }} = {size};
MeshSize{{ PointsOf{{ Surface{{second()}}; }} }} = {other} * {size};
Mesh.MeshSizeMax = {size};
"""

PAIR = {"groups": {"body": {"material_type": "solid", "material_id": 1},
                   "first": {"periodic_pair_id": 1, "periodic_side_id": 1},
                   "second": {"periodic_pair_id": 1, "periodic_side_id": 2}}}


def displacements(read, records, transform=lambda points: points):
    """How far the weighted sum of the places of each record lies from the place of its node."""
    places = transform(np.array([read.points[read.row_of[record.node]] for record in records]))
    sums = np.array([np.array(record.weights) / sum(record.weights) @ read.points[read.rows(record.links)]
                     for record in records])
    return np.linalg.norm(sums - places, axis=1)


def mean_error(read, sides, exact):
    """The root of the mean square of all errors."""
    solution = solve(read, materials={1: 1.0}, surfaces=given(sides, exact))
    return np.sqrt((errors(read, solution, exact) ** 2).mean())


class Shift(unittest.TestCase):
    """Sides y = 0 and y = 1, divided differently."""

    @staticmethod
    def made(first, second, **options):
        return made(PERIODIC_BOX.format(first=first, second=second), PAIR, **options)

    @staticmethod
    def harmonic(points):
        """Periodic in y, and heat passes through the periodic sides."""
        phase = 2 * np.pi * points[:, 1] + 1
        return 300 + np.sin(phase) * np.sinh(2 * np.pi * points[:, 2])

    def test_linear_temperature(self):
        read = self.made(4, 5, writing=("--labelled",))
        self.assertLess(error(read, ("x=0", "x=0.6"), linear(50, 0, 0)), 1e-9)

    def test_weights_of_six_digits(self):
        read = self.made(6, 7)
        found = error(read, ("x=0", "x=0.6"), linear(50, 0, 0))
        self.assertLess(found, 1e-6)
        self.assertGreater(found, 1e-9)

    def test_places_are_those_of_the_transform(self):
        read = self.made(4, 5, writing=("--labelled",))
        transform = read.periodic.transform
        self.assertLess(displacements(read, read.periodic.a_records, transform.apply).max(), 1e-12)

    def test_periodic_temperature(self):
        """It comes back as well as between sides that match."""
        matching, other = (mean_error(self.made(8, n), ("z=0", "z=0.6"), self.harmonic) for n in (8, 9))
        self.assertLess(other, 0.005)
        self.assertLess(other, 1.2 * matching)

    def test_matching_sides_have_the_same_temperatures(self):
        read = self.made(4, 4)
        surfaces = given(("z=0", "z=0.6"), self.harmonic)
        found = solve(read, materials={1: 1.0}, surfaces=surfaces).temperatures
        for record in read.periodic.a_records:
            (link,) = record.links
            self.assertAlmostEqual(found[read.row_of[record.node]], found[read.row_of[link]], delta=1e-9)


class Rotation(unittest.TestCase):
    """Planes 90 degrees apart, meshed to different sizes."""

    @staticmethod
    def made(bore, size, other=0.7):
        return made(PERIODIC_SECTOR.format(bore=bore, size=size, other=other), PAIR,
                    writing=("--labelled",))

    @staticmethod
    def harmonic(points):
        """Comes back after 90 degrees, and heat passes through the planes."""
        turned = (points[:, 0] + 1j * points[:, 1]) ** 4
        return 300 + (turned * np.exp(1j)).real

    def test_linear_temperature_along_the_axis(self):
        for bore in (0.4, 0):  # with 0 there are nodes on the axis, which are their own images
            read = self.made(bore, 0.2)
            own = [record.node for record in read.periodic.a_records if record.links == [record.node]]
            self.assertEqual(bool(own), bore == 0)
            sides = ["z=0", "z=0.3", *self.curved(read)]
            self.assertLess(error(read, sides, linear(0, 0, 50)), 1e-9)

    def test_places_are_those_of_the_transform(self):
        read = self.made(0.4, 0.2)
        transform = read.periodic.transform
        self.assertLess(displacements(read, read.periodic.a_records, transform.apply).max(), 1e-12)

    def test_periodic_temperature(self):
        """It comes back as well as between planes that are meshed alike."""
        alike, other = (self.made(0.4, 0.1, ratio) for ratio in (1, 0.7))
        found = mean_error(other, self.curved(other), self.harmonic)
        self.assertLess(found, 0.003)
        self.assertLess(found, 1.2 * mean_error(alike, self.curved(alike), self.harmonic))

    @staticmethod
    def curved(read):
        """The surfaces of radius 0.4 and 1; their facets are not quite parallel to the axis."""
        radius = np.hypot(*read.points[:, :2].T)
        return [f"#{number}" for number, surface in read.surfaces.items()
                if np.ptp(radius[read.rows(surface.nodes)]) < 1e-6]


class Chains(unittest.TestCase):
    """Node 2 lies on side B of one pair, with node 1 on side A, and on side A of another, with node 3."""

    PLAIN = ([(1, 2), (2, 1)], [(2, 1), (3, 2)])

    def images(self, a_ties, b_ties):
        a_records, b_records = ([testing.solver_input.Record(node, [link], [1.0]) for node, link in side]
                                for side in (a_ties, b_ties))
        weighted = ties.WeightedTies(4)
        for record in ties.periodic_slaves(testing.solver_input.Periodic(a_records, b_records, [], [], None)):
            weighted.add(record.node, dict(zip(record.links, record.weights)))
        return weighted.matrix().toarray()[1:]

    def test_all_three_are_one(self):
        one, two = self.PLAIN
        for sides in ((one, two), (two, one)):
            rows = self.images(*sides)
            self.assertEqual(rows.sum(), 3)
            self.assertEqual([row.tolist() for row in rows], [rows[0].tolist()] * 3)

    def test_node_on_an_axis_stays_free(self):
        rows = self.images([(1, 1), (2, 3)], [(1, 1), (3, 2)])
        self.assertEqual(rows[0].tolist(), [0, 1, 0, 0])


class Extrusion(unittest.TestCase):
    """Layers of wedges on a box of tetrahedra; the meshes of the two faces at z = 0.5 differ."""

    SCRIPT = """
SetFactory("OpenCASCADE");
size = {size};
Box(1) = {{0, 0, 0, 1, 1, 0.5}};
Physical Volume("lower") = {{1}};
Physical Surface("top") = Surface In BoundingBox {{-0.1, -0.1, 0.49, 1.1, 1.1, 0.51}};
SetFactory("Built-in");
Point(101) = {{0, 0, 0.5}};
Point(102) = {{1, 0, 0.5}};
Point(103) = {{1, 1, 0.5}};
Point(104) = {{0, 1, 0.5}};
Line(101) = {{101, 102}};
Line(102) = {{102, 103}};
Line(103) = {{103, 104}};
Line(104) = {{104, 101}};
Curve Loop(101) = {{101 : 104}};
Plane Surface(101) = {{101}};
block[] = Extrude {{0, 0, 0.5}} {{ Surface{{101}}; Layers{{Ceil(0.5 / size)}}; Recombine; }};
Physical Volume("upper") = {{block[1]}};
Physical Surface("bottom") = {{101}};
MeshSize{{ 101 : 104 }} = 0.7 * size;
Mesh.MeshSizeMax = size;
"""
    PAIR = {"groups": {"lower": {"material_type": "solid", "material_id": 1},
                       "upper": {"material_type": "solid", "material_id": 2},
                       "bottom": {"extruded_face": "top"}}}
    SIZES = (0.2, 0.1)

    @classmethod
    def setUpClass(cls):
        cls.reads = [cls.made(size) for size in cls.SIZES]

    @classmethod
    def made(cls, size, *options):
        return made(cls.SCRIPT.format(size=size), cls.PAIR, prepare=("--all", *options))

    def test_finer_side_is_tied(self):
        for read in self.reads:
            slaves = {record.node for record in ties.slave_records(read)}
            (block,) = read.elements
            of_block = set(block.nodes[block.materials == 2].ravel().tolist())
            self.assertTrue(slaves)
            self.assertLessEqual(slaves, of_block)
            self.assertEqual(slaves, {record.node for record in read.extrusion.records} & of_block)

    def test_along_the_faces_the_error_is_that_of_the_places(self):
        """Weights below the tolerance are dropped: a node stands for a place by 1 % of a side away."""
        for read, size in zip(self.reads, self.SIZES):
            displaced = displacements(read, read.extrusion.records).max()
            self.assertLess(displaced, 0.02 * size)
            found = error(read, ("x=0", "x=1"), linear(10, 0, 0))
            self.assertLess(found, displaced)
            self.assertGreater(found, 0.01 * displaced)

    def test_along_the_faces_with_exact_places(self):
        read = self.made(0.2, "--extrusion-tolerance", "0")
        self.assertLess(displacements(read, read.extrusion.records).max(), 1e-6)
        self.assertLess(error(read, ("x=0", "x=1"), linear(10, 0, 0)), 1e-6)

    def test_across_the_faces_the_error_is_of_first_order(self):
        """The flux leaves one mesh and enters the other in sums that differ by the interpolation."""
        for read, size in zip(self.reads, self.SIZES):
            found = error(read, ("z=0", "z=1"), linear(0, 0, 10))
            self.assertLess(found, 0.15 * size)
            self.assertGreater(found, 1e-4)

    def test_heat_is_kept(self):
        for read in self.reads:
            surfaces = given(("z=0", "z=1"), linear(0, 0, 10))
            solution = solve(read, materials={1: 1.0, 2: 1.0}, surfaces=surfaces)
            self.assertLess(solution.imbalance(), 1e-8)
            self.assertAlmostEqual(solution.heat_in["z=1"], 10, delta=0.1)

    def test_matching_meshes_are_exact(self):
        """The same two bodies with faces that match, since both are meshed alike."""
        script = self.SCRIPT.format(size=0.25).replace("0.7 * size", "size") + """
Transfinite Curve{101 : 104} = 5;
top() = Surface In BoundingBox {-0.1, -0.1, 0.49, 1.1, 1.1, 0.51};
Transfinite Curve{Boundary{ Surface{top(0)}; }} = 5;
Transfinite Surface{101, top(0)};
"""
        read = made(script, self.PAIR)
        self.assertTrue(all(len(record.links) == 1 for record in read.extrusion.records))
        self.assertLess(patch_error(read, linear(10, -20, 30)), 1e-9)


if __name__ == "__main__":
    testing.main()
