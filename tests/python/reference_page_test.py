"""The page of the guide about the module names everything public of it, class by class, and nothing else."""
import ast
import os
import re
import unittest

from stub_names import names_in

SOURCE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")
ANSWERS = ("Fit", "Found", "FoundModel", "Uncertainty")


def read(*path):
    with open(os.path.join(SOURCE, *path), encoding="utf-8") as file:
        return file.read()


def names_of_table(text):
    """The names in the first column of the tables of a section."""
    rows = re.findall(r"^\| (`.+?) \|", text, re.MULTILINE)
    return {name for row in rows for name in re.findall(r"`(\w+)`", row)}


class ReferencePage(unittest.TestCase):
    def setUp(self):
        self.page = read("docs", "reference", "python.md")
        tree = ast.parse(read("src", "python", "__init__.pyi")).body
        self.classes = {node.name: names_in(node.body) for node in tree if isinstance(node, ast.ClassDef)}
        self.functions = {node.name for node in tree if isinstance(node, ast.FunctionDef)}
        self.errors = {name for name, members in self.classes.items() if not members}

    def section(self, title):
        found = re.search(rf"^## {title}\n(.*?)(?=^## |\Z)", self.page, re.MULTILINE | re.DOTALL)
        self.assertIsNotNone(found, title)
        return found.group(1)

    def test_names_the_functions_and_the_errors(self):
        self.assertEqual(names_of_table(self.section("Functions")), self.functions)
        self.assertEqual(names_of_table(self.section("Errors")), self.errors)

    def test_names_the_members_of_each_class(self):
        for name in ("Body", "Workspace", "SurveyFile"):
            self.assertEqual(names_of_table(self.section(name)), self.classes[name], name)

    def test_names_the_members_of_each_answer(self):
        section = self.section(", ".join(ANSWERS))
        tables = re.split(r"^\| Of an? `(\w+)` \|", section, flags=re.MULTILINE)
        self.assertEqual(set(tables[1::2]), set(ANSWERS))
        for name, table in zip(tables[1::2], tables[2::2]):
            self.assertEqual(names_of_table(table), self.classes[name], name)

    def test_leaves_out_no_class(self):
        told = {"Body", "Workspace", "SurveyFile", *ANSWERS} | self.errors
        self.assertEqual(set(self.classes), told)


if __name__ == "__main__":
    unittest.main()
