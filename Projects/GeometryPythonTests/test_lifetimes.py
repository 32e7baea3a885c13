"""Whatever outlives a case keeps it alive, or says that it is gone."""

import contextlib
import gc
import os
import subprocess
import sys
import threading
from pathlib import Path

import numpy as np
import pytest
from conftest import cube, grid

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
        (case.mesh.faces.of_kind("triangle"), lambda it: it.connectivity),
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


@pytest.mark.parametrize("void", [lambda case: case.mesh.renumber(), lambda case: case.prepare(["renumber"])])
def test_a_walk_over_former_ids_says_so(tetrahedron, void):
    """It would go on over other entities, past some and twice over others."""
    mesh = tetrahedron.mesh
    mesh.remove(mesh.faces[1])
    walk = iter(mesh.faces)
    assert next(walk).id == 2
    void(tetrahedron)
    with pytest.raises(ovrageo.GoneError, match="^the mesh was renumbered after this walk began$"):
        next(walk)
    of_model = iter(tetrahedron.model.faces)
    mesh.renumber()
    assert [face.id for face in of_model] == [1]


def test_a_selection_of_what_was_removed_says_so(tetrahedron):
    chosen = tetrahedron.mesh.faces.select([1, 2])
    tetrahedron.mesh.remove(tetrahedron.mesh.faces[2])
    with pytest.raises(ovrageo.GoneError, match="mesh face 2 is no more"):
        chosen.connectivity


QUESTIONS = {
    "ids": lambda chosen: chosen.ids.tolist(),
    "len": len,
    "walk": lambda chosen: [face.id for face in chosen],
    "connectivity": lambda chosen: chosen.connectivity.tolist(),
    "coordinates": lambda chosen: chosen.coordinates.tolist(),
    "parents": lambda chosen: [array.tolist() for array in chosen.parents],
    "attribute": lambda chosen: chosen.attribute("material_id").tolist(),
    "kinds": lambda chosen: chosen.kinds,
    "in": lambda chosen: [id for id in range(1, 9) if id in chosen],
    "select": lambda chosen: chosen.select(np.ones(len(chosen), bool)).ids.tolist(),
    "of_kind": lambda chosen: chosen.of_kind("triangle").connectivity.tolist(),
    "repr": repr,
}


@pytest.fixture
def with_quadrilaterals(tetrahedron):
    """Faces 1 to 4 are triangles, 5 and 7 quadrilaterals, 6 a triangle."""
    add = tetrahedron.mesh.add_elements
    add("quadrilateral", [[1, 2, 3, 4]])
    add("triangle", [[4, 1, 2]])
    add("quadrilateral", [[4, 3, 2, 1]])
    tetrahedron.mesh.faces.classify(1)
    return tetrahedron


@pytest.mark.parametrize("ask", QUESTIONS.values(), ids=QUESTIONS)
def test_those_of_a_kind_are_those_at_the_time_of_asking(with_quadrilaterals, ask):
    """They are looked for when something is asked of them, or just before the mesh changes."""
    mesh = with_quadrilaterals.mesh
    at_once = ask(mesh.faces.of_kind("triangle"))
    early, late, of_none = (mesh.faces.of_kind(kind) for kind in ("triangle", "triangle", "tetrahedron"))
    assert ask(early) == at_once
    mesh.add_elements("triangle", [[2, 3, 4]])
    mesh.remove(mesh.faces[5])
    mesh.add_vertex((7, 7, 7))
    assert ask(early) == ask(late) == at_once
    assert len(of_none) == 0 and ask(mesh.faces.of_kind("triangle")) != at_once
    assert mesh.faces.of_kind("triangle").ids.tolist() == [1, 2, 3, 4, 6, 8]


@pytest.mark.parametrize("of_kind_first", [True, False])
def test_one_of_a_kind_that_was_removed_says_so(with_quadrilaterals, of_kind_first):
    mesh = with_quadrilaterals.mesh
    chosen = mesh.faces.of_kind("quadrilateral")
    if of_kind_first:
        assert chosen.connectivity.shape == (2, 4)
    mesh.remove(mesh.faces[7])
    assert chosen.ids.tolist() == [5, 7] and [face.id for face in chosen] == [5]
    with pytest.raises(ovrageo.GoneError, match="^mesh face 7 is no more$"):
        chosen.connectivity


def test_those_of_a_kind_that_nobody_asked_anything_may_go_at_any_time(with_quadrilaterals):
    mesh = with_quadrilaterals.mesh
    for _ in range(50):
        mesh.faces.of_kind("triangle")
    held = [mesh.faces.of_kind("triangle") for _ in range(50)]
    del held[::2]
    mesh.add_elements("triangle", [[2, 3, 4]])
    assert {len(each) for each in held} == {5}
    last = mesh.faces.of_kind("quadrilateral")
    del mesh, with_quadrilaterals
    gc.collect()
    assert last.connectivity.shape == (2, 4)


