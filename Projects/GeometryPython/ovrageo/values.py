"""Values of the library, as named tuples: they compare, unpack and become arrays as tuples do."""

from typing import NamedTuple


class Vector(NamedTuple):
    """A point or direction.

    >>> from ovrageo import Vector
    >>> Vector(1, 2, 3).z
    3
    """

    x: float
    y: float
    z: float


class Matrix(NamedTuple):
    """A 3 x 3 matrix: its rows."""

    first: Vector
    second: Vector
    third: Vector


class Box(NamedTuple):
    """A box along the axes: its smallest and its largest corner."""

    minimum: Vector
    maximum: Vector
