"""The reference and the stubs of the Python package have its docstrings, and the reference all that it offers."""

import importlib.machinery
import importlib.util
import os
import types
import unittest

import ovrageo

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.realpath(__file__))))


def script(name):
    """A script of the site, which has no suffix, as a module."""
    loader = importlib.machinery.SourceFileLoader("script", os.path.join(ROOT, "Documentation", "site", name))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader("script", loader))
    loader.exec_module(module)
    return module


class Reference(unittest.TestCase):

    def setUp(self):
        self.reference = script("python-reference")

    def test_is_that_of_the_docstrings(self):
        with open(self.reference.PAGE, encoding="utf-8") as page:
            self.assertEqual(self.reference.page(), page.read(),
                             "run Documentation/site/python-reference, which makes it anew")

    def test_what_has_no_place_is_a_fault(self):
        ovrageo.__all__.append("none")
        self.addCleanup(ovrageo.__all__.remove, "none")
        with self.assertRaisesRegex(SystemExit, "no place on the page for none$"):
            self.reference.page()

    def test_what_has_no_docstring_is_a_fault(self):
        with self.assertRaisesRegex(SystemExit, "<function .* has no docstring$"):
            self.reference.text_of(lambda: None)

    def test_docstrings(self):
        for docstring, text in (
                ("One line.", "One line.\n"),
                ("named(self: a.B, tag: str) -> object\n\nOne line.\n", "One line.\n"),
                ("A.\n\n>>> 1\n1\n>>> 2\n2\n\nB.", "A.\n\n```pycon\n>>> 1\n1\n>>> 2\n2\n```\n\nB.\n")):
            what = lambda: None
            what.__doc__ = docstring
            self.assertEqual(self.reference.text_of(what), text)


class Stubs(unittest.TestCase):
    PLAIN = """class Part(metaclass=_Type):
    @property
    def size(self) -> int: ...
    colour: str
    def grow(
        self, by: int
    ) -> None: ...
    def __len__(self) -> int: ...

class Whole(Part): ...

class _Hidden: ...
def make() -> Part: ...
"""
    FULL = """class Part(metaclass=_Type):
    \"\"\"A part.

    Of a whole.
    \"\"\"
    @property
    def size(self) -> int:
        \"\"\"In metres.\"\"\"
    colour: str
    \"\"\"Such as "red".\"\"\"
    def grow(
        self, by: int
    ) -> None:
        \"\"\"Makes it larger,
        once.
        \"\"\"
    def __len__(self) -> int: ...

class Whole(Part):
    \"\"\"All of it.\"\"\"

class _Hidden: ...
def make() -> Part: ...
"""

    def setUp(self):
        self.stubs = script("python-stubs")

    def module(self):
        part = types.SimpleNamespace(text="A part.\n\nOf a whole.", size=types.SimpleNamespace(text="In metres."),
                                     colour=types.SimpleNamespace(text='Such as "red".'),
                                     grow=types.SimpleNamespace(text="Makes it larger,\nonce."))
        return types.SimpleNamespace(Part=part, Whole=types.SimpleNamespace(text="All of it."),
                                     make=types.SimpleNamespace(text=""))

    def test_have_the_docstrings(self):
        with open(self.stubs.STUBS, encoding="utf-8") as stubs:
            self.assertEqual(self.stubs.renewed(), stubs.read(),
                             "run Documentation/site/python-stubs, which makes them anew")

    def test_a_docstring_goes_where_editors_look(self):
        made = self.stubs.with_docstrings(self.PLAIN, self.module(), lambda what: what.text)
        self.assertEqual(made, self.FULL)

    def test_what_stands_there_is_replaced(self):
        former = self.FULL.replace("larger", "smaller").replace("A part.", "A piece,\n    or two.")
        made = self.stubs.with_docstrings(former, self.module(), lambda what: what.text)
        self.assertEqual(made, self.FULL)
        self.assertEqual(self.stubs.without(former), self.PLAIN)


if __name__ == "__main__":
    unittest.main()
