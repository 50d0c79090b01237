"""What the docstrings of the module show is what it does, and every name has one and a type."""
import ast
import doctest
import importlib.util
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

import anomalis
from stub_names import names_in, public


class Documentation(unittest.TestCase):
    def setUp(self):
        # The examples of docstrings name the files of the examples.
        self.folder = tempfile.TemporaryDirectory()
        for name in os.listdir(os.environ["ANOMALIS_EXAMPLES"]):
            if name.endswith((".axm", ".dat")):
                shutil.copy(os.path.join(os.environ["ANOMALIS_EXAMPLES"], name), self.folder.name)
        self.back = os.getcwd()
        os.chdir(self.folder.name)

    def tearDown(self):
        os.chdir(self.back)
        self.folder.cleanup()

    def test_examples_of_docstrings_hold(self):
        result = doctest.testmod(anomalis)
        self.assertEqual(result.failed, 0)
        self.assertGreater(result.attempted, 10)

    def test_everything_public_has_a_docstring(self):
        for name in public(dir(anomalis)):
            thing = getattr(anomalis, name)
            self.assertTrue(thing.__doc__, name)
            if isinstance(thing, type) and not issubclass(thing, Exception):
                for member in public(vars(thing)):
                    self.assertTrue(getattr(thing, member).__doc__, name + "." + member)


class Stubs(unittest.TestCase):
    def setUp(self):
        self.path = os.path.join(os.path.dirname(anomalis.__file__), "__init__.pyi")
        with open(self.path, encoding="utf-8") as file:
            self.tree = ast.parse(file.read())

    def test_name_everything_public_and_nothing_else(self):
        self.assertEqual(names_in(self.tree.body), public(dir(anomalis)))

    def test_name_every_member_of_the_classes(self):
        for node in self.tree.body:
            if isinstance(node, ast.ClassDef) and not issubclass(getattr(anomalis, node.name), Exception):
                there = public(vars(getattr(anomalis, node.name)))
                self.assertEqual(names_in(node.body), there, node.name)

    @unittest.skipUnless(importlib.util.find_spec("mypy"), "needs mypy")
    def test_hold_what_mypy_asks_for(self):
        environment = dict(os.environ, MYPYPATH=os.environ["PYTHONPATH"])
        environment.pop("LD_PRELOAD", None)
        with tempfile.TemporaryDirectory() as cache:
            run = subprocess.run([sys.executable, "-m", "mypy", "--strict", "--cache-dir", cache, self.path],
                                 env=environment, capture_output=True, text=True, check=False)
        self.assertEqual(run.returncode, 0, run.stdout + run.stderr)


if __name__ == "__main__":
    unittest.main()
