#!/usr/bin/env python3
"""Make the pictures of formulas.md with the batch tool.

  pictures.py --tool build/anomalis-batch            all pictures, or those of the names that are given
  pictures.py --tool build/anomalis-batch --check    draws nothing; ends with 1 where formulas.md tells another difference

Each picture is one workspace whose observed data (black) are the exact curve of its body; the calculated curve
(green) is the classic one. Standard library only. Prints the numbers of the table in formulas.md.
"""
import argparse
import json
import math
import pathlib
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
sys.dont_write_bytecode = True
sys.path.insert(0, str(HERE.parents[1]))
from made_workspace import workspace_text  # noqa: E402

FIELD = (56000, -65, -4)
OFF = 0.3  # m that no corner stands straight below a station, where the classic gravity has no value

# name: line bearing, body, and what differs from the usual survey
CASES = {
    "dyke_east_west": dict(bearing=90, strike=0, dip=70),
    "dyke_oblique": dict(bearing=0, strike=315, dip=70),
    "dyke_equator": dict(bearing=90, strike=0, dip=70, field=(35000, -8, -4)),
    "dyke_limited_depth": dict(bearing=90, strike=0, dip=70, depth=250),
    "thin_sheet_length": dict(type=1, dip=60, width=10, length=250),
    "scarp": dict(dip=90, width=60, scarp=118),
    "demagnetised": dict(dip=45, width=40, susc=1e6, demagnetised=1),
    "step": dict(type=4, dip=90, width=100, depth=200),
    "pipe": dict(type=16, dip=0, width=60, length=300),
    "wire": dict(type=17, dip=0, width=2, length=0, susc=3000, height=6, spacing=1),
    "sphere": dict(type=6, width=80, height=100),
    "gravity_endless": dict(channel="grav", dip=70, depth=300),
    "gravity_level": dict(channel="grav", dip=45, depth=250, height=0),
    "gravity_slope": dict(channel="grav", dip=60, depth=250, length=300, slope=20),
    "gravity_thin": dict(channel="grav", type=1, dip=40, width=30, depth=250, length=250),
}


def stations(c):
    bearing = math.radians(c.get("bearing", 0))
    spacing = c.get("spacing", 5)
    rows = []
    for i in range(401):
        along = (i - 200) * spacing
        east, north = along * math.sin(bearing), along * math.cos(bearing)
        sensor = -c["scarp"] if "scarp" in c and along < 0 else 0.0
        rows.append((east + 5000, north + 5000, sensor))
    return rows


def workspace(c, name, formulas):
    body = {key: c[key] for key in ("type", "demagnetised", "dip", "length", "slope", "susc") if key in c}
    body.update(name=name, distance=200 * c.get("spacing", 5) + OFF, top=-c.get("height", 60), strike=c.get("strike", 270),
                width=c.get("width", 100), depth_extent=c.get("depth", 0), density=2.67)
    column = {c.get("channel", "mag"): 4}
    return workspace_text(f"{name}.dat", [body], c.get("field", FIELD), formulas=formulas, **column)


def curve(tool, folder, c, name, formulas):
    (folder / f"{name}.axm").write_text(workspace(c, name, "classic"), newline="")
    out = folder / "dump.json"
    subprocess.run([tool, "dump", "--formulas", formulas, folder / f"{name}.axm", "-o", out], check=True)
    column = 1 if c.get("channel") == "grav" else 0
    return [row[column] for row in json.loads(out.read_text())["bodies"][0]["response"]]


def write_data(folder, c, name, values):
    text = "".join(f"{e:.3f} {n:.3f} {z:.3f} {v:.5f}\n" for (e, n, z), v in zip(stations(c), values))
    (folder / f"{name}.dat").write_text(text)


def difference(tool, folder, c, name):
    """The largest difference in %, as the page tells it; prints its row."""
    write_data(folder, c, name, [math.sin(i) for i in range(401)])
    exact = curve(tool, folder, c, name, "exact")
    classic = curve(tool, folder, c, name, "classic")
    write_data(folder, c, name, exact)
    peak = max(map(abs, exact))
    off = max(abs(a - b) for a, b in zip(exact, classic)) / peak
    print(f"| {name} | {min(exact):.4g}..{max(exact):.4g} | {min(classic):.4g}..{max(classic):.4g} | {100 * off:.0f} % |")
    return f"{100 * off:.0f} %"


def main():
    a = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    a.add_argument("--tool", required=True)
    a.add_argument("--check", action="store_true")
    a.add_argument("names", nargs="*")
    args = a.parse_args()
    tool = pathlib.Path(args.tool).resolve()
    page, stale = (HERE.parent / "formulas.md").read_text().splitlines(), []
    with tempfile.TemporaryDirectory() as folder:
        for name in args.names or CASES:
            told = difference(tool, pathlib.Path(folder), CASES[name], name)
            if not any(f"formulas/{name}.png" in line and f"| {told} |" in line for line in page):
                stale.append(name)
            if not args.check:
                subprocess.run([tool, "render", f"{folder}/{name}.axm", "--size", "560x360", "-o", HERE / f"{name}.png"], check=True)
    if stale:
        raise SystemExit("formulas.md tells another difference: " + ", ".join(stale))


if __name__ == "__main__":
    main()