@pytest.mark.parametrize("void, text", [
    (lambda case: case.close(), "the case is closed"),
    (lambda case: case.mesh.renumber(), "the mesh was renumbered after this selection was made"),
    (lambda case: case.prepare(["renumber"]), "the mesh was renumbered after this selection was made"),
], ids=["close", "renumber", "prepare"])
def test_those_of_a_kind_do_not_outlive_their_ids(with_quadrilaterals, void, text):
    mesh = with_quadrilaterals.mesh
    mesh.remove(mesh.faces[5])
    chosen, asked = mesh.faces.of_kind("triangle"), mesh.faces.of_kind("triangle")
    assert len(asked) == 5
    void(with_quadrilaterals)
    if text != "the case is closed":
        mesh.add_elements("triangle", [[2, 3, 4]])
    for selection in (chosen, asked):
        for name in QUESTIONS.keys() - {"repr"}:
            with pytest.raises(ovrageo.GoneError, match=f"^{text}$"):
                QUESTIONS[name](selection)
        assert repr(selection) == "<MeshEntities of dimension 2: gone>"


def test_a_kind_is_refused_at_once(tetrahedron):
    faces = tetrahedron.mesh.faces
    with pytest.raises(ValueError, match='no kind of element "triangles"'):
        faces.of_kind("triangles")
    tetrahedron.close()
    with pytest.raises(ovrageo.GoneError, match="the case is closed"):
        faces.of_kind("triangle")


def test_points_are_set_all_or_none(tetrahedron):
    vertices = tetrahedron.mesh.vertices
    extra = tetrahedron.mesh.add_vertex((9, 9, 9))
    chosen, before = vertices.select([1, extra.id]), vertices[1].point
    tetrahedron.mesh.remove(extra)
    with pytest.raises(ovrageo.GoneError, match="mesh vertex 5 is no more"):
        chosen.coordinates = [[7, 7, 7], [8, 8, 8]]
    assert vertices[1].point == before


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


OUT_OF_MEMORY = """
import contextlib, resource
import ovrageo
from conftest import cube

def limit(size):
    resource.setrlimit(resource.RLIMIT_AS, (size, resource.RLIM_INFINITY))

case, _ = cube(20)
in_use = int(open("/proc/self/statm").read().split()[0]) * resource.getpagesize()
limit(in_use)
filling = []  # what was freed before, and could be had again
for size in (1 << 16, 1 << 12, 1 << 10):
    with contextlib.suppress(MemoryError):
        while True:
            filling.append(bytearray(size))
limit(in_use + (1 << 18))
try:
    WORK
except MemoryError as error:
    limit(resource.RLIM_INFINITY)
    try:
        print(case.mesh)
    except ovrageo.GoneError as error:
        print(error)
"""


@pytest.mark.skipif("asan" in os.environ.get("LD_PRELOAD", ""), reason="the sanitizer ends where there is no memory")
@pytest.mark.parametrize("work, noun", [("case.prepare()", "preparation"), ("case.mesh.renumber()", "renumbering")])
def test_memory_that_runs_out_leaves_no_case_half_changed(work, noun):
    done = subprocess.run(
        [sys.executable, "-c", OUT_OF_MEMORY.replace("WORK", work)],
        capture_output=True, text=True, cwd=Path(__file__).parent)
    assert done.stdout == f"a {noun} that failed has left the case undefined; open it anew\n", done.stderr


def is_seen_beside(work, look):
    """Whether this thread, by looking, sees another do the work, which that repeats: once may go by unseen."""
    seen = threading.Event()

    def repeat():
        times = 0
        while times < 100 and not seen.is_set():
            with contextlib.suppress(ovrageo.BusyError):  # the one that looks may have the case
                work()
                times += 1

    worker = threading.Thread(target=repeat)
    worker.start()
    while worker.is_alive() and not seen.is_set():
        if look():
            seen.set()
    worker.join()
    return seen.is_set()


@pytest.mark.parametrize(
    "count, work",
    [
        (20, lambda case, folder: case.save(folder / "other")),
        (10, lambda case, folder: case.verify()),
        (10, lambda case, folder: case.info()),
        (8, lambda case, folder: case.prepare(["renumber"])),
        (20, lambda case, folder: case.mesh.renumber()),
        (10, lambda case, folder: case.solver_input()),
    ],
)
def test_other_threads_go_on_and_are_kept_off_a_busy_case(monkeypatch, tmp_path, count, work):
    monkeypatch.setenv("OVRAGEO", str(tmp_path / "none"))  # no picture for a notebook that comes too late to see it
    case, cells = cube(count)  # so many that the work takes a while
    model = case.model

    def is_busy():  # which it could not be seen if the worker held the interpreter's lock
        try:
            assert model.regions[1].name == "cube"
        except ovrageo.BusyError as error:
            assert str(error) == "another thread works on the case"
            return case._repr_html_() == "<p>A case on which another thread works</p>"
        return False

    assert is_seen_beside(lambda: work(case, tmp_path), is_busy)
    assert np.array_equal(case.mesh.regions.connectivity, cells + 1)


def test_other_threads_go_on_while_a_case_is_read(tmp_path):
    case, cells = cube(20)
    case.save(tmp_path / "case")
    opened, mesh = [], str(tmp_path / "case.geo_mesh")  # a file that is open only while the host reads it
    assert is_seen_beside(lambda: opened.append(ovrageo.open(tmp_path / "case")), lambda: mesh in open_files())
    assert np.array_equal(opened[0].mesh.regions.connectivity, cells + 1)


