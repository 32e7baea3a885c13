"""Whole cases: files, checks, preparation, solver input, and what the program does for the package."""

import contextlib
import copy
import json
import os
import pathlib
import pickle
import signal
import subprocess
import sys
import time
import warnings

import numpy as np
import pytest
from conftest import CASES

import ovrageo
from ovrageo import _host


def ovrageo_prints(*arguments):
    return subprocess.run(
        [os.environ["OVRAGEO"], *map(str, arguments)], capture_output=True, check=True, text=True
    ).stdout


def test_a_saved_case_is_what_the_program_reads(tetrahedron, tmp_path):
    tetrahedron.save(tmp_path / "one")
    assert tetrahedron.name == str(tmp_path / "one")
    facts = json.loads(ovrageo_prints("info", tmp_path / "one", "--json"))
    assert facts == {**tetrahedron.info(), **{key: facts[key] for key in ("modelFile", "meshFile")}}
    assert [facts["dimensions"][i]["mesh"]["count"] for i in range(4)] == [4, 0, 4, 1]


def test_a_case_in_memory_has_no_files_to_tell_of(tetrahedron):
    facts = tetrahedron.info()
    assert "modelFile" not in facts and facts["case"] is None and facts["is3d"]


@pytest.mark.parametrize("mesh_format, number", [("2013", 1), ("2014", 2), ("2014a", 3)])
def test_every_mesh_format_is_written(tetrahedron, tmp_path, mesh_format, number):
    tetrahedron.save(tmp_path / "case", mesh_format=mesh_format)
    assert (tmp_path / "case.geo_mesh").read_bytes()[:4] == number.to_bytes(4, "big")
    assert len(ovrageo.open(tmp_path / "case").mesh.faces) == 4


def test_an_unknown_mesh_format_is_refused(tetrahedron, tmp_path):
    with pytest.raises(ValueError, match='there is no mesh format "2015"'):
        tetrahedron.save(tmp_path / "case", mesh_format="2015")
    assert not list(tmp_path.iterdir())


def test_files_that_cannot_be_are_exceptions(tetrahedron, tmp_path):
    with pytest.raises(ovrageo.MissingFileError) as raised:
        ovrageo.open(tmp_path / "none")
    assert isinstance(raised.value, FileNotFoundError)
    assert str(raised.value) == f"cannot read {tmp_path}/none.geo_model: no such file"
    tetrahedron.save(tmp_path / "cut")
    content = (tmp_path / "cut.geo_mesh").read_bytes()
    (tmp_path / "cut.geo_mesh").write_bytes(content[:100])
    with pytest.raises(ovrageo.DamagedFileError, match="is truncated: it ends at byte 100"):
        ovrageo.open(tmp_path / "cut")
    with pytest.raises(ovrageo.OutputError):
        tetrahedron.save(tmp_path / "no" / "folder")


def test_warnings_are_warnings_of_python(tetrahedron, tmp_path):
    tetrahedron.save(tmp_path / "case")
    with (tmp_path / "case.geo_mesh").open("ab") as file:
        file.write(b"xyz")
    with pytest.warns(ovrageo.CaseWarning, match="goes on for 3 bytes behind the end of the mesh"):
        ovrageo.open(tmp_path / "case")


def test_verify_tells_what_the_program_tells(tetrahedron, tmp_path):
    assert tetrahedron.verify() and str(tetrahedron.verify()) == "the case is sound: 0 errors, 0 warnings"
    tetrahedron.mesh.regions[1].parent = None
    tetrahedron.save(tmp_path / "case")
    found = tetrahedron.verify()
    assert not found and found.errors == 1
    assert found.counts["no-parent"] == 1
    finding = found.findings[0]
    assert (finding.owner, finding.dimension, finding.id) == ("mesh", 3, 1)
    assert finding.place == (0.25, 0.25, 0.25)
    printed = subprocess.run(
        [os.environ["OVRAGEO"], "verify", tmp_path / "case"], capture_output=True, text=True
    )
    assert printed.returncode == 7 and printed.stdout == f"{found}\n"
    with pytest.raises(ValueError, match="limit must be 0 or more"):
        tetrahedron.verify(limit=-1)


def test_prepare_does_what_the_program_does(channel, channel_files, tmp_path):
    lines = channel.prepare()
    report = ovrageo_prints("prepare", channel_files, "-o", tmp_path / "prepared", "--all")
    assert lines == report.splitlines()
    assert ovrageo.diff(channel, tmp_path / "prepared")["equal"]
    assert channel.verify()
    with pytest.warns(ovrageo.CaseWarning, match="the periodic translation is multiplied"):
        text = channel.solver_input(scale=0.5, labelled=True)
    assert text == ovrageo_prints(
        "solver-input", tmp_path / "prepared", "-o", "-", "--scale", "0.5", "--labelled"
    )
    channel.write_solver_input(tmp_path / "input.txt", sections=["nodes"])
    assert (tmp_path / "input.txt").read_text() == channel.solver_input(sections=["nodes"])


