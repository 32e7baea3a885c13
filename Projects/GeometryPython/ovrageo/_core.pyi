from typing import Any, Generic, Iterator, MutableMapping, Sequence, TypeVar, overload

import numpy as np
import numpy.typing as npt

from .values import Box, Vector

__version__: str

_Ints = npt.NDArray[np.int32]
_Reals = npt.NDArray[np.float64]
_Kind = str

_Get = TypeVar("_Get")
_Set = TypeVar("_Set")
_Entity = TypeVar("_Entity", covariant=True)
_Points = Sequence[float] | _Reals

# What the extension's classes are made by.
class _Type(type): ...

# A property that takes more than it gives: a sequence for a Vector.
class _Settable(Generic[_Get, _Set]):
    @overload
    def __get__(self, instance: None, owner: type) -> Any: ...
    @overload
    def __get__(self, instance: object, owner: type) -> _Get: ...
    def __set__(self, instance: object, value: _Set) -> None: ...

class OpaqueValue(metaclass=_Type):
    """An attribute's value that has no counterpart in Python.

    It can be kept, and set again.
    """

class Attributes(MutableMapping[str, Any]):
    """The attributes of an entity, a model or a mesh: a mutable mapping from tags to values.

    Tags are those of the vocabulary, see attribute_tags(); setting another raises KeyError. As of
    any mapping, others are just not there when they are looked up: `in` is False, and get() gives its
    default. Where the type of a value is fixed, setting another raises TypeError. Values are bool,
    int, float, str, bytes, list, dict, Vector and Matrix.
    """
    def __len__(self) -> int: ...
    def __iter__(self) -> Iterator[str]: ...
    def __contains__(self, tag: object) -> bool: ...
    def __getitem__(self, tag: str) -> Any: ...
    def __setitem__(self, tag: str, value: object) -> None: ...
    def __delitem__(self, tag: str) -> None: ...

class ModelEntity(metaclass=_Type):
    """An entity of the boundary representation: a vertex, edge, face or region of the model.

    Geometric values are those that are stored, in the unit of the case.
    """
    @property
    def id(self) -> int:
        """Number within the dimension, from 1."""
    @property
    def dimension(self) -> int:
        """0 for a vertex, 1 for an edge, 2 for a face, 3 for a region."""
    name: str
    """The name, which the surface sections of the solver input use."""
    tag: str
    """A text of the host's."""
    @property
    def attributes(self) -> Attributes:
        """The attributes, a mutable mapping by tag."""
    @property
    def children(self) -> MeshEntities[MeshEntity]:
        """The mesh entities of the same dimension that are classified on this one, by id, as they
        are now.
        """
    def neighbours(self, dimension: int) -> list[ModelEntity]:
        """The linked entities of that dimension, in the order of the list."""
    def link(self, *others: ModelEntity) -> None:
        """Links the entity with others of the same case, in both directions, once."""
    def unlink(self, other: ModelEntity) -> None:
        """Takes a link away, in both directions."""
    @property
    def box(self) -> Box:
        """The stored bounding box, in the unit of the case."""
    @property
    def centroid(self) -> Vector:
        """The stored centroid, in the unit of the case; that of a vertex is its point."""
    @property
    def normal(self) -> Vector:
        """The stored normal of an edge or face; zero otherwise."""
    @property
    def is_planar(self) -> bool:
        """Whether the edge or face is said to be planar; False otherwise."""
    def __hash__(self) -> int: ...

class ModelVertex(ModelEntity):
    """A corner of the model: a point."""
    point: _Settable[Vector, _Points]
    """The position, in the unit of the case."""

class ModelEdge(ModelEntity):
    """A curve of the model; in a planar model it bounds the domain."""
    box: _Settable[Box, Sequence[Sequence[float]] | _Reals]  # type: ignore[assignment]
    """The stored bounding box, in the unit of the case."""
    centroid: _Settable[Vector, _Points]  # type: ignore[assignment]
    """The stored centroid, in the unit of the case."""
    normal: _Settable[Vector, _Points]  # type: ignore[assignment]
    """The stored normal."""
    is_planar: bool
    """Whether the entity is said to be planar."""
    length: float
    """The stored length, in the unit of the case."""

class ModelFace(ModelEntity):
    """A surface of the model; in a planar model it is a domain."""
    box: _Settable[Box, Sequence[Sequence[float]] | _Reals]  # type: ignore[assignment]
    """The stored bounding box, in the unit of the case."""
    centroid: _Settable[Vector, _Points]  # type: ignore[assignment]
    """The stored centroid, in the unit of the case."""
    normal: _Settable[Vector, _Points]  # type: ignore[assignment]
    """The stored normal."""
    is_planar: bool
    """Whether the entity is said to be planar."""
    area: float
    """The stored area, in the square of the case's unit."""

class ModelRegion(ModelEntity):
    """A volume of the model."""
    box: _Settable[Box, Sequence[Sequence[float]] | _Reals]  # type: ignore[assignment]
    """The stored bounding box, in the unit of the case."""
    centroid: _Settable[Vector, _Points]  # type: ignore[assignment]
    """The stored centroid, in the unit of the case."""
    volume: float
    """The stored volume, in the cube of the case's unit."""

