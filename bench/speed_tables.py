#!/usr/bin/env python3
"""Prints docs/speed.md: the tables of the benches of speed over sizes, made in one run on one machine.

    cmake --preset bench && cmake --build --preset bench
    docs/speed.sh build/bench

Where GMT (Debian: gmt) and pandas (python3-pandas) are installed, what they take for the same work stands beside ours.
"""
import json
import math
import os
import resource
import shutil
import subprocess
import sys
import tempfile

TURNS = 5


def seconds(command):
    """The least processor time of a command, its children's included."""
    least = math.inf
    for _ in range(TURNS):
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        with tempfile.TemporaryDirectory() as folder:  # GMT leaves a file of its history where it runs
            subprocess.run(command, check=True, cwd=folder, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
        least = min(least, after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime)
    return least


def table(head, rows):
    print("| " + " | ".join(head) + " |")
    print("|---" + "|---:" * (len(head) - 1) + "|")
    for row in rows:
        print("| " + " | ".join(row) + " |")
    print()


def short(number):
    return f"{number:.3g}" if abs(number) < 1e4 else f"{number:,.0f}"


USUAL = {"name", "family_index", "per_family_instance_index", "run_name", "run_type", "repetitions", "repetition_index",
         "threads", "iterations", "real_time", "cpu_time", "time_unit"}


def benchmarks(build, program, pattern):
    out = subprocess.run([os.path.join(build, "bench", program), f"--benchmark_filter={pattern}",
                          "--benchmark_format=json"], check=True, capture_output=True, text=True).stdout
    return json.loads(out)["benchmarks"]


def counters(one):
    return {key: value for key, value in one.items() if key not in USUAL and isinstance(value, (int, float))}


def name_of(one):
    """The label, with the arguments where they have names."""
    name = one["name"].split("/iterations")[0].replace("/manual_time", "")
    if "label" not in one:
        return name
    return " ".join([one["label"], *(part for part in name.split("/")[1:] if ":" in part and "kind" not in part)])


def benchmark_tables(build, program, pattern="."):
    """One table for each set of counters."""
    groups = {}
    for one in benchmarks(build, program, pattern):
        groups.setdefault(tuple(counters(one)), []).append(one)
    for names, ones in groups.items():
        if names:
            clean = [name_of(one) for one in ones]
            table(["", *(name.replace("_", " ") for name in names)],
                  [[name, *(short(one[key]) for key in names)] for name, one in zip(clean, ones)])


def printed(build, program, *arguments):
    print("```")
    print(subprocess.run([os.path.join(build, "bench", program), *arguments], check=True, capture_output=True,
                         text=True).stdout.rstrip())
    print("```\n")


# --- what others take ---

STATIONS = 8193


def polygon_file(folder, corners):
    path = os.path.join(folder, f"polygon{corners}.txt")
    with open(path, "w") as file:
        file.write("> 1000\n")
        for k in range(corners):
            angle = 2 * math.pi * k / corners
            file.write(f"{5000 + 500 * math.cos(angle)} {800 + 500 * math.sin(angle)}\n")
    return path


def gmt_polygon(folder):
    """Nanoseconds a station and corner of talwani2d, from two numbers of corners."""
    few, many = 64, 2064
    cost = [seconds(["gmt", "talwani2d", polygon_file(folder, n), f"-T0/10000/{STATIONS}+n", "-bo2d"])
            for n in (few, many)]
    return (cost[1] - cost[0]) / (many - few) / STATIONS * 1e9


def gmt_body(folder, body, channel):
    """Nanoseconds a station of gmtgravmag3d, from two grids of stations."""
    cost, stations = [], []
    for east, north in ((1000, 300), (10000, 3000)):
        cost.append(seconds(["gmt", "gmtgravmag3d", f"-M+s{body}", f"-R0/{east}/0/{north}", "-I10", channel,
                             "-G" + os.path.join(folder, "grid.nc")]))
        stations.append((east // 10 + 1) * (north // 10 + 1))
    return (cost[1] - cost[0]) / (stations[1] - stations[0]) * 1e9


def peers(build):
    if not shutil.which("gmt"):
        print("GMT is not installed here.\n")
        return
    version = subprocess.run(["gmt", "--version"], check=True, capture_output=True, text=True).stdout.strip()
    rows = []

    def row(what, theirs, ours):
        rows.append([what, short(theirs), short(ours), f"{theirs / ours:.1f}"])

    with tempfile.TemporaryDirectory() as folder:
        ours = {name_of(one): one for one in benchmarks(build, "bench_peers", "prism/8193|polygon/500|polyhedron/48")}
        row("gravity of a plane polygon, a station and corner", gmt_polygon(folder),
            ours["polygon/500"]["gravity_ns_an_edge"])
        prism = "prism,2000/1000/500/-800/5000/1500"
        row("gravity of a prism, a station", gmt_body(folder, prism, "-C1000"), ours["prism/8193"]["gravity_ns"])
        row("anomaly of a prism, a station", gmt_body(folder, prism, "-H10/60/1000/10/60"),
            ours["prism/8193"]["field_ns"])
    table(["", f"GMT {version}, ns", "Anomalis, ns", "times"], rows)


def pandas_load():
    """Seconds of one core, by lines, of a data frame from the same columns; none where it is not installed."""
    code = ("import sys, time, pandas\n"
            "start = time.process_time()\n"
            "pandas.read_csv(sys.argv[1], sep=r'\\s+', header=None)\n"
            "print(time.process_time() - start)\n")
    python = next((one for one in ("/usr/bin/python3", sys.executable)
                   if subprocess.run([one, "-c", "import pandas"], capture_output=True).returncode == 0), None)
    if python is None:
        print("pandas is not installed here.\n")
        return
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "line.dat")
        with open(path, "w") as file:
            for i in range(1_000_000):
                file.write(f"10 {450000 + 0.5 * i:.2f} {6500000 + 0.1 * i:.2f} {i} {51000 + i % 977 * 0.01:.3f} "
                           f"{i % 83 * 0.001:.4f} 80.0 20.0\n")
        took = [float(subprocess.run([python, "-c", code, path], check=True, capture_output=True, text=True).stdout)
                for _ in range(3)]
    print(f"A data frame of pandas from 10^6 lines of eight columns takes {min(took) * 1e3:.0f} ms of processor time.\n")


def start(build):
    """The batch tool's start, and an empty program's beside it."""
    script = os.path.join(os.path.dirname(os.path.abspath(__file__)), "start.py")
    print("```")
    out = subprocess.run([sys.executable, script, os.path.join(build, "anomalis-batch")], check=True,
                         capture_output=True, text=True).stdout
    print(out.replace(os.path.join(build, ""), "").rstrip())
    print("```\n")


def processor():
    with open("/proc/cpuinfo") as file:
        models = [line.split(":", 1)[1].strip() for line in file if line.startswith("model name")]
    return f"{models[0] if models else 'a processor without a name'}, {len(os.sched_getaffinity(0))} cores"


def main():
    if len(sys.argv) != 2:
        sys.exit("usage: bench/speed_tables.py BUILD")
    build = sys.argv[1]
    print("# What things cost\n")
    print("Made by `docs/speed.sh` from the benches of the same names in one run; the ratios, not the times, are what\n"
          f"compares between machines. This one: {processor()}.\n")
    for title, make in SECTIONS:
        print(f"## {title}\n")
        make(build)
        sys.stdout.flush()


SECTIONS = [
    ("Width, depth, spacing and length of the line", lambda build: printed(build, "bench_cliffs")),
    ("Stations, bodies, facets, channels and threads", lambda build: printed(build, "bench_growth")),
    ("Kernels against textbook formulas", lambda build: benchmark_tables(build, "bench_peers")),
    ("Kernels against GMT", peers),
    ("Exact and classic formulas", lambda build: benchmark_tables(build, "bench_exact")),
    ("Loading a data file", lambda build: (printed(build, "bench_load"), pandas_load())),
    ("Tables and dumps", lambda build: benchmark_tables(build, "bench_tables")),
    ("Drawings", lambda build: benchmark_tables(build, "bench_dxf")),
    ("Filters", lambda build: benchmark_tables(build, "bench_filter", "chain_of_one_stage")),
    ("Start of the batch tool", start),
    ("A step of a bar in the window", lambda build: benchmark_tables(build, "bench_window", "a_step_over_sizes")),
    ("Charts", lambda build: benchmark_tables(build, "bench_chart")),
]

if __name__ == "__main__":
    os.environ.setdefault("QT_QPA_PLATFORM", "offscreen")
    main()