def test_one_name_may_come_alone(channel):
    assert [line.split(":")[0] for line in channel.prepare("renumber")] == ["renumber"]
    assert channel.solver_input(sections="nodes") == channel.solver_input(sections=["nodes"])


BAR = """SetFactory("OpenCASCADE"); Box(1) = {0, 0, 0, 3, 1, 1}; Physical Volume("bar") = {1};
Physical Surface("first") = {1}; Physical Surface("second") = {2}; Transfinite Curve {:} = 3; Transfinite Surface {1, 2};
"""
STRIP = """SetFactory("OpenCASCADE"); Rectangle(1) = {0, 0, 0, 3, 1}; Physical Surface("bar") = {1};
Physical Curve("first") = {4}; Physical Curve("second") = {2}; Transfinite Curve {2, 4} = 3;
"""


@pytest.mark.parametrize("geometry", [BAR, STRIP], ids=["regions", "faces"])
def test_a_preparation_uses_the_mesh_as_it_is_now(tmp_path, geometry):
    """Model entities of the library keep the means of their mesh, of which the periodic transform is made."""
    script = tmp_path / "bar.geo"
    script.write_text(geometry)
    groups = {name: {"periodic_pair_id": 1, "periodic_side_id": side} for side, name in enumerate(("first", "second"), 1)}
    case = ovrageo.import_file(script, mesh_size=0.5, attributes={
        "groups": {**groups, "bar": {"material_type": "solid", "material_id": 1}}})
    report = case.prepare(["periodic"])
    assert case.model.attributes["periodic_translation"].x == pytest.approx(3)
    case.mesh.vertices.coordinates = 1.001 * case.mesh.vertices.coordinates
    fresh = case.copy()
    assert case.prepare(["periodic"]) == fresh.prepare(["periodic"]) == report
    assert case.model.attributes["periodic_translation"].x == pytest.approx(3.003)
    assert case.text() == fresh.text()


def test_a_preparation_without_operations_changes_nothing(channel, tmp_path):
    tagged = {"of an edge": channel.model.edges[1], "of a face": channel.model.faces[1]}
    for tag, entity in tagged.items():
        entity.tag = tag
    channel.save(tmp_path / "before")
    assert channel.prepare([]) == []
    channel.save(tmp_path / "after")
    for suffix in (".geo_model", ".geo_mesh"):
        before, after = ((tmp_path / name).with_suffix(suffix).read_bytes() for name in ("before", "after"))
        assert before == after
    assert all(entity.tag == tag for tag, entity in tagged.items())


def test_the_text_is_that_of_the_program(tetrahedron, tmp_path):
    tetrahedron.save(tmp_path / "case")
    assert tetrahedron.text() == ovrageo_prints("text", tmp_path / "case", "-o", "-")


def test_parents_that_no_format_holds_may_be_dropped(tetrahedron, tmp_path):
    tetrahedron.mesh.regions[1].parent = tetrahedron.model.faces[1]
    with pytest.raises(ovrageo.UnsuitableError, match="format 2013 can"):
        tetrahedron.save(tmp_path / "case")
    assert not list(tmp_path.iterdir())
    with pytest.warns(ovrageo.CaseWarning, match="^1 mesh entity stands on .*written without a parent$"):
        tetrahedron.save(tmp_path / "case", drop_parents=True)
    assert ovrageo.open(tmp_path / "case").mesh.regions[1].parent is None


@pytest.mark.parametrize("copied_by", [ovrageo.Case.copy, copy.copy, copy.deepcopy])
def test_a_copy_is_equal_and_of_its_own(tetrahedron, copied_by):
    copied = copied_by(tetrahedron)
    assert ovrageo.diff(copied, tetrahedron)["equal"] and copied.name is None
    copied.mesh.vertices[1].point = (0, 0, -1)
    assert tetrahedron.mesh.vertices[1].point == (0, 0, 0)


def test_a_copy_keeps_parents_of_another_dimension(tetrahedron):
    tetrahedron.mesh.regions[1].parent = tetrahedron.model.faces[1]
    assert tetrahedron.copy().mesh.regions[1].parent.dimension == 2


def test_a_case_stays_in_its_process(tetrahedron):
    with pytest.raises(TypeError, match="^a case is of one process: save it, and open it in the other$"):
        pickle.dumps(tetrahedron)


