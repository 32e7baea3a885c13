"""Whatever outlives a case keeps it alive, or says that it is gone."""

import gc
import threading

import numpy as np
import pytest
from conftest import grid

import ovrageo


def parts(case):
    """Something of everything that can be asked of a case, and what asks it again."""
    return [
        (case.model, lambda it: it.faces),
        (case.model.faces, len),
        (case.model.faces, list),
        (case.model.faces[1], lambda it: it.name),
        (case.model.faces[1].attributes, len),
        (case.model.attributes, len),
        (case.model.regions[1].children, list),
        (case.mesh, lambda it: it.vertices),
        (case.mesh.vertices, lambda it: it.coordinates),
        (case.mesh.vertices.select([1]), lambda it: it.ids),
        (case.mesh.vertices[1], lambda it: it.point),
        (case.mesh.vertices[1].attributes, dict),
        (case.mesh.regions[1], lambda it: it.vertices),
        (iter(case.mesh.regions), next),
        (case, lambda it: it.verify()),
    ]


def test_the_last_part_keeps_the_case_alive(tetrahedron):
    held = parts(tetrahedron)
    del tetrahedron
    gc.collect()
    for part, ask in held:
        ask(part)


def test_parts_of_a_closed_case_say_so(tetrahedron):
    held = parts(tetrahedron)
    tetrahedron.close()
    tetrahedron.close()
    for part, ask in held:
        with pytest.raises(ovrageo.GoneError, match="the case is closed"):
            ask(part)
    assert repr(tetrahedron) == "<Case, closed>"


def test_a_with_block_closes():
    with ovrageo.Case() as case:
        vertex = case.mesh.add_vertex((0, 0, 0))
    with pytest.raises(ReferenceError):
        vertex.point


def test_arrays_outlive_the_case(tetrahedron):
    points = tetrahedron.mesh.vertices.coordinates
    tetrahedron.close()
    points += 1
    assert points.sum() == 15


def test_a_removed_entity_says_so(tetrahedron):
    mesh, model = tetrahedron.mesh, tetrahedron.model
    face, element = mesh.faces[2], mesh.regions[1]
    mesh.remove(face)
    with pytest.raises(ovrageo.GoneError, match="mesh face 2 was removed or renumbered"):
        face.vertices
    assert len(element.neighbours(2)) == 3
    skin, attributes = model.faces[1], model.faces[1].attributes
    model.remove(skin)
    for ask in (lambda: skin.name, lambda: attributes["material_id"], lambda: model.remove(skin)):
        with pytest.raises(ovrageo.GoneError, match="model face 1 was removed"):
            ask()


def test_a_renumbered_entity_says_so(tetrahedron):
    mesh = tetrahedron.mesh
    mesh.remove(mesh.faces[1])
    last = mesh.faces[4]
    mesh.renumber()
    with pytest.raises(ovrageo.GoneError, match="mesh face 4 was removed or renumbered"):
        last.vertices


def test_a_walk_passes_over_what_is_removed(tetrahedron):
    mesh, seen = tetrahedron.mesh, []
    for face in mesh.faces:
        seen.append(face.id)
        if 2 in mesh.faces:
            mesh.remove(mesh.faces[2])
    assert seen == [1, 3, 4]


def test_a_selection_of_what_was_removed_says_so(tetrahedron):
    chosen = tetrahedron.mesh.faces.select([1, 2])
    tetrahedron.mesh.remove(tetrahedron.mesh.faces[2])
    with pytest.raises(ovrageo.GoneError, match="mesh face 2 is no more"):
        chosen.connectivity


def test_entities_of_other_cases_are_told_apart(tetrahedron):
    other = ovrageo.Case()
    stranger = other.model.add_region()
    assert stranger != tetrahedron.model.regions[1]
    assert tetrahedron.model.regions[1] == tetrahedron.model.regions[1]
    assert len({tetrahedron.model.regions[1], tetrahedron.model.regions[1], stranger}) == 2
    with pytest.raises(ValueError, match="of another case"):
        tetrahedron.mesh.regions[1].parent = stranger
    with pytest.raises(ValueError, match="of another case"):
        tetrahedron.model.remove(stranger)


def test_a_case_that_could_not_be_prepared_is_closed(tetrahedron):
    tetrahedron.mesh.vertices[1].attributes["periodic_face"] = 77
    tetrahedron.model.faces[1].attributes["periodic_pair_id"] = 1
    tetrahedron.mesh.regions[1].parent = None
    with pytest.raises(ovrageo.UnsuitableError, match="the case is unsound"):
        tetrahedron.prepare()
    with pytest.raises(ovrageo.GoneError, match="a preparation that failed"):
        tetrahedron.mesh.vertices


def test_other_threads_go_on_and_are_kept_off_a_busy_case(tmp_path):
    points, cells = grid(30)
    case = ovrageo.Case()
    vertices = case.mesh.add_vertices(points)
    case.mesh.add_elements("tetrahedron", vertices.ids[cells])
    vertex, met = case.mesh.vertices[1], []
    writer = threading.Thread(target=case.save, args=(tmp_path / "case",))
    writer.start()
    while writer.is_alive():  # which it could not see if the writer held the interpreter's lock
        try:
            assert vertex.point == (0, 0, 0)
        except ovrageo.BusyError as error:
            met.append(str(error))
    writer.join()
    assert set(met) == {"another thread works on the case"}
    assert vertex.point == (0, 0, 0)
    assert np.array_equal(ovrageo.open(tmp_path / "case").mesh.regions.connectivity, cells + 1)


def test_a_selection_of_the_mesh_does_not_outlive_its_ids(tetrahedron):
    vertices, faces = tetrahedron.mesh.vertices, tetrahedron.model.faces.select([1])
    extra = tetrahedron.mesh.add_vertex((9, 9, 9), id=100)
    chosen = vertices.select([100, 2])
    assert chosen[100] == extra and 2 in chosen and 1 not in chosen
    tetrahedron.mesh.renumber()
    for ask in (lambda: chosen.ids, lambda: chosen.coordinates, lambda: chosen[2], lambda: list(chosen),
                lambda: chosen.select([2])):
        with pytest.raises(ovrageo.GoneError, match="^the mesh was renumbered after this selection was made$"):
            ask()
    assert list(vertices.ids) == [1, 2, 3, 4, 5] and len(faces.ids) == 1
