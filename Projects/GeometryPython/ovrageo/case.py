"""A case: model and mesh in memory, and all that the host does with them."""

from __future__ import annotations

import contextlib
import json
import os
import tempfile
from collections.abc import Iterator, Sequence
from pathlib import Path
from typing import Any, NamedTuple, Union

from . import _core, _host, errors
from .values import Vector

#: Where a file is.
StrPath = Union[str, "os.PathLike[str]"]


class Finding(NamedTuple):
    """One thing that `Case.verify` has found."""

    kind: str
    severity: str
    owner: str
    dimension: int | None
    id: int | None
    place: Vector | None
    text: str


class Verification:
    """What `Case.verify` has found; it prints as the command does."""

    def __init__(self, report: dict[str, Any], text: str) -> None:
        #: Whether there is no error; warnings leave a case sound.
        self.is_sound: bool = report["sound"]
        #: Number of errors.
        self.errors: int = report["errors"]
        #: Number of warnings.
        self.warnings: int = report["warnings"]
        #: Number of findings by kind.
        self.counts = {group["kind"]: group["count"] for group in report["findings"]}
        #: The first findings of each kind.
        self.findings = [
            Finding(group["kind"], group["severity"], each["owner"], each["dimension"], each["id"],
                    Vector(*each["place"]) if each["place"] else None, each["text"])
            for group in report["findings"]
            for each in group["first"]
        ]
        self._text = text

    def __bool__(self) -> bool:
        return self.is_sound

    def __str__(self) -> str:
        return self._text.rstrip("\n")

    def __repr__(self) -> str:
        return f"<Verification: {self._text.splitlines()[-1]}>"


