#!/usr/bin/env python3
"""Prints what whole surveys cost: rates on one core and on two, what a line costs beside its fit, memory.

    cmake --preset release && cmake --build --preset release --target anomalis-batch
    bench/survey_rate.py build/anomalis-batch [--lines 1000] [--stations 500] [--many 10000] [--folder DIR]

The surveys are those of make_survey.py. Rates are wall time: nothing else should run. The processor time beside
them tells what a busy machine hides.
"""
import argparse
import os
import shutil
import subprocess
import sys
import tempfile
import time

HERE = os.path.dirname(os.path.abspath(__file__))
FIND = "[find]\nkinds = \"thin\"\nalternatives = 1\n[invert]\nstarts = 0\n"


def make_survey(path, lines, stations):
    subprocess.run([sys.executable, os.path.join(HERE, "make_survey.py"), path, "--lines", str(lines), "--stations",
                    str(stations)], check=True)


def run(program, survey, commands, jobs, folder):
    """Wall time, processor time (s) and memory (MB) of one run into a folder."""
    plan = folder + ".toml"
    with open(plan, "w") as out:
        out.write(f'[source]\nfile = "{survey}"\ncrs = "EPSG:32754"\nfield = [50000, -55, 6]\n{commands}')
    start = time.monotonic()
    child = subprocess.Popen([program, "survey", plan, "-o", folder, "-j", str(jobs)], stdout=subprocess.DEVNULL,
                             stderr=subprocess.DEVNULL)
    _, status, usage = os.wait4(child.pid, 0)
    child.returncode = os.waitstatus_to_exitcode(status)
    if child.returncode != 0:
        sys.exit(f"{program} ended with {child.returncode}: {plan} is left there")
    return time.monotonic() - start, usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024


def size(folder):
    return sum(os.path.getsize(os.path.join(place, name)) for place, _, names in os.walk(folder) for name in names)


def row(what, lines, jobs, cost):
    wall, processor, memory = cost
    print(f"| {what} | {lines} | {jobs} | {wall:.2f} | {lines / wall:.1f} | {1e3 * processor / lines:.2f} "
          f"| {memory:.0f} |", flush=True)


def measure(options, folder):
    survey, many = os.path.join(folder, "survey.csv"), os.path.join(folder, "many.csv")
    make_survey(survey, options.lines, options.stations)
    print(f"{options.lines} lines of {options.stations} stations on a machine with {os.cpu_count()} cores\n")
    print("| What | Lines | -j | Wall time, s | Lines a second | Processor time a line, ms | Memory, MB |")
    print("|---|---:|---:|---:|---:|---:|---:|")
    walls = {}
    for jobs in (1, 2):
        results = os.path.join(folder, f"fits{jobs}")
        cost = run(options.program, survey, FIND, jobs, results)
        walls[jobs] = cost[0]
        row("import, find, invert", options.lines, jobs, cost)
    bytes_a_line = size(results) / options.lines
    for jobs in (1, 2):
        results = os.path.join(folder, f"imports{jobs}")
        row("import alone", options.lines, jobs, run(options.program, survey, "", jobs, results))
        row("nothing left to do", options.lines, jobs, run(options.program, survey, "", jobs, results))
    if options.many:
        make_survey(many, options.many, options.stations)
        row("import alone", options.many, 2, run(options.program, many, "", 2, os.path.join(folder, "many")))
    print(f"\nTwo cores do {walls[1] / walls[2]:.2f} times what one does; {bytes_a_line / 1e3:.0f} kB a line with fits")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("program", type=os.path.abspath)
    parser.add_argument("--lines", type=int, default=1000)
    parser.add_argument("--stations", type=int, default=500)
    parser.add_argument("--many", type=int, default=10000, help="lines of the survey whose memory is told; 0: none")
    parser.add_argument("--folder", help="where the surveys and their results come, and stay")
    options = parser.parse_args()
    folder = options.folder or tempfile.mkdtemp()
    os.makedirs(folder, exist_ok=True)
    try:
        measure(options, os.path.abspath(folder))
    finally:
        if not options.folder:
            shutil.rmtree(folder)


if __name__ == "__main__":
    main()
