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
        if not found and where[0] == "#":
            found = [number for number in surfaces if str(number) == where[1:]]
        if not found and where[1:2] == "=":
            found = in_plane(solver_input, "xyz".index(where[0]), float(where[2:]))
        if not found:
            raise InputError(f'no surface is "{where}"')
        return found


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
    except (ValueError, InputError) as error:  # a bad number or bad JSON is the former
        raise InputError(f"{path}: {error}") from error


def _problem(content):
    _require_keys(content)
    shells = content.get("shells", "thin")
    if shells not in ("thin", "resolved"):
        raise InputError(f'shells are "thin" or "resolved", not "{shells}"')
    return Problem(
        materials={int(number): _number(material, "conductivity", f"material {number}")
                   for number, material in content.get("materials", {}).items()},
        heat={name: _number(content["heat"], name, "heat") for name in content.get("heat", {})},
        surfaces={where: _condition(where, given) for where, given in content.get("surfaces", {}).items()},
        contacts={frozenset(contact["materials"]): _number(contact, "conductance", "a contact")
                  for contact in content.get("contacts", [])},
        thin_shells=shells == "thin")


def _require_keys(content):
    for key in content:
        if key not in _SECTIONS:
            raise InputError(f'"{key}" is no section of a problem')


def _condition(where, given):
    if set(given) not in _CONDITIONS:
        raise InputError(f'surface "{where}" needs a temperature, a flux, or a coefficient and ambient')
    return {key: _number(given, key, f'surface "{where}"') for key in given}


def _number(content, key, what):
    value = content.get(key)
    if isinstance(value, bool) or not isinstance(value, (int, float)):
        raise InputError(f'{what} needs a number as "{key}"')
    return value
