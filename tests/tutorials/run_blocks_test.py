"""The runner of the guide's blocks: a page that holds is run, and each way in which one may be wrong is found."""
import pathlib
import struct
import subprocess
import sys
import tempfile
import unittest
import zlib

import pages
import printed

RUNNER = pathlib.Path(__file__).resolve().parent / "run_blocks.py"


def fenced(language, text):
    return f"```{language}\n{text}\n```\n"


def png(width, height):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    rows = b"".join(b"\0" + b"\x80" * width for _ in range(height))
    head = struct.pack(">IIBBBBB", width, height, 8, 0, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", head) + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b"")


class Pages(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.root = pathlib.Path(self.folder.name)
        (self.root / "docs" / "tutorials").mkdir(parents=True)
        (self.root / "examples").mkdir()
        (self.root / "examples" / "line.dat").write_text("1 2\n", encoding="utf-8")

    def tearDown(self):
        self.folder.cleanup()

    def run_page(self, text, *options):
        page = self.root / "docs" / "tutorials" / "page.md"
        page.write_text(text, encoding="utf-8")
        run = subprocess.run([sys.executable, RUNNER, "--examples", self.root / "examples", *options, page],
                             capture_output=True, text=True, check=False)
        return run.returncode, run.stdout + run.stderr

    def fails_at(self, line, words, text, *options):
        status, told = self.run_page(text, *options)
        self.assertEqual(status, 1, told)
        self.assertIn(f"page.md:{line}: ", told)
        self.assertIn(words, told)

    def test_a_page_that_holds_is_run_in_one_folder_with_the_examples(self):
        status, told = self.run_page(
            "# A page\n\n" + fenced("sh", "cat examples/line.dat > mine\necho 3 >&2") + "\n" + fenced("text", "3") +
            fenced("python", "two = open('mine').read()") + "\nWords.\n" + fenced("python", "print(two, end='')") +
            fenced("text", "1 2"))
        self.assertEqual(status, 0, told)
        self.assertIn("3 blocks run", told)

    def test_output_that_is_not_what_the_page_says_is_found_in_its_line(self):
        text = fenced("sh", "echo one; echo two") + fenced("text", "one\nthree")
        self.fails_at(6, "not what the block of line 2 prints", text)

    def test_output_that_the_page_does_not_show_is_found(self):
        self.fails_at(6, "not what", fenced("sh", "echo one; echo two") + fenced("text", "one"))

    def test_numbers_of_python_that_changed_are_found(self):
        self.fails_at(5, "0.333", fenced("python", "print(1 / 3)") + fenced("text", "0.334"))

    def test_a_failing_command_is_found_in_its_line(self):
        self.fails_at(4, "ended with 3", "Words.\n" + fenced("sh", "true\n(exit 3)\ntrue"))

    def test_a_failing_command_of_a_pipe_is_found(self):
        self.fails_at(2, "ended with 1", fenced("sh", "false | cat"))

    def test_a_failing_statement_is_found_in_its_line(self):
        self.fails_at(3, "ZeroDivisionError", fenced("python", "one = 1\none / 0"))

    def test_a_failing_call_is_found_where_it_is_defined(self):
        self.fails_at(3, "ValueError", fenced("python", "def f():\n    raise ValueError") + fenced("python", "f()"))

    def test_an_interpreter_that_ends_is_found(self):
        self.fails_at(2, "interpreter ended with 7", fenced("python", "import os\nos._exit(7)"))

    def test_a_picture_that_no_block_makes_is_found(self):
        text = fenced("sh", "true") + "\n![A map](../images/tutorials/page/map.png)\n"
        self.fails_at(5, "no block makes the picture map.png", text)
        self.fails_at(5, "no block makes the picture map.png", text, "--pictures")

    def test_a_picture_that_does_not_lie_in_the_guide_is_found_and_can_be_made(self):
        (self.root / "examples" / "map.png").write_bytes(png(4, 3))
        text = fenced("sh", "cp examples/map.png .") + "\n![A map](../images/tutorials/page/map.png)\n"
        self.fails_at(5, "--pictures makes it", text)
        self.assertEqual(self.run_page(text, "--pictures")[0], 0)
        self.assertEqual((self.root / "docs/images/tutorials/page/map.png").read_bytes(), png(4, 3))
        self.assertEqual(self.run_page(text)[0], 0)
        (self.root / "examples" / "map.png").write_bytes(png(5, 3))
        self.fails_at(5, "another size", text)

    def test_another_picture_that_is_not_there_is_found(self):
        self.fails_at(5, "there is no picture", fenced("sh", "true") + "\n![A sketch](../images/sketch.png)\n")

    def test_what_is_not_run_is_left_out_and_what_is_hidden_is_run(self):
        status, told = self.run_page("<!-- run\necho 5 > five\n-->\n<!-- not run: needs a cluster -->\n" +
                                     fenced("sh", "false") + fenced("text", "nothing") +
                                     fenced("sh", "cat five") + fenced("text", "5"))
        self.assertEqual(status, 0, told)
        self.assertIn("2 blocks run", told)

    def test_a_block_can_be_a_file_of_the_others(self):
        status, told = self.run_page("<!-- file: a.toml -->\n" + fenced("toml", "a = 1") + fenced("sh", "cat a.toml") +
                                     fenced("text", "a = 1"))
        self.assertEqual(status, 0, told)

    def test_a_page_without_blocks_or_with_an_open_one_is_no_page(self):
        self.fails_at(1, "no block", "# Words\n")
        self.fails_at(2, "ends what begins here", "Words.\n```sh\ntrue\n")
        self.fails_at(2, "there is none", "<!-- not run: why -->\n")


class Printed(unittest.TestCase):
    def test_numbers_are_compared_to_the_digits_shown(self):
        for shown, there, same in (("44.2", "44.15073", True), ("44.2", "44.25", True), ("44.2", "44.26", False),
                                   ("44", "44.49", True), ("44", "45", False), ("-1", "1", False),
                                   ("44.20", "44.2", False), ("1.3e-5", "1.289384e-05", True),
                                   ("1.3e-5", "1.36e-05", False), ("120", "124", False)):
            self.assertEqual(printed.same_line(f"depth {shown} m", f"depth {there} m"), same, f"{shown} {there}")

    def test_words_are_compared_as_they_stand(self):
        self.assertFalse(printed.same_line("a  b", "a b"))
        self.assertFalse(printed.same_line("line1.csv", "line2.csv"))
        self.assertFalse(printed.same_line("a.c", "abc"))

    def test_how_far_a_survey_is_is_no_output(self):
        told = ("0 of 6 lines\n1 of 6 lines (1 done before), 2 failed, 2.0 lines/min, 3 min left\n"
                "6 of 6 lines to do -> results\n6 lines done in 4 min\n")
        self.assertEqual(printed.without_progress(told), "6 of 6 lines to do -> results\n6 lines done in 4 min\n")

    def test_dots_stand_for_anything(self):
        self.assertTrue(printed.same_line("done in ... s, 1 failed", "done in 3 s, 1 failed"))
        self.assertFalse(printed.same_line("done in ... s, 1 failed", "done in 3 s, 2 failed"))
        self.assertIsNone(printed.first_difference("a\n...\nz\n", "a\nb\nc\nz\n"))
        self.assertIsNone(printed.first_difference("a\n...\nz", "a\nz\n"))
        self.assertEqual(printed.first_difference("a\n...\nz", "a\nb\n"), 2)
        self.assertEqual(printed.first_difference("a\nb", "a\nb\nc"), 2)
        self.assertIsNone(printed.first_difference("...\nb\n...", "a\nb\nc\nb"))


class Blocks(unittest.TestCase):
    def test_only_a_text_directly_behind_a_block_is_its_output(self):
        blocks = pages.blocks_of(fenced("sh", "a") + "\n" + fenced("text", "A") + fenced("sh", "b") + "Words.\n" +
                                 fenced("text", "no output"))
        self.assertEqual([(block.text, block.expected) for block in blocks], [("a", "A"), ("b", None)])


if __name__ == "__main__":
    unittest.main()