class Case:
    """The boundary representation of an assembly and the mesh classified on it.

    A new one is empty; `ovrageo.open` reads one, `ovrageo.import_file` makes one of geometry or a mesh.
    It lives as long as anything that was asked of it; `close`, or the end of a `with` block, frees its
    memory at once. One thread at a time: another that comes while one reads, writes or prepares gets
    `BusyError`.
    """

    def __init__(self, _state: _core.CaseState | None = None) -> None:
        self._state = _state or _core.make()

    @property
    def model(self) -> _core.Model:
        """The boundary representation."""
        return _core.model_of(self._state)

    @property
    def mesh(self) -> _core.Mesh:
        """The mesh."""
        return _core.mesh_of(self._state)

    @property
    def name(self) -> str | None:
        """Path of the files, without a suffix, that the case was last read from or written to."""
        return self._state.name

    def save(self, name: StrPath, *, mesh_format: str = "2014a", drop_parents: bool = False) -> None:
        """Writes name.geo_model and name.geo_mesh: both, or neither.

        mesh_format is "2013", "2014" or "2014a", the newest. The last two cannot hold mesh entities that
        stand on a model entity of another dimension: with drop_parents these lose their parent, here in
        memory too, with a warning; without it a case that has some is refused.
        """
        self._state.save(os.fsdecode(name), mesh_format, drop_parents)

    def copy(self) -> Case:
        """A case of its own, in memory, that is equal to this one; to prepare, for instance."""
        with self._stored() as name:
            copied = open(name)
        copied._state.forget_files()
        return copied

    def verify(self, limit: int = 10) -> Verification:
        """Looks whether the case is sound; of each kind the first `limit` findings are kept."""
        report, text = self._state.verify(limit)
        return Verification(json.loads(report), text)

    def info(self) -> dict[str, Any]:
        """What is in the case: counts, boxes, materials, names, attributes, quality of elements.

        As `ovrageo info --json` prints it; without files, modelFile and meshFile are missing.
        """
        facts: dict[str, Any] = json.loads(self._state.info())
        if not facts["modelFile"]["path"]:
            del facts["modelFile"], facts["meshFile"]
            facts["case"] = self.name
        return facts

    def text(self) -> str:
        """Model and mesh for people to read, as `ovrageo text -o -` prints them; long for a large mesh."""
        return self._state.text()

    def prepare(
        self, operations: str | Sequence[str] | None = None, *, extrusion_tolerance: float | None = None
    ) -> list[str]:
        """Brings the case into the shape that the solver needs, and tells what each operation did.

        operations are names of `ovrageo.operation_names()`; without them, all that have something to do.
        They run in the one order in which they do not get into each other's way. Ids of the mesh change,
        and what stood for a mesh entity is void. extrusion_tolerance, from 0 to 1, is the weight below which
        a vertex of the partner has no part in the tie of an extruded face; 0.01 without it.
        The case is closed where it fails: save it before, or open it anew.
        """
        return self._state.prepare(_several(operations), extrusion_tolerance)

    def solver_input(
        self, *, sections: str | Sequence[str] | None = None, scale: float = 1.0, labelled: bool = False
    ) -> str:
        """The text that the solver reads.

        sections are names of `ovrageo.section_names()`; scale, without unit, multiplies all coordinates,
        such as 0.001 for metres of a case in millimetres; labelled
        writes periodic, extrusion, moving and rotating in their labelled form.
        """
        return self._state.solver_input(_several(sections), scale, labelled)

    def write_solver_input(
        self, path: StrPath, *, sections: str | Sequence[str] | None = None, scale: float = 1.0,
        labelled: bool = False
    ) -> None:
        """Writes `solver_input` to a file: whole, or not at all."""
        self._state.write_solver_input(os.fsdecode(path), _several(sections), scale, labelled)

    def export(self, path: StrPath, **options: object) -> None:
        """Writes the case for another program, by the suffix of path, as `ovrageo export` does.

        Options are those of the command, such as parts=4 or format="msh2".
        """
        with self._stored() as name:
            _host.run("export", name, "-o", path, *_options(options))

    def picture(self, path: StrPath | None = None, **options: object) -> bytes | None:
        """Draws the case as `ovrageo picture` does: to a file, or as the bytes of a PNG without a path.

        Options are those of the command, such as color_by="material_id", explode=0.5, size=(800, 600).
        """
        if isinstance(options.get("size"), (list, tuple)):
            options["size"] = "x".join(map(str, options["size"]))  # type: ignore[call-overload]
        with self._stored() as name, tempfile.TemporaryDirectory() as folder:
            drawn = Path(folder, "picture.png")
            _host.run("picture", name, "-o", drawn if path is None else path, *_options(options))
            return drawn.read_bytes() if path is None else None

    def report(self, path: StrPath, *, before: Case | None = None) -> None:
        """Writes a page to send to others, as `ovrageo report` does; before is the case unprepared."""
        with contextlib.ExitStack() as stack:
            arguments: list[object] = ["report", stack.enter_context(self._stored()), "-o", path]
            if before is not None:
                arguments += ["--before", stack.enter_context(before._stored())]
            _host.run(*arguments)

    def close(self) -> None:
        """Frees the memory; whatever was asked of the case raises `GoneError` from now on."""
        self._state.close()

    def __enter__(self) -> Case:
        return self

    def __exit__(self, *exception: object) -> None:
        self.close()

    def __copy__(self) -> Case:
        return self.copy()

    def __deepcopy__(self, memo: object) -> Case:
        return self.copy()

    def __reduce__(self) -> str:
        raise TypeError("a case is of one process: save it, and open it in the other")

    def __repr__(self) -> str:
        if self._state.is_closed:
            return "<Case, closed>"
        name = f" {self.name!r}" if self.name else ""
        try:
            return f"<Case{name}: {self.model!r}, {self.mesh!r}>"
        except errors.BusyError:
            return f"<Case{name}, busy in another thread>"

    def _repr_html_(self) -> str:
        """What Jupyter shows of it: a summary, and a picture where it can be drawn."""
        from . import _notebook

        try:
            return _notebook.page(self)
        except errors.BusyError:
            return "<p>A case on which another thread works</p>"
        except errors.GoneError:
            return "<p>A case that is closed</p>"

    @contextlib.contextmanager
    def _stored(self) -> Iterator[str]:
        """The case as files, as it is now, for as long as the program needs them."""
        with tempfile.TemporaryDirectory(prefix="ovrageo-") as folder:
            name = os.path.join(folder, os.path.basename(self.name or "case"))
            self._state.save_copy(name)
            yield name