def test_prepare_takes_names_of_operations(channel):
    with pytest.raises(ValueError, match='there is no operation "split"'):
        channel.prepare(["split"])
    assert channel.prepare(["renumber", "decompose-wedges"])[0].startswith("decompose-wedges: 1104 wedges")
    assert "renumber" in ovrageo.operation_names()


@pytest.mark.parametrize(
    "options, error",
    [
        ({"scale": 0}, ValueError),
        ({"scale": float("nan")}, ValueError),
        ({"sections": ["nods"]}, ovrageo.UsageError),
    ],
)
def test_wrong_options_of_the_solver_input(tetrahedron, options, error):
    with pytest.raises(error):
        tetrahedron.solver_input(**options)


def test_import_takes_the_options_of_the_command(tmp_path):
    script = tmp_path / "box.geo"
    script.write_text('SetFactory("OpenCASCADE"); Box(1) = {0, 0, 0, 1, 1, 1};\n')
    attributes = {"entities": {"3:1": {"material_type": "solid"}}}
    solid = ovrageo.import_file(script, attributes=attributes, mesh_size=0.5, scale=2.0)
    assert solid.name is None and solid.model.regions[1].attributes == {"material_type": "solid"}
    assert solid.mesh.vertices.coordinates.max() == 2
    surface = ovrageo.import_file(script, dimension=2, output=tmp_path / "surface")
    assert surface.name == str(tmp_path / "surface") and not surface.model.is_3d
    with pytest.warns(ovrageo.CaseWarning, match="^attributes: gives a material_type to none of the regions"):
        ovrageo.import_file(script, attributes={"entities": {"3:1": {"material_id": 2}}})
    numbers = {"entities": {"3:1": {"material_type": "solid", "material_id": np.int64(2), "layers": np.arange(2.0)}}}
    read = ovrageo.import_file(script, attributes=numbers, mesh_size=np.float32(0.5)).model.regions[1].attributes
    assert read["material_id"] == 2 and read["layers"] == [0, 1]
    in_air = ovrageo.import_file(script, air_box=(-1, -1, -1, 2, 2, 2))
    assert len(in_air.model.regions) == 2


def test_import_fails_with_the_words_of_the_command(tmp_path):
    with pytest.raises(ovrageo.UsageError, match="--mesh-size must be a positive number"):
        ovrageo.import_file("nowhere.step", mesh_size=-1.0)
    with pytest.raises(ovrageo.MissingFileError, match="nowhere.step"):
        ovrageo.import_file("nowhere.step")
    (tmp_path / "box.geo").write_text('SetFactory("OpenCASCADE"); Box(1) = {0, 0, 0, 1, 1, 1};\n')
    with pytest.raises(ovrageo.DamagedFileError, match="^attributes: groups/lid: no physical group"):
        ovrageo.import_file(tmp_path / "box.geo", attributes={"groups": {"lid": {"side": 1}}}, mesh_size=1.0)
    (tmp_path / "bad.step").write_text("ISO-10303-21;")
    with pytest.raises(ovrageo.DamagedFileError, match="bad.step"):
        ovrageo.import_file(tmp_path / "bad.step")


def test_export_picture_and_report(tetrahedron, tmp_path):
    tetrahedron.export(tmp_path / "case.vtu")
    assert (tmp_path / "case.vtu").read_bytes().startswith(b"<VTKFile")
    assert tetrahedron.picture(size="200x200")[:8] == b"\x89PNG\r\n\x1a\n"
    tetrahedron.picture(tmp_path / "case.png", size=(200, 300))
    assert (tmp_path / "case.png").read_bytes()[16:24] == bytes([0, 0, 0, 200, 0, 0, 1, 44])
    tetrahedron.report(tmp_path / "case.html", before=tetrahedron)
    assert (tmp_path / "case.html").read_text().startswith("<!doctype html>")
    assert tetrahedron.name is None  # the files in between are nobody's
    page = tetrahedron._repr_html_()
    assert "A case in memory" in page and "within 1 × 1 × 1" in page and "data:image/png;base64," in page


def test_a_notebook_shows_a_case_without_mesh_and_a_closed_one():
    case = ovrageo.Case()
    case.model.add_vertex((0, 0, 0))
    assert "no mesh" in case._repr_html_() and "no picture: the case has no faces to show" in case._repr_html_()
    case.close()
    assert case._repr_html_() == "<p>A case that is closed</p>"


def test_diff_of_cases_in_memory(tetrahedron, tmp_path):
    tetrahedron.save(tmp_path / "case")
    assert ovrageo.diff(tetrahedron, tmp_path / "case")["equal"]
    tetrahedron.mesh.vertices[1].point = (0, 0, -1)
    assert not ovrageo.diff(tetrahedron, tmp_path / "case")["equal"]
    with pytest.raises(ovrageo.Error, match="none.geo_model"):
        ovrageo.diff(tetrahedron, tmp_path / "none")


