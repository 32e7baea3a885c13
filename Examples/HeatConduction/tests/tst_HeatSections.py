"""What the sections of the solver input say of one another agrees, in every case."""

import unittest
from collections import Counter

import testing
from testing import np

import elements
import ties



def all_blocks(read):
    return read.elements + read.shell_elements


def nodes_of(read):
    """The nodes of each element, by its id."""
    return {element: nodes for block in all_blocks(read)
            for element, nodes in zip(block.ids.tolist(), block.nodes.tolist())}


def faces_of(read):
    """How many elements have each face, by its nodes."""
    count = Counter()
    for block in all_blocks(read):
        for local in elements.LOCAL_FACES[block.code]:
            count.update(frozenset(face) for face in block.nodes[:, local].tolist())
    return count


def face_node_set(read, records):
    """All nodes of a list of element faces."""
    nodes = ties.face_nodes(all_blocks(read))
    return {node for element, local, *_ in records for node in nodes(element, local)}


def same_places(read, pairs):
    first, second = zip(*pairs)
    return np.array_equal(read.points[read.rows(first)], read.points[read.rows(second)])


class Sections(unittest.TestCase):
    """Each check goes over all cases."""

    def each(self):
        for name in testing.COARSE:
            with self.subTest(case=name):
                yield name, testing.case(name)

    def test_both_forms_say_the_same(self):
        for name, plain in self.each():
            labelled = testing.case(name, writing=("--labelled",))
            self.assertEqual(plain.moving, labelled.moving)
            self.assertEqual(plain.rotating, labelled.rotating)
            self.assertEqual(plain.periodic.a_faces, labelled.periodic.a_faces)
            self.assertEqual([face[:2] for face in plain.extrusion.faces], labelled.extrusion.faces)
            self.assertEqual(plain.extrusion.records, labelled.extrusion.records)
            for one, other in zip(plain.periodic.b_records, labelled.periodic.b_records, strict=True):
                self.assertEqual((one.node, one.links, one.status), (other.node, other.links, other.status))
                self.assertLess(np.abs(np.array(one.weights) - other.weights).max(), 1e-6)

    def test_local_faces_turn_outwards(self):
        """The area vectors of an element's faces sum to nothing and lead away from its middle."""
        for _, read in self.each():
            for block in all_blocks(read):
                points = read.points[np.vectorize(read.row_of.get)(block.nodes)]
                for local in elements.LOCAL_FACES[block.code]:
                    corners = points[:, local]
                    normal = np.cross(corners[:, 1] - corners[:, 0], corners[:, 2] - corners[:, 0])
                    outwards = corners.mean(axis=1) - points.mean(axis=1)
                    self.assertTrue(((normal * outwards).sum(axis=1) > 0).all())

    def test_surfaces_hold_faces_of_their_elements(self):
        for _, read in self.each():
            nodes = nodes_of(read)
            for surface in read.surfaces.values():
                self.assertEqual(set(surface.nodes.tolist()), {n for f in surface.faces for n in f.nodes})
                for face in surface.faces:
                    for element in filter(None, face.elements):
                        self.assertLessEqual(set(face.nodes), set(nodes[element]))

    def test_the_outside_of_the_elements_is_on_surfaces(self):
        for _, read in self.each():
            single = {face for face, count in faces_of(read).items() if count == 1}
            listed = {frozenset(face.nodes) for surface in read.surfaces.values()
                      for face in surface.faces if bool(face.elements[0]) != bool(face.elements[1])}
            self.assertEqual(single, listed)

    def test_faces_and_nodes_of_ties_agree(self):
        for _, read in self.each():
            for records, faces in ((read.periodic.a_records, read.periodic.a_faces),
                                   (read.periodic.b_records, read.periodic.b_faces),
                                   (read.extrusion.records, read.extrusion.faces)):
                self.assertEqual({record.node for record in records}, face_node_set(read, faces))

    def test_rotor_and_stator(self):
        for name, read in self.each():
            self.assertEqual(len(read.rotating), 1 if name == "fan" else 0)
            for device in read.rotating:
                rotor, stator = zip(*device.pairs)
                self.assertEqual(set(rotor), face_node_set(read, device.rotor_faces))
                self.assertEqual(set(stator), face_node_set(read, device.stator_faces))
                self.assertFalse(set(rotor) & set(stator))
                self.assertTrue(same_places(read, device.pairs))

    def test_replicas(self):
        read = testing.case("carriage")
        self.assertTrue(same_places(read, read.moving.nodes))
        regions = {region.name: number for number, region in read.regions.items()}
        of_region = {element: (region, material) for block in read.elements for element, region, material
                     in zip(block.ids.tolist(), block.regions.tolist(), block.materials.tolist())}
        for old, new in read.moving.elements:
            name = read.regions[of_region[old][0]].name
            self.assertEqual(of_region[new][0], regions[name + ":replica"])
            self.assertEqual(of_region[old][1], 1)  # the fluid's
            self.assertEqual(of_region[new][1], {"block_1": 3, "block_2": 4}[name])

    def test_far_side_of_a_shell(self):
        """The partners in the surface lines are those in the list of the shell's original face."""
        read = testing.case("channel")
        (face, links), = read.shell_links.items()
        self.assertEqual([face], [original for _, original in read.shell_regions.values()])
        partner = dict(links.pairs.tolist())
        nodes = nodes_of(read)
        self.assertTrue(read.surfaces[face].faces)
        for mesh_face in read.surfaces[face].faces:
            self.assertEqual(mesh_face.far_nodes, tuple(partner[node] for node in mesh_face.nodes))
            self.assertLessEqual(set(mesh_face.far_nodes), set(nodes[mesh_face.far_element]))

    def test_twins_by_place_are_twins_by_name(self):
        """Every face named :solid with elements lies on the fluid's face of that name."""
        for name, read in self.each():
            if name == "carriage":
                continue  # the faces of replicas lie on others too
            pairs = ties.coincident_faces(read, {element for block in all_blocks(read)
                                                 for element in block.ids.tolist()})
            solid = {frozenset(face.nodes) for surface in read.surfaces.values()
                     if surface.name.endswith((":solid", ":stator"))
                     for face in surface.faces if any(face.elements)}
            sides = [{frozenset(first[1]), frozenset(second[1])} & solid for first, second in pairs]
            self.assertEqual([len(side) for side in sides], [1] * len(pairs))
            self.assertEqual(set().union(*sides), solid)

    def test_materials(self):
        expected = {"channel": {1, 2, 4}, "fan": {1, 2}, "sector": {1, 2}, "carriage": {1, 2, 3, 4},
                    "enclosure": {1, 2, 3, 4, 5}}
        for name, read in self.each():
            found = {material for block in read.elements for material in block.materials.tolist()}
            self.assertEqual(found, expected[name])
        self.assertEqual(testing.case("channel").shell_regions, {4: (3, 3)})


if __name__ == "__main__":
    testing.main()