def _several(names: str | Sequence[str] | None) -> Sequence[str] | None:
    """Names of which one may come alone."""
    return [names] if isinstance(names, str) else names


def _plain(value: Any) -> Any:
    """Numbers and arrays of NumPy, for JSON."""
    if hasattr(value, "tolist"):
        return value.tolist()
    raise TypeError(f"attributes cannot hold {value!r}")


def _options(options: dict[str, object]) -> list[str]:
    """color_by="side", keep_interfaces=True: --color-by side --keep-interfaces."""
    arguments = []
    for key, value in options.items():
        option = "--" + key.replace("_", "-")
        if value is True:
            arguments.append(option)
        elif value is not False and value is not None:
            joined = ",".join(map(str, value)) if isinstance(value, (list, tuple)) else value
            arguments.append(f"{option}={_host._argument(joined)}")
    return arguments


def open(name: StrPath) -> Case:  # noqa: A001 (as of a module: ovrageo.open)
    """Reads the case `name`, a path with or without a suffix.

    >>> import ovrageo
    >>> ovrageo.open("nowhere")
    Traceback (most recent call last):
    ovrageo.errors.MissingFileError: cannot read nowhere.geo_model: no such file
    """
    return Case(_core.open(os.fsdecode(name)))


def import_file(
    path: StrPath,
    *,
    attributes: StrPath | dict[str, Any] | None = None,
    output: StrPath | None = None,
    **options: object,
) -> Case:
    """Makes a case of a geometry, a script or a mesh, as `ovrageo import` does.

    attributes is the path of an attributes file, or its content as a dict. Options are those of the
    command, such as mesh_size=0.01, scale=0.001, join=True, air=2. With output, a path without suffix,
    the case stays there as files too.
    """
    with tempfile.TemporaryDirectory(prefix="ovrageo-") as folder:
        name = os.path.join(folder, "case") if output is None else os.fsdecode(output)
        arguments: list[object] = ["import", _host.path(path), "-o", name, *_options(options)]
        written = None
        if isinstance(attributes, dict):
            written = Path(folder, "attributes.json")
            written.write_text(json.dumps(attributes, default=_plain))
            attributes = written
        if attributes is not None:
            arguments += ["--attributes", attributes]
        with _host.told_as(written, "attributes"):
            _host.run(*arguments)
        case = open(name)
        if output is None:
            case._state.forget_files()
        return case


def diff(a: Case | StrPath, b: Case | StrPath, **options: object) -> dict[str, Any]:
    """Compares two cases, open or on disk, as `ovrageo diff --json` does.

    Options are those of the command: by_place=True, tolerance=1e-9.
    """
    with contextlib.ExitStack() as stack:
        names = [
            stack.enter_context(case._stored()) if isinstance(case, Case) else _present(case) for case in (a, b)
        ]
        try:
            _, output = _host.run("diff", *names, "--json", *_options(options), accept=(0, 1))
        except errors.UsageError as error:
            raise errors.Error(str(error)) from None
    differences: dict[str, Any] = json.loads(output)
    return differences


def _present(name: StrPath) -> str:
    """The name of a case that has files; `ovrageo diff` has one exit code for all that goes wrong."""
    text = _host.path(name)
    for suffix in (".geo_model", ".geo_mesh"):
        text = text.removesuffix(suffix)
    for suffix in (".geo_model", ".geo_mesh"):
        if not os.path.exists(text + suffix):
            raise errors.MissingFileError(f"cannot read {text}{suffix}: no such file")
    return text
