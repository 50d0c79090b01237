#!/usr/bin/env python3
"""Make the pictures and print the table of regional.md: one dyke on a regional that bends, fitted in several ways.

  regional.py --tool build/anomalis-batch            draws, and prints the table
  regional.py --tool build/anomalis-batch --check    draws nothing; ends with 1 where regional.md has another table

Standard library only.
"""
import argparse
import json
import pathlib
import random
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
sys.dont_write_bytecode = True
sys.path.insert(0, str(HERE.parents[1]))
from made_workspace import Folder  # noqa: E402

TRUE = dict(type=2, name="Dyke", distance=2000, top=-120, strike=0, dip=60, width=90, susc=6000)
START = {**TRUE, "distance": 2060, "top": -80, "dip": 90, "susc": 4000, "vary": ("distance", "top", "dip", "susc")}
FIELD = (52000, -55, 5)
STATIONS = [(400000 + 20.0 * i, 6500000.0, 0.0) for i in range(201)]


def readings(folder):
    dice = random.Random(20)
    dyke = folder.responses("dyke", STATIONS, [TRUE], field=FIELD)[0]
    values = []
    for (east, _, _), (anomaly, _) in zip(STATIONS, dyke):
        t = (east - 402000) / 2000
        values.append(52000 + 60 * t - 45 * t * t + anomaly + dice.gauss(0, 1))
    return values


def fitted(folder, values, name, regional, filters=(0, 0)):
    file = folder.write(name, STATIONS, [values], [START], mag=4, field=FIELD, filters=filters, base=-99999,
                        floats=int(regional == "none"))
    out, report = folder.path / f"{name}_out.axm", folder.path / f"{name}.json"
    folder.run("invert", file, "--regional", regional, "-o", out, "--report", report)
    return out, json.loads(report.read_text())


def main():
    options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    options.add_argument("--tool", required=True)
    options.add_argument("--check", action="store_true")
    given = options.parse_args()
    page, stale = (HERE.parents[1] / "reference" / "regional.md").read_text().splitlines(), []
    with tempfile.TemporaryDirectory() as path:
        folder = Folder(given.tool, path)
        values = readings(folder)
        cases = [("Base level floats", "none", (0, 0)), ("Residual filter, half-width 20 stations", "none", (0, 20)),
                 ("Residual filter, half-width 60 stations", "none", (0, 60)), ("Regional: level", "0", (0, 0)),
                 ("Regional: slope", "1", (0, 0)), ("Regional: bend", "2", (0, 0)), ("Regional: cubic", "3", (0, 0))]
        print("| Treatment | rms, nT | place, m | depth of the top, m | dip, ° | susceptibility, µSI |")
        print("|---|---|---|---|---|---|\n| *truth* | *1.0* | *2000* | *120* | *60* | *6000* |")
        for words, regional, filters in cases:
            out, report = fitted(folder, values, "case", regional, filters)
            cells = []
            for parameter, interval, sign in zip(report["parameters"], report["intervals"], (1, -1, 1, 1)):
                half = None if not interval or None in interval else (interval[1] - interval[0]) / 2
                known = half is not None and half < abs(parameter["final"])
                cells.append(f"{sign * parameter['final']:.0f} ± {f'{half:.0f}' if known else '?'}")
            row = f"| {words} | {report['rms']:.1f} | {' | '.join(cells)} |"
            print(row)
            # Where a body runs off as a regional, how far is chance: the misfit alone is told for certain.
            sure = row if regional in ("2", "3") else row[:row.index("|", row.index("|", 2) + 1)]
            if not any(line.startswith(sure) for line in page):
                stale.append(words)
            for picture in () if given.check else {"Regional: bend": ["bend"], "Base level floats": ["level"]}.get(words, ()):
                folder.run("render", out, "--view", "mag", "--size", "620x230", "-o", HERE / f"{picture}.png")
    if stale:
        sys.exit("regional.md has another row for: " + ", ".join(stale))


if __name__ == "__main__":
    main()
