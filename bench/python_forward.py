#!/usr/bin/python3
"""What `anomalis.forward` costs against the program's own calculation: 50 bodies at 8193 stations, magnetics by the exact
formulas. Both are measured in turns, and the medians of all turns are compared.

    PYTHONPATH=FOLDER/python bench/python_forward.py FOLDER/bench/station_forward [--cores N]
"""
import argparse
import statistics
import subprocess
import time

import numpy

import anomalis

options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
options.add_argument("program")
options.add_argument("--bodies", type=int, default=50)
options.add_argument("--stations", type=int, default=8193)
options.add_argument("--cores", type=int, default=0)
options.add_argument("--rounds", type=int, default=12)
choice = options.parse_args()

TURNS = 25  # of one round
FIELD = (52000.0, -61.0, 5.0)
anomalis.limit_threads(choice.cores)
east = 12.5 * numpy.arange(choice.stations)
north = numpy.zeros(choice.stations)
up = 300.0 + 5 * numpy.sin(east / 400)
for limited, length, depth in ((0, 0, 0), (1, 600, 400)):
    bodies = [
        anomalis.Body("thick_sheet", distance=east[-1] * (i + 0.5) / choice.bodies, top=240, strike=5, dip=50 + i, width=40,
                      susc=20000 + 100 * i, length=length, depth_extent=depth)
        for i in range(choice.bodies)
    ]
    python, program = [], []
    for _ in range(choice.rounds):
        times = []
        for _ in range(TURNS + 1):
            start = time.perf_counter()
            anomalis.forward(bodies, east, north, up, field=FIELD)
            times.append(1e3 * (time.perf_counter() - start))
        python.append(statistics.median(times[1:]))
        told = subprocess.run([choice.program, *map(str, (choice.bodies, choice.stations, limited, choice.cores, TURNS))],
                              capture_output=True, text=True, check=True)
        program.append(float(told.stdout))
    one, other = statistics.median(python), statistics.median(program)
    print(f"{choice.bodies} {'limited' if limited else 'endless'} sheets at {choice.stations} stations: "
          f"anomalis.forward {one:.2f} ms, the program {other:.2f} ms, ratio {one / other:.3f}")
