"""The reference of the Python package is that of its docstrings, and has all that the package offers."""

import importlib.machinery
import importlib.util
import os
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


if __name__ == "__main__":
    unittest.main()
