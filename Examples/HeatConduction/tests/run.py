"""Runs all tests in one process, which shares the cases that they make."""

import sys
import unittest

import testing

if __name__ == "__main__":
    suite = unittest.defaultTestLoader.discover(testing.HERE, pattern="tst_*.py")
    sys.exit(not unittest.TextTestRunner(verbosity=2).run(suite).wasSuccessful())