class MeshEntity(metaclass=_Type):
    """An entity of the mesh: a vertex, edge, face or region, classified on a model entity."""
    @property
    def id(self) -> int:
        """Number within the dimension, from 1."""
    @property
    def dimension(self) -> int:
        """0 for a vertex, 1 for an edge, 2 for a face, 3 for a region."""
    @property
    def kind(self) -> _Kind:
        """'triangle', 'tetrahedron' and so on, or 'unknown'."""
    parent: ModelEntity | None
    """The model entity on which the entity is classified, or None."""
    @property
    def attributes(self) -> Attributes:
        """The attributes, a mutable mapping by tag."""
    @property
    def vertices(self) -> tuple[MeshVertex, ...]:
        """The vertices of an element in its node order; none of a vertex."""
    def neighbours(self, dimension: int) -> list[MeshEntity]:
        """The entities of that dimension that use all of this one's vertices or, below its own
        dimension, that it uses; by id, vertices in node order.
        """
    @property
    def box(self) -> Box:
        """The smallest box that holds the vertices, in the unit of the case."""
    @property
    def centroid(self) -> Vector:
        """The mean of the vertices, in the unit of the case."""
    @property
    def normal(self) -> Vector:
        """Unit normal of a face, or of an edge in the xy plane; zero otherwise."""
    def __hash__(self) -> int: ...

class MeshVertex(MeshEntity):
    """A node of the mesh: a point."""
    point: _Settable[Vector, _Points]
    """The position, in the unit of the case."""

class MeshEdge(MeshEntity):
    """A line element: two vertices."""
class MeshFace(MeshEntity):
    """A surface element: a triangle or quadrilateral."""
class MeshRegion(MeshEntity):
    """A volume element: a tetrahedron, pyramid, wedge or hexahedron."""

class ModelEntities(Generic[_Entity], metaclass=_Type):
    """Model entities of one dimension: a collection by id that is walked by
    ascending id, and whose attributes are arrays of NumPy.
    """
    def __len__(self) -> int: ...
    def __iter__(self) -> Iterator[_Entity]: ...
    def __getitem__(self, id: int) -> _Entity: ...
    def __contains__(self, entity: object) -> bool: ...
    @property
    def dimension(self) -> int:
        """Of the entities, 0 to 3."""
    @property
    def ids(self) -> _Ints:
        """The ids, n int32, in the order of every other array of this view."""
    def select(self, ids: npt.ArrayLike) -> ModelEntities[_Entity]:
        """Those of the given ids, in their order, or those where an array of truth values, one for
        each, is true; one that is masked counts as false.
        """
    def named(self, pattern: str) -> ModelEntities[_Entity]:
        """Those whose name is `pattern`, letter by letter; * stands for any characters, ? for any one.

        >>> import ovrageo
        >>> model = ovrageo.Case().model
        >>> for name in ("chip_1", "chip_2", "board"):
        ...     _ = model.add_region(name)
        >>> list(model.regions.named("chip_*"))
        [<ModelRegion 1 'chip_1'>, <ModelRegion 2 'chip_2'>]
        """
    def attribute(self, tag: str) -> np.ma.MaskedArray[Any, Any]:
        """The values of an attribute, a masked array of int64, float64 or bool; masked where an
        entity has none. TypeError for values that are no numbers.
        """
    def set_attribute(self, tag: str, values: object, ids: npt.ArrayLike | None = None) -> None:
        """Sets an attribute of all entities, or of those of n ids: one value for all, or n of them;
        what is masked in a masked array stays as it is.
        """

class MeshEntities(Generic[_Entity], metaclass=_Type):
    """Mesh entities of one dimension: a collection by id that is walked by ascending
    id. Its properties are arrays of NumPy, copies, a row for each entity.
    """
    def __len__(self) -> int: ...
    def __iter__(self) -> Iterator[_Entity]: ...
    def __getitem__(self, id: int) -> _Entity: ...
    def __contains__(self, entity: object) -> bool: ...
    @property
    def dimension(self) -> int:
        """Of the entities, 0 to 3."""
    @property
    def ids(self) -> _Ints:
        """The ids, n int32, in the order of every other array of this view."""
    def select(self, ids: npt.ArrayLike) -> MeshEntities[_Entity]:
        """Those of the given ids, in their order, or those where an array of truth values, one for
        each, is true; one that is masked counts as false.
        """
    def attribute(self, tag: str) -> np.ma.MaskedArray[Any, Any]:
        """The values of an attribute, a masked array of int64, float64 or bool; masked where an
        entity has none. TypeError for values that are no numbers.
        """
    def set_attribute(self, tag: str, values: object, ids: npt.ArrayLike | None = None) -> None:
        """Sets an attribute of all entities, or of those of n ids: one value for all, or n of them;
        what is masked in a masked array stays as it is.
        """
    coordinates: _Settable[_Reals, npt.ArrayLike]
    """Points of vertices, n x 3 float64 in the unit of the case; of elements the means of
    their vertices, which cannot be set.
    """
    @property
    def connectivity(self) -> _Ints:
        """Ids of the vertices of elements of one kind, n x k int32, in node order."""
    @property
    def kinds(self) -> dict[str, int]:
        """Number of elements by kind, such as {'tetrahedron': 6}."""
    def of_kind(self, kind: _Kind) -> MeshEntities[_Entity]:
        """Those of one kind."""
    @property
    def parents(self) -> tuple[npt.NDArray[np.int8], _Ints]:
        """The classification: dimensions (int8, -1 for none) and ids (int32, 0 for
        none) of the model entities.
        """
    def classify(self, parents: npt.ArrayLike, dimension: int | None = None) -> None:
        """Classifies the entities on model entities, by default of their own dimension: one id for
        all or one for each, 0 for none.
        """

