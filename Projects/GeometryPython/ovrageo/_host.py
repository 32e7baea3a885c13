"""Runs the program ovrageo, in a process of its own.

Gmsh, VTK and what else it is linked to stay out of the process of Python, which may have other
releases of them loaded, and a file that brings Gmsh down brings nothing else down.
"""

from __future__ import annotations

import contextlib
import contextvars
import os
import shutil
import subprocess
import warnings
from collections.abc import Iterator
from pathlib import Path

from . import errors

_WARNING = "ovrageo: warning: "
_ERROR = "ovrageo: error: "
_names: contextvars.ContextVar[dict[str, str]] = contextvars.ContextVar("_names", default={})


@contextlib.contextmanager
def told_as(path: object, name: str) -> Iterator[None]:
    """What the program says of this file of ours, it says by a name that the caller knows."""
    token = _names.set({**_names.get(), str(path): name})
    try:
        yield
    finally:
        _names.reset(token)


def program() -> str:
    """The program: that of the variable OVRAGEO, else the one installed with this package, else that of
    the path."""
    named = os.environ.get("OVRAGEO")
    if named:
        return named
    for folder in Path(__file__).resolve().parents:
        beside = folder / "bin" / "ovrageo"
        if beside.is_file():
            return str(beside)
    found = shutil.which("ovrageo")
    if found is None:
        raise errors.Error(
            "the program ovrageo is not found: install it, or name it in the variable OVRAGEO"
        )
    return found


def run(*arguments: object, accept: tuple[int, ...] = (0,)) -> tuple[int, str]:
    """Runs `ovrageo` with these arguments, and gives its exit code and what it printed.

    Its warnings become warnings of Python; an exit code that is not accepted is raised as the exception
    of its kind. Ctrl-C, or any other exception meanwhile, ends the program.
    """
    with _started([program(), *map(_argument, arguments)]) as process:
        try:
            output, errors_said = process.communicate()
        except BaseException:
            _end(process)
            raise
    said = errors_said.decode(errors="replace")
    for path, name in _names.get().items():
        said = said.replace(path, name)
    if process.returncode not in accept:
        with contextlib.suppress(errors.CaseWarning):  # a filter may make errors of them, but this is the one to tell
            _warn(said)
        raise _exception(process.returncode, said)
    _warn(said)
    return process.returncode, output.decode(errors="surrogateescape")


def path(value: str | os.PathLike[str]) -> str:
    """A path that no command takes for an option."""
    text = os.fspath(value)
    return os.path.join(".", text) if text.startswith("-") else text


def _started(command: list[str]) -> subprocess.Popen[bytes]:
    try:
        return subprocess.Popen(
            command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE
        )
    except OSError as error:
        raise errors.Error(f"cannot run {command[0]}: {error.strerror}") from None


def _argument(value: object) -> str:
    # Numbers of NumPy are floats too, and write themselves with their type.
    return repr(float(value)) if isinstance(value, float) else str(value)


def _end(process: subprocess.Popen[bytes]) -> None:
    """Ends it, and with it the copies of itself that it has made."""
    process.terminate()
    try:
        process.wait(timeout=5)
    except subprocess.TimeoutExpired:
        process.kill()


def _warn(said: str) -> None:
    for line in said.splitlines():
        if line.startswith(_WARNING):
            warnings.warn(line[len(_WARNING):], errors.CaseWarning, stacklevel=4)


def _exception(code: int, said: str) -> Exception:
    lines = [line[len(_ERROR):] for line in said.splitlines() if line.startswith(_ERROR)]
    text = lines[-1] if lines else f"ovrageo ended with exit code {code}: {said.strip()}"
    return errors.BY_EXIT_CODE.get(code, errors.Error)(text)
