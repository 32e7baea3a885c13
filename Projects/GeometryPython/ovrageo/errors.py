"""What goes wrong, in the words of the host.

All of these are an ovrageo.Error, and what Python programs would expect beside it.
"""


class Error(Exception):
    """The work could not be done."""


class UsageError(Error, ValueError):
    """An argument that cannot be meant."""


class MissingFileError(Error, FileNotFoundError):
    """An input that is missing or cannot be opened."""


class DamagedFileError(Error, ValueError):
    """An input that is truncated, of another kind, or contradicts itself."""


class OutputError(Error, OSError):
    """An output that cannot be written; what stood there before is untouched."""


class UnsuitableError(Error, ValueError):
    """A sound case with which this cannot be done."""


class GoneError(Error, ReferenceError):
    """An entity that was removed or renumbered, or is of a case that was closed."""


class BusyError(Error, RuntimeError):
    """A case on which another thread works."""


class CaseWarning(UserWarning):
    """What the host warns of."""


#: By the exit code of the program, see its manual.
BY_EXIT_CODE = {
    2: UsageError,
    3: MissingFileError,
    4: DamagedFileError,
    5: OutputError,
    6: UnsuitableError,
}