class Model(metaclass=_Type):
    """The boundary representation of a case."""
    @property
    def vertices(self) -> ModelEntities[ModelVertex]:
        """The vertices."""
    @property
    def edges(self) -> ModelEntities[ModelEdge]:
        """The edges."""
    @property
    def faces(self) -> ModelEntities[ModelFace]:
        """The faces."""
    @property
    def regions(self) -> ModelEntities[ModelRegion]:
        """The regions."""
    @property
    def attributes(self) -> Attributes:
        """The attributes of the model as a whole."""
    box: _Settable[Box, Sequence[Sequence[float]] | _Reals]
    """The stored bounding box, in the unit of the case, which nothing computes."""
    @property
    def is_3d(self) -> bool:
        """Whether there is at least one region."""
    def add_vertex(self, point: Sequence[float] | _Reals, name: str = "", id: int = 0) -> ModelVertex:
        """Adds a vertex, whose point is in the unit of the case, under the next free id if none is given,
        and returns it.
        """
    def add_edge(self, name: str = "", id: int = 0) -> ModelEdge:
        """Adds an edge, linked with nothing yet."""
    def add_face(self, name: str = "", id: int = 0) -> ModelFace:
        """Adds a face, linked with nothing yet."""
    def add_region(self, name: str = "", id: int = 0) -> ModelRegion:
        """Adds a region, linked with nothing yet."""
    def remove(self, entity: ModelEntity) -> None:
        """Removes an entity, its links, and its role as the parent of mesh entities."""

class Mesh(metaclass=_Type):
    """The mesh of a case."""
    @property
    def vertices(self) -> MeshEntities[MeshVertex]:
        """The vertices."""
    @property
    def edges(self) -> MeshEntities[MeshEdge]:
        """The edges."""
    @property
    def faces(self) -> MeshEntities[MeshFace]:
        """The faces."""
    @property
    def regions(self) -> MeshEntities[MeshRegion]:
        """The regions."""
    @property
    def attributes(self) -> Attributes:
        """The attributes of the mesh as a whole."""
    def add_vertex(self, point: Sequence[float] | _Reals, id: int | None = None) -> MeshVertex:
        """Adds a vertex, whose point is in the unit of the case, under the next free id if none is given,
        and returns it.
        """
    def add_vertices(self, points: npt.ArrayLike, ids: npt.ArrayLike | None = None) -> MeshEntities[MeshVertex]:
        """Adds vertices at the rows of an n x 3 array, in the unit of the case, under n ids or the
        next free ones, and returns them.
        """
    def add_elements(
        self, kind: _Kind, vertices: npt.ArrayLike, ids: npt.ArrayLike | None = None
    ) -> MeshEntities[MeshEntity]:
        """Adds elements of a kind, such as 'triangle' or 'hexahedron', whose k vertices are the rows
        of an n x k array of ids in node order, under n ids or the next free ones, and returns
        them.
        """
    def remove(self, entity: MeshEntity) -> None:
        """Removes an entity; ValueError for a vertex that an element uses."""
    def renumber(self) -> None:
        """Closes the gaps in the ids of all dimensions; attributes that name vertices follow."""

class CaseState(metaclass=_Type):
    def close(self) -> None: ...
    @property
    def is_closed(self) -> bool: ...
    @property
    def name(self) -> str | None: ...
    def save(self, name: str, mesh_format: str, drop_parents: bool) -> None: ...
    def save_copy(self, name: str) -> None: ...
    def forget_files(self) -> None: ...
    def verify(self, limit: int) -> tuple[str, str]: ...
    def info(self) -> str: ...
    def text(self) -> str: ...
    def prepare(self, operations: Sequence[str] | None, tolerance: float | None) -> list[str]: ...
    def write_solver_input(
        self, path: str, sections: Sequence[str] | None, scale: float, labelled: bool
    ) -> None: ...
    def solver_input(self, sections: Sequence[str] | None, scale: float, labelled: bool) -> str: ...

def open(name: str) -> CaseState: ...
def make() -> CaseState: ...
def model_of(state: CaseState) -> Model: ...
def mesh_of(state: CaseState) -> Mesh: ...
def attribute_tags() -> list[str]:
    """The tags that attributes may have, in the order of the vocabulary."""
def operation_names() -> list[str]:
    """The operations of a preparation, in the order in which they run."""
def section_names() -> list[str]:
    """The sections of the solver input, in the order in which they stand there."""