def test_ctrl_c_ends_a_long_import(tmp_path):
    """The program and its copies are gone when KeyboardInterrupt comes out of import_file()."""
    script = tmp_path / "long.geo"
    script.write_text('SetFactory("OpenCASCADE"); Box(1) = {0, 0, 0, 1, 1, 1}; Mesh.MeshSizeMax = 0.002;\n')
    code = (
        "import signal, ovrageo\n"
        "signal.signal(signal.SIGINT, signal.default_int_handler)\n"  # shells have it ignored in the background
        f"print('begun', flush=True); ovrageo.import_file({str(script)!r})"
    )
    process = subprocess.Popen(
        [sys.executable, "-c", code], stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True
    )
    assert process.stdout.readline() == "begun\n"
    while str(script) not in running():
        assert process.poll() is None
        time.sleep(0.02)
    process.send_signal(signal.SIGINT)
    _, said = process.communicate()
    assert said.splitlines()[-1] == "KeyboardInterrupt"
    while str(script) in running():  # killed, but not yet taken down by the kernel
        time.sleep(0.02)


def running():
    """Command lines of ovrageo processes."""
    lines = []
    for file in pathlib.Path("/proc").glob("[0-9]*/cmdline"):
        with contextlib.suppress(OSError):  # it has ended meanwhile
            lines.append(file.read_bytes().replace(b"\0", b" ").decode(errors="replace"))
    return "\n".join(line for line in lines if "ovrageo import" in line)


def test_names_that_look_like_options(tetrahedron, tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    (tmp_path / "-o x.geo").write_text('SetFactory("OpenCASCADE"); Box(1) = {0, 0, 0, 1, 1, 1};\n')
    case = ovrageo.import_file("-o x.geo", mesh_size=1)
    case.save("-a b")
    assert ovrageo.diff("-a b", "-a b")["equal"]


def test_a_name_is_needed(tetrahedron):
    with pytest.raises(ValueError, match="needs a name"):
        tetrahedron.save("")


def test_a_program_that_is_not_there_is_told(tetrahedron, monkeypatch):
    monkeypatch.setenv("OVRAGEO", "/nowhere/ovrageo")
    with pytest.raises(ovrageo.Error, match="cannot run /nowhere/ovrageo: No such file or directory"):
        tetrahedron.picture()
    assert "cannot run" in tetrahedron._repr_html_()


def test_diff_of_a_case_that_is_missing(tmp_path):
    with pytest.raises(ovrageo.MissingFileError, match="cannot read .*none.geo_model: no such file"):
        ovrageo.diff(tmp_path / "none", tmp_path / "none")


@pytest.mark.parametrize("filtered", ["error", "always"])
def test_a_warning_hides_no_error(tmp_path, filtered):
    """As of an import that warned before it failed."""
    case = ovrageo.Case()
    case.mesh.add_vertex((0, 0, 0))
    case.save(tmp_path / "case")
    with (tmp_path / "case.geo_mesh").open("ab") as file:
        file.write(b"xyz")
    with warnings.catch_warnings(record=True) as told:
        warnings.simplefilter(filtered, ovrageo.CaseWarning)
        with pytest.raises(ovrageo.UnsuitableError, match="no faces to show"):
            _host.run("picture", tmp_path / "case", "-o", tmp_path / "case.png")
    assert len(told) == (filtered == "always")


def test_a_warning_that_is_made_an_error_leaves_the_files(tmp_path):
    script = tmp_path / "box.geo"
    script.write_text('SetFactory("OpenCASCADE"); Box(1) = {0, 0, 0, 1, 1, 1};\n')
    attributes = {"entities": {"3:1": {"material_id": 2}}}
    with pytest.raises(ovrageo.CaseWarning, match="gives a material_type to none"):
        ovrageo.import_file(script, attributes=attributes, mesh_size=1.0, output=tmp_path / "box")  # an error here
    assert ovrageo.open(tmp_path / "box").model.regions[1].attributes["material_id"] == 2


def test_a_warning_that_is_made_an_error_leaves_the_case_whole(channel, tmp_path):
    channel.model.faces.set_attribute("mesh_size", 1.0)
    channel.save(tmp_path / "case")
    with (tmp_path / "case.geo_mesh").open("ab") as file:
        file.write(b"x")
    with pytest.raises(ovrageo.CaseWarning):
        ovrageo.open(tmp_path / "case")  # as warnings are errors here
    channel.mesh.remove(next(iter(channel.mesh.regions)))
    channel.prepare()
    with pytest.raises(ovrageo.CaseWarning, match="translation is multiplied"):
        channel.solver_input(scale=0.5)
    assert len(channel.mesh.regions) > 0
