"""The geometry database from Python: open, build, query, prepare, verify and write cases.

>>> import ovrageo
>>> case = ovrageo.Case()
>>> added = case.mesh.add_vertices([[0, 0, 0], [1, 0, 0], [0, 1, 0], [0, 0, 1]])
>>> tetrahedron, = case.mesh.add_elements("tetrahedron", [added.ids])
>>> [vertex.id for vertex in tetrahedron.vertices]
[1, 2, 3, 4]
>>> tetrahedron.centroid
Vector(x=0.25, y=0.25, z=0.25)
"""

from collections.abc import MutableMapping as _MutableMapping

from . import _core, bridges
from ._core import (
    Attributes,
    Mesh,
    MeshEdge,
    MeshEntities,
    MeshEntity,
    MeshFace,
    MeshRegion,
    MeshVertex,
    Model,
    ModelEdge,
    ModelEntities,
    ModelEntity,
    ModelFace,
    ModelRegion,
    ModelVertex,
    OpaqueValue,
    attribute_tags,
    operation_names,
    section_names,
)
from ._names import named as _named
from .case import Case, Finding, Verification, diff, import_file, open
from .errors import (
    BusyError,
    CaseWarning,
    DamagedFileError,
    Error,
    GoneError,
    MissingFileError,
    OutputError,
    UnsuitableError,
    UsageError,
)
from .values import Box, Matrix, Vector

__version__ = _core.__version__

# get(), items() and the others come with what a mapping has to have.
for _name in ("get", "keys", "items", "values", "pop", "popitem", "clear", "setdefault", "__eq__", "__ne__"):
    setattr(Attributes, _name, getattr(_MutableMapping, _name))
_MutableMapping.register(Attributes)
del _name
setattr(ModelEntities, "named", _named)

__all__ = [
    "Attributes", "Box", "BusyError", "Case", "CaseWarning", "DamagedFileError", "Error", "Finding",
    "GoneError", "Matrix", "Mesh", "MeshEdge", "MeshEntities", "MeshEntity", "MeshFace", "MeshRegion",
    "MeshVertex", "MissingFileError", "Model", "ModelEdge", "ModelEntities", "ModelEntity", "ModelFace",
    "ModelRegion", "ModelVertex", "OpaqueValue", "OutputError", "UnsuitableError", "UsageError", "Vector",
    "Verification", "attribute_tags", "diff", "import_file", "open", "operation_names", "section_names",
]
