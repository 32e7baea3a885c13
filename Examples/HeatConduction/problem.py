"""Materials, heat and boundary values of a case, from a JSON file."""

import json
from dataclasses import dataclass, field

import numpy as np

from solver_input import InputError


@dataclass
class Problem:
    """What the solver input leaves open.

    materials: conductivity in W/(m K) by material number. heat: watts by region name, over all regions
    of that name. surfaces: by where, see select(), {"temperature"} in K, {"flux"} in W/m^2 inwards, or
    {"coefficient"} in W/(m^2 K) with {"ambient"} in K; surfaces that are not named let no heat
    through. contacts: conductance in W/(m^2 K) by the two material numbers, perfect if not given.
    thin_shells: shells are resistances between their faces, or else elements like others.
    """

    materials: dict
    heat: dict = field(default_factory=dict)
    surfaces: dict = field(default_factory=dict)
    contacts: dict = field(default_factory=dict)
    thin_shells: bool = True

    def conductivities(self, materials):
        """The conductivity of each of an array of material numbers."""
        numbers, where = np.unique(materials, return_inverse=True)
        missing = [number for number in numbers.tolist() if number not in self.materials]
        if missing:
            raise InputError(f"the problem has no material {missing[0]}")
        return np.array([self.materials[number] for number in numbers.tolist()])[where]

    def contact(self, first, second):
        """The conductance between two materials."""
        return self.contacts.get(frozenset((first, second)), np.inf)

    def select(self, solver_input, where):
        """The surfaces that go by the name `where`, have the id in "#12", or lie in a plane "x=0.5"."""
        surfaces = solver_input.surfaces
        found = [number for number, surface in surfaces.items() if surface.name == where]
        if not found and where[:1] == "#":
            found = [number for number in surfaces if str(number) == where[1:]]
        if not found and where[:1] in "xyz" and where[1:2] == "=":
            found = in_plane(solver_input, "xyz".index(where[0]), _place(where))
        if not found:
            raise InputError(f'no surface is "{where}"')
        return found


def _place(plane):
    try:
        return float(plane[2:])
    except ValueError as error:
        raise InputError(f'"{plane}" names no place of a plane, as "x=0.5" does') from error


def in_plane(solver_input, axis, value):
    """The surfaces with all of their nodes where a coordinate has a value."""
    size = np.ptp(solver_input.points, axis=0).max()
    return [number for number, surface in solver_input.surfaces.items()
            if len(surface.nodes)
            and np.allclose(solver_input.points[solver_input.rows(surface.nodes), axis], value,
                            rtol=0, atol=1e-6 * size)]


_SECTIONS = {"materials", "heat", "surfaces", "contacts", "shells"}
_CONDITIONS = ({"temperature"}, {"flux"}, {"coefficient", "ambient"})


def read(path):
    """Reads a problem, see README.md for the form of the file."""
    try:
        with open(path, encoding="utf-8") as stream:
            return _problem(json.load(stream))
    except json.JSONDecodeError as error:
        raise InputError(f"{path}:{error.lineno}:{error.colno}: no JSON: {error.msg}") from error
    except UnicodeDecodeError as error:
        raise InputError(f"{path}: this is no text, at byte {error.start}, and so no JSON") from error
    except InputError as error:
        raise InputError(f"{path}: {error}") from error


def _problem(content):
    _require_keys(_of_kind(dict, content, "a problem"))
    shells = content.get("shells", "thin")
    if shells not in ("thin", "resolved"):
        raise InputError(f'shells are "thin" or "resolved", not "{shells}"')
    sections = {name: _of_kind(dict, content.get(name, {}), f'"{name}"')
                for name in ("materials", "heat", "surfaces")}
    return Problem(
        materials={_material(number): _number(material, "conductivity", f"material {number}")
                   for number, material in sections["materials"].items()},
        heat={name: _number(sections["heat"], name, "heat") for name in sections["heat"]},
        surfaces={where: _condition(where, given) for where, given in sections["surfaces"].items()},
        contacts=dict(_contact(each) for each in _of_kind(list, content.get("contacts", []), '"contacts"')),
        thin_shells=shells == "thin")


_KINDS = {dict: "an object", list: "a list"}


def _of_kind(kind, value, what):
    if not isinstance(value, kind):
        raise InputError(f"{what} must be {_KINDS[kind]}, not {json.dumps(value)[:40]}")
    return value


def _material(text):
    try:
        return int(text)
    except ValueError as error:
        raise InputError(f'"{text}" is no number of a material') from error


def _contact(given):
    between = _of_kind(dict, given, "a contact").get("materials")
    if not isinstance(between, list) or len(between) != 2 or not all(type(each) is int for each in between):
        raise InputError('a contact needs two numbers of materials as "materials"')
    return frozenset(between), _number(given, "conductance", "a contact")


def _require_keys(content):
    for key in content:
        if key not in _SECTIONS:
            raise InputError(f'"{key}" is no section of a problem')


def _condition(where, given):
    if set(_of_kind(dict, given, f'surface "{where}"')) not in _CONDITIONS:
        raise InputError(f'surface "{where}" needs a temperature, a flux, or a coefficient and ambient')
    return {key: _number(given, key, f'surface "{where}"') for key in given}


def _number(content, key, what):
    value = _of_kind(dict, content, what).get(key)
    if isinstance(value, bool) or not isinstance(value, (int, float)):
        raise InputError(f'{what} needs a number as "{key}"')
    return value
