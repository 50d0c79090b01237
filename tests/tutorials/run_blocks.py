#!/usr/bin/env python3
"""Runs the code of pages of the guide: run_blocks.py [options] PAGE.md...

The blocks `sh` and `python` of a page run one after the other in one folder of their own, which holds the examples; what
a block `text` directly behind says must be printed. A picture that the page shows as `images/tutorials/PAGE/FILE` must
be what the blocks leave as FILE. Says file and line of the first thing that fails in each page, and ends with 1 then.
"""
import argparse
import os
import pathlib
import shutil
import struct
import subprocess
import sys
import tempfile

import pages
import printed
from block_runners import BlockFault, PythonBlocks, ShellBlocks

SOURCE = pathlib.Path(__file__).resolve().parents[2]


class Failure(Exception):
    def __init__(self, page, line, text):
        super().__init__(f"{page}:{line}: {text}")


def main():
    options = read_options()
    failures = 0
    for page in options.pages:
        try:
            count = run_page(page, options)
        except (Failure, pages.PageFault) as failure:
            where = "" if isinstance(failure, Failure) else f"{page}:{failure.line}: "
            print(f"{where}{failure}", file=sys.stderr)
            failures += 1
        else:
            print(f"{page}: {count} blocks run")
    return 1 if failures else 0


def read_options():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("pages", nargs="+", type=pathlib.Path, metavar="PAGE.md")
    parser.add_argument("--tool", type=pathlib.Path, help="the anomalis-batch that the blocks call")
    parser.add_argument("--examples", type=pathlib.Path, default=SOURCE / "examples")
    parser.add_argument("--pictures", action="store_true", help="write the pictures of the pages anew")
    parser.add_argument("--keep", type=pathlib.Path, help="leave the folders of the blocks here")
    parser.add_argument("--only", choices=pages.LANGUAGES, help="run the blocks of this language alone")
    return parser.parse_args()


def run_page(page, options):
    text = page.read_text(encoding="utf-8")
    blocks = [block for block in pages.blocks_of(text) if not block.skipped]
    if options.only:
        blocks = [block for block in blocks if block.language in (options.only, "file")]
    if not blocks:
        raise Failure(page, 1, "has no block to run")
    with tempfile.TemporaryDirectory() as temporary:
        folder = (options.keep or pathlib.Path(temporary)) / page.stem
        shutil.rmtree(folder, ignore_errors=True)
        prepare(folder, options)
        run_blocks(page, blocks, folder, options)
        for picture in pages.pictures_of(text):
            check_picture(page, picture, folder, options)
    return len(blocks)


def prepare(folder, options):
    folder.mkdir(parents=True)
    shutil.copytree(options.examples, folder / "examples")
    if options.tool:
        (folder / "build").mkdir()
        (folder / "build" / "anomalis-batch").symlink_to(options.tool.resolve())


def run_blocks(page, blocks, folder, options):
    environment = dict(os.environ, MPLBACKEND="Agg", QT_QPA_PLATFORM="offscreen", HOME=str(folder), COLUMNS="120",
                       PYTHONDONTWRITEBYTECODE="1")
    if options.tool:
        environment["PATH"] = f"{options.tool.resolve().parent}:{environment['PATH']}"
    runners = {"sh": ShellBlocks(folder, environment), "python": PythonBlocks(folder, environment, page)}
    try:
        for block in blocks:
            if block.file:
                (folder / block.file).write_text(block.text, encoding="utf-8")
            else:
                run_block(page, block, runners[block.language])
    finally:
        runners["python"].close()


def run_block(page, block, runner):
    try:
        output = runner.run(block)
    except BlockFault as fault:
        raise Failure(page, block.line + fault.line, f"{fault}\n{indented(fault.output)}") from fault
    if block.expected is None:
        return
    output = printed.without_progress(output)
    difference = printed.first_difference(block.expected, output)
    if difference is not None:
        line = min(difference, len(block.expected.rstrip().split("\n")))
        raise Failure(page, block.expected_line + line,
                      f"this is not what the block of line {block.line} prints:\n{indented(output)}")


def check_picture(page, picture, folder, options):
    target = (page.parent / picture.target).resolve()
    if target.parent.parent.name != "tutorials" or target.parent.parent.parent.name != "images":
        if not target.exists():
            raise Failure(page, picture.line, f"there is no picture {target}")
        return
    made = folder / target.name
    if not made.exists():
        raise Failure(page, picture.line, f"no block makes the picture {target.name}")
    if options.pictures:
        target.parent.mkdir(parents=True, exist_ok=True)
        shutil.copyfile(made, target)
    if not target.exists():
        raise Failure(page, picture.line, f"there is no picture {target}; --pictures makes it")
    if png_size(made) != png_size(target):
        raise Failure(page, picture.line, f"{target.name} has another size now; --pictures makes it anew")


def png_size(path):
    """Width and height in pixels; None where the file is no PNG."""
    head = path.read_bytes()[:24]
    return struct.unpack(">II", head[16:]) if head.startswith(b"\x89PNG\r\n\x1a\n") else None


def indented(text):
    return "\n".join("    " + line for line in text.rstrip().split("\n"))


if __name__ == "__main__":
    sys.exit(main())
