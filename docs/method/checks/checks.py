#!/usr/bin/env python3
"""Compare the program with textbook formulas, laws and limits; write the tables into ../checks.md and limits.png.

  checks.py --tool build/anomalis-batch            about a minute
  checks.py --tool build/anomalis-batch --check    nothing is written; ends with 1 where a difference is too large

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


def results(folder):
    yield "bodies", ["Body, and against what", "Sizes", "Height over the top", "nT", "mGal"], [c(folder) for c in cases.CASES]
    yield "laws", ["Law, and what was compared", "nT", "mGal"], [law(folder) for law in laws.LAWS]
    yield "processing", ["What", "Against", "Largest difference"], [processing.main_field(folder, COEFFICIENTS),
                                                                    processing.filters(folder), processing.regionals(folder)]


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
    options.add_argument("--check", action="store_true")
    given = options.parse_args()
    file = HERE.parent / "checks.md"
    page, failed = file.read_text(), []
    with tempfile.TemporaryDirectory() as path:
        folder = Folder(given.tool, path)
        for name, heads, rows in results(folder):
            text = table(heads, [row.cells() for row in rows])
            print(text + "\n")
            page = put(page, name, text)
            failed += [row.cells()[0] for row in rows if row.failed()]
        if not given.check:
            file.write_text(page)
            draw(folder)
    if failed:
        sys.exit("too far off: " + "; ".join(failed))


if __name__ == "__main__":
    main()
