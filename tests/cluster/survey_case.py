"""A survey of known dykes, and what must be the same of it whoever did it."""
import csv
import hashlib
import os
import pathlib
import subprocess
import sys

root = pathlib.Path(__file__).resolve().parents[2]
tables = ["bodies.csv", "lines.csv", "survey.gpkg"]

plan_text = """name = "dykes"
regional = 1

[source]
file = "survey.csv"
crs = "EPSG:32754"
field = [50000, -55, 6]

[find]
bodies = {bodies}
kinds = "thin"
"""


class Failed(Exception):
    """Something that must not be."""


def check(fact, text):
    if not fact:
        raise Failed(text)


class Survey:
    """A survey file and its plan in a folder."""

    def __init__(self, folder, tool, lines, stations, bodies=1):
        self.folder, self.tool, self.lines = pathlib.Path(folder), tool, lines
        generator = root / "bench" / "make_survey.py"
        subprocess.run(
            [sys.executable, generator, self.folder / "survey.csv", f"--lines={lines}", f"--stations={stations}"],
            check=True)
        self.plan = self.folder / "plan.toml"
        self.plan.write_text(plan_text.format(bodies=bodies))

    def command(self, results, *options):
        return [self.tool, "survey", self.plan, "-o", results, *options]

    def run(self, results, *options):
        """One run that nobody disturbs."""
        done = subprocess.run(self.command(results, *options), stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                              text=True)
        check(done.returncode == 0, f"ended with {done.returncode}:\n{done.stdout[-3000:]}")
        return done.stdout

    def check_whole(self, results):
        """No line lost, none twice, nothing left half done."""
        results = pathlib.Path(results)
        names = sorted(os.listdir(results / "lines"))
        check(not [name for name in names if name.startswith(".")], f"left half done: {names[:5]}")
        check(len(names) == self.lines, f"{len(names)} of {self.lines} lines are there")
        for table in ["lines.csv", "seconds.csv"]:
            with open(results / table, newline="") as file:
                rows = [row["line"] for row in csv.DictReader(file)]
            check(sorted(rows) == names, f"{table} has {len(rows)} rows, {len(set(rows))} of them different")


def lines_done(results):
    """Those in their places, with what tells when they came there."""
    folder = pathlib.Path(results) / "lines"
    if not folder.is_dir():
        return {}
    return {name: (folder / name / "result.json").stat().st_mtime_ns
            for name in os.listdir(folder) if not name.startswith(".")}


def digests(results):
    return {name: hashlib.sha256((pathlib.Path(results) / name).read_bytes()).hexdigest() for name in tables}


def check_same_tables(one, other, what):
    first, second = digests(one), digests(other)
    for name in tables:
        check(first[name] == second[name], f"{name} differs {what}: compare {one} and {other}")
