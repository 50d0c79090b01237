#!/usr/bin/env python3
"""Compare the program with textbook formulas, laws and limits; write the tables into ../checks.md and limits.png.

  checks.py --tool build/anomalis-batch            about a minute
  checks.py --tool build/anomalis-batch --print    the tables alone, nothing is written

Needs numpy, and matplotlib for the picture.
"""
import argparse
import pathlib
import sys
import tempfile

sys.dont_write_bytecode = True
HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parents[1]))
import cases  # noqa: E402
import laws  # noqa: E402
import processing  # noqa: E402
from made_workspace import Folder  # noqa: E402

COEFFICIENTS = HERE.parents[2] / "src" / "field" / "igrf14.shc"


def table(heads, rows):
    return "\n".join(["| " + " | ".join(heads) + " |", "|" + "---|" * len(heads),
                      *("| " + " | ".join(row) + " |" for row in rows)])


def tables(folder):
    yield "bodies", table(["Body", "Against", "Sizes", "Height over the top", "Curves", "nT", "mGal"],
                          [case(folder).cells() for case in cases.CASES])
    yield "laws", table(["Law", "What was compared", "Curves", "nT", "mGal"], [law(folder).cells() for law in laws.LAWS])
    yield "processing", table(["What", "Against", "Largest difference"],
                              [processing.main_field(folder, COEFFICIENTS), processing.filters(folder),
                               processing.regionals(folder)])


def draw(folder):
    import matplotlib
    matplotlib.use("Agg")
    from matplotlib import pyplot
    matplotlib.rcParams.update({"font.size": 9, "svg.hashsalt": "1"})
    panels = [(laws.long_prism, "Long prism against the endless sheet", "length / depth"),
              (laws.deep_prism, "Deep prism against one without lower end", "depth extent / depth"),
              (laws.dipole_distance, "Cube against dipole and point of mass", "distance / size"),
              (laws.thin_sheet, "Thin sheet against its middle plane", "depth / width")]
    figure, axes = pyplot.subplots(2, 2, figsize=(7.2, 5.8), constrained_layout=True)
    for place, (limit, title, words) in zip(axes.flat, panels):
        ratios, mag, grav = limit(folder)
        place.loglog(ratios, mag, "o-", color="#1f77b4", markersize=3, label="magnetics")
        place.loglog(ratios, grav, "s--", color="#b3261e", markersize=3, label="gravity")
        place.axhline(6e-8, color="#999999", linewidth=0.8)
        place.set_title(title, fontsize=9)
        place.set_xlabel(words)
        place.set_ylim(2e-8, 2)
        place.grid(True, color="#e4e4e4")
        place.legend(fontsize=8)
    for place in axes[:, 0]:
        place.set_ylabel("largest difference / peak")
    figure.savefig(HERE / "limits.png", dpi=100, metadata={"Software": None})


def put(page, name, text):
    start, end = f"<!-- {name} -->", f"<!-- end of {name} -->"
    before, rest = page.split(start, 1)
    return before + start + "\n\n" + text + "\n\n" + end + rest.split(end, 1)[1]


def main():
    options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    options.add_argument("--tool", required=True)
    options.add_argument("--print", action="store_true", dest="only_print")
    given = options.parse_args()
    file = HERE.parent / "checks.md"
    with tempfile.TemporaryDirectory() as path:
        folder = Folder(given.tool, path)
        page = "" if given.only_print else file.read_text()
        for name, text in tables(folder):
            print(text + "\n")
            if page:
                page = put(page, name, text)
        if page:
            file.write_text(page)
            draw(folder)


if __name__ == "__main__":
    main()
