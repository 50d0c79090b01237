#!/usr/bin/env python3
"""check.py finds what is planted, each of it, and nothing in what is right."""
import pathlib
import tempfile
import unittest

from check import PROJECT, dead_links, dead_paths, mistakes
from names import Names, window_names

ENTRIES, KEYS, LABELS = window_names(PROJECT / "src")
NAMES = Names(ENTRIES, KEYS, LABELS, {"info": {"--help"}, "render": {"--help", "--size"}})


def found(text):
    return list(mistakes(text, NAMES))


class Links(unittest.TestCase):
    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.folder = pathlib.Path(holder.name)
        (self.folder / "there.png").write_bytes(b"")
        (self.folder / "other.html").write_text('<section id="limits"><h2>Limits</h2></section>')

    def dead(self, body):
        (self.folder / "page.html").write_text(f"<html><body>{body}</body></html>")
        return [target for _, target in dead_links(self.folder)]

    def test_what_is_there_is_fine(self):
        self.assertEqual(self.dead('<a href="other.html#limits">x</a><img src="there.png"><a href="#own" id="own">x</a>'
                                   '<a href="https://example.org/gone">x</a>'), [])

    def test_a_page_an_anchor_and_a_picture_that_are_not_there(self):
        planted = ["gone.html", "other.html#gone", "#gone", "gone.png"]
        self.assertEqual(self.dead("".join(f'<a href="{each}">x</a>' for each in planted[:3]) +
                                   f'<img src="{planted[3]}">'), planted)

    def test_a_paper_that_is_read_as_it_stands(self):
        paper = self.folder / "README.md"
        self.assertEqual(list(dead_paths(paper, "![x](there.png) [y](gone.md#z) [z](https://example.org)")),
                         ["no gone.md"])


class NamesOfThePrograms(unittest.TestCase):
    def test_the_tables_of_the_window_are_read_whole(self):
        self.assertGreater(len(ENTRIES), 80)
        self.assertEqual(ENTRIES["Edit", "Undo"], "Ctrl+Z")
        self.assertEqual(ENTRIES["Model", "Set Fix body flags", "Fix all"], "")
        self.assertIn("F5", KEYS)

    def test_files_of_the_project(self):
        self.assertEqual(found("`examples/dyke_swarm.axm` and `docs/gone.md`"), ["no file docs/gone.md"])

    def test_menu_entries(self):
        self.assertEqual(found("*Edit, Undo* (`Ctrl+Z`), *Bodies, Sort, Ascending distance*, *Model, Fix all*, "
                               "*File, Import\nsurvey...*"), [])
        self.assertEqual(found("*Edit, Undo everything*"), ["no menu entry Edit, Undo everything"])
        self.assertEqual(found("*Edit, Undo* (`Ctrl+Y`)")[0], "Edit, Undo has the key Ctrl+Z, not Ctrl+Y")

    def test_keys(self):
        self.assertEqual(found("`Ctrl+Shift+Z`, `F5`, `Ctrl+Alt+Q`"), ["no key Ctrl+Alt+Q"])

    def test_buttons(self):
        self.assertEqual(found("*Reset scale* beside *Reset everything*"), ["no button or box Reset everything"])

    def test_commands_and_options(self):
        self.assertEqual(found("`anomalis-batch info a.axm`, `--size 10x10`"), [])
        self.assertEqual(found("`anomalis-batch tell a.axm`"), ["no command anomalis-batch tell"])
        self.assertEqual(found("`--gone 3`"), ["no option --gone"])
        block = "```\nbuild/anomalis-batch info \\\n  a.axm --size 3  # --not-read\n```\n"
        self.assertEqual(found(block), ["no option --size of anomalis-batch info"])


if __name__ == "__main__":
    unittest.main()
