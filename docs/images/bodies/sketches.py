#!/usr/bin/env python3
"""Make the drawings of bodies.md: the outlines are those of the program, arrows and words are added here.

  sketches.py --tool build/examples/body_outlines            writes the drawings beside this script
  sketches.py --tool build/examples/body_outlines --check    ends with 1 where one is not what it would write

Standard library only.
"""
import argparse
import json
import pathlib
import subprocess
import sys

sys.dont_write_bytecode = True

import other_drawings as others  # noqa: E402
import sheet_drawings as sheets  # noqa: E402

HERE = pathlib.Path(__file__).resolve().parent


class Outlines:
    def __init__(self, tool):
        self.tool = tool

    def __call__(self, **values):
        words = " ".join(f"{name}={value}" for name, value in values.items())
        done = subprocess.run([self.tool, words], check=True, capture_output=True, text=True)
        return json.loads(done.stdout)


DRAWINGS = {"place": sheets.place, "sides": sheets.sides, "thin_sheet": sheets.thin_sheet, "thick_sheet": sheets.thick_sheet,
            "pipe": others.pipe, "wire": others.wire, "steps": others.steps, "sphere": others.sphere,
            "magnetisation": others.magnetisation}


def main():
    options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    options.add_argument("--tool", required=True)
    options.add_argument("--check", action="store_true")
    given = options.parse_args()
    outlines = Outlines(given.tool)
    stale = []
    for name, draw in DRAWINGS.items():
        text = draw(outlines).text()
        file = HERE / f"{name}.svg"
        if not given.check:
            file.write_text(text)
        elif not file.exists() or file.read_text() != text:
            stale.append(file.name)
    if stale:
        sys.exit(f"not what the program draws: {', '.join(stale)}; run {pathlib.Path(__file__).name} again")


if __name__ == "__main__":
    main()