def open_files():
    """Paths of the files that this process has open."""
    paths = set()
    for number in os.listdir("/proc/self/fd"):
        with contextlib.suppress(OSError):  # it has been closed meanwhile
            paths.add(os.readlink(f"/proc/self/fd/{number}"))
    return paths


def test_a_selection_of_the_mesh_does_not_outlive_its_ids(tetrahedron):
    vertices, faces = tetrahedron.mesh.vertices, tetrahedron.model.faces.select([1])
    extra = tetrahedron.mesh.add_vertex((9, 9, 9), id=100)
    chosen = vertices.select([100, 2])
    assert chosen[100] == extra and 2 in chosen and 1 not in chosen
    tetrahedron.mesh.renumber()
    for ask in (lambda: chosen.ids, lambda: chosen.coordinates, lambda: chosen[2], lambda: list(chosen),
                lambda: chosen.select([2]), lambda: len(chosen)):
        with pytest.raises(ovrageo.GoneError, match="^the mesh was renumbered after this selection was made$"):
            ask()
    assert list(vertices.ids) == [1, 2, 3, 4, 5] and len(faces.ids) == 1
    assert repr(chosen) == "<MeshEntities of dimension 0: gone>"


class Closing:
    """Converts itself to a number, and closes a case meanwhile."""

    def __init__(self, case, value=1):
        self.case, self.value = case, value

    def __index__(self):
        self.case.close()
        return self.value

    def __float__(self):
        return float(self.__index__())


@pytest.mark.parametrize(
    "use",
    [
        lambda case, it: case.model.faces[1].attributes.__setitem__("material_id", it),
        lambda case, it: case.model.faces[1].attributes.update(material_type="solid", visual_scale_factor=it),
        lambda case, it: setattr(case.mesh.vertices[1], "point", (it, 0, 0)),
        lambda case, it: setattr(case.model.faces[1], "box", ((it, 0, 0), (1, 1, 1))),
        lambda case, it: setattr(case.model, "box", ((it, 0, 0), (1, 1, 1))),
        lambda case, it: case.mesh.vertices.set_attribute("visual_scale_factor", [it, 1, 1, 1]),
        lambda case, it: case.mesh.vertices.set_attribute("rotor_vertex", 5, ids=[it, 2]),
        lambda case, it: case.mesh.vertices.classify([it, 1, 1, 1]),
        lambda case, it: case.mesh.add_vertices([[0, 0, 0]], ids=[it]),
        lambda case, it: case.mesh.add_elements("tetrahedron", [[it, 2, 3, 4]]),
        lambda case, it: setattr(case.mesh.vertices, "coordinates", [[it, 0, 0]] * 4),
    ],
)
def test_a_case_that_is_closed_by_an_argument_is_closed(tetrahedron, use):
    with pytest.raises((ovrageo.GoneError, TypeError, ValueError)):  # NumPy asks no number of some
        use(tetrahedron, Closing(tetrahedron))


def test_another_entity_of_the_same_id_is_another():
    model = ovrageo.Case().model
    for _ in range(50):  # the new one may lie where the former lay
        former = model.add_face("former", id=7)
        model.remove(former)
        other = model.add_face("other", id=7)
        with pytest.raises(ovrageo.GoneError):
            former.name
        assert former != other and former not in model.faces and other in model.faces
        assert repr(former) == "<ModelFace 7, gone or busy>"
        model.remove(other)


def test_a_preparation_makes_mesh_entities_and_selections_void(channel):
    vertex, chosen = channel.mesh.vertices[1], channel.mesh.vertices.select([1, 2])
    face = channel.model.faces[1]
    channel.prepare(["renumber"])
    for ask in (lambda: vertex.point, lambda: chosen.coordinates, lambda: chosen[1]):
        with pytest.raises(ovrageo.GoneError, match="renumbered"):
            ask()
    assert face.id == 1


def test_what_cases_make_is_made_by_nobody_else():
    for kind in (ovrageo.Mesh, ovrageo.Model, ovrageo.MeshFace, ovrageo.ModelEntities, ovrageo.Attributes):
        with pytest.raises(TypeError, match="a case makes it"):
            kind()
        with pytest.raises(TypeError, match="a case makes it"):
            kind.__new__(kind)


def test_threads_that_work_at_the_end_do_not_disturb_it(tmp_path):
    code = """
import sys, threading, time, ovrageo
def work():
    while True:
        ovrageo.open(sys.argv[1])
for _ in range(3):
    threading.Thread(target=work, daemon=True).start()
time.sleep(0.3)
"""
    points, cells = grid(12)
    with ovrageo.Case() as case:
        case.mesh.add_elements("tetrahedron", case.mesh.add_vertices(points).ids[cells])
        case.save(tmp_path / "case")
    ended = subprocess.run([sys.executable, "-c", code, tmp_path / "case"], capture_output=True, text=True)
    assert (ended.returncode, ended.stderr) == (0, "")
