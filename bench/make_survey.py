#!/usr/bin/env python3
"""Writes a survey of parallel lines over dykes that are known, for measuring what whole surveys cost.

    make_survey.py survey.csv --lines 1000 --stations 500 [--oblique 100] [--truth dykes.csv]

Lines run east, 10 m from station to station and 100 m from line to line, the sensor 60 m above flat ground.
Dykes are thin sheets without end in depth and along strike, each met by all lines along its strike: the total
field over one is C (h cos q + x sin q) / (x^2 + h^2) with x the way from it across its strike, h its depth
below the sensor and q what dip and field make of it (Gay, 1963). On a level and a slope lies white noise of 1 nT.
"""

import argparse
import math
import random

EAST, NORTH = 450000.0, 7550000.0  # m, UTM 54 S
STATION_SPACING, LINE_SPACING = 10.0, 100.0  # m
SENSOR, GROUND = 360.0, 300.0  # m
NOISE = 1.0  # nT


def dykes(chance, width, oblique):
    """Three of them: where they cross the first line (m), strike as m of way along a line for each m from
    line to line, depth below ground (m), strength (nT) and phase (radians). They run across the lines to within
    a quarter of a degree, so that 1000 lines meet them all; `oblique` times as much for fewer lines."""
    places = sorted(chance.uniform((0.15 + 0.25 * k) * width, (0.25 + 0.25 * k) * width) for k in range(3))
    return [
        {
            "place": place,
            "shift": math.tan(math.radians(chance.uniform(-4, 4))) / 25 * oblique,
            "depth": chance.uniform(20, 80),
            "strength": chance.uniform(60, 300),
            "phase": math.radians(chance.uniform(-60, 60)),
        }
        for place in places
    ]


def field(distance, line, all_dykes):
    total = 0.0
    for dyke in all_dykes:
        x = (distance - dyke["place"] - dyke["shift"] * line * LINE_SPACING) / math.hypot(1, dyke["shift"])
        h = dyke["depth"] + SENSOR - GROUND
        total += dyke["strength"] * h * (h * math.cos(dyke["phase"]) + x * math.sin(dyke["phase"])) / (x * x + h * h)
    return total


def write(options):
    chance = random.Random(options.seed)
    width = STATION_SPACING * options.stations
    all_dykes = dykes(chance, width, options.oblique)
    with open(options.output, "w") as out:
        out.write("line,easting,northing,height,dtm,tmi\n")
        for line in range(options.lines):
            north = NORTH + LINE_SPACING * line
            slope = 20 * math.sin(line / 7)
            rows = []
            for i in range(options.stations):
                distance = STATION_SPACING * i
                value = field(distance, line, all_dykes) + slope * distance / width + chance.gauss(0, NOISE)
                rows.append(f"{10000 + line},{EAST + distance:.1f},{north:.1f},{SENSOR:.0f},{GROUND:.0f},{value:.2f}\n")
            out.writelines(rows)
    if options.truth:
        with open(options.truth, "w") as out:
            out.write("dyke,first_easting_m,shift_per_line_m,depth_m\n")
            for number, dyke in enumerate(all_dykes, 1):
                shift = dyke["shift"] * LINE_SPACING
                out.write(f"{number},{EAST + dyke['place']:.1f},{shift:.3f},{dyke['depth']:.1f}\n")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("output")
    parser.add_argument("--lines", type=int, default=1000)
    parser.add_argument("--stations", type=int, default=500)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--oblique", type=float, default=1)
    parser.add_argument("--truth")
    write(parser.parse_args())


if __name__ == "__main__":
    main()
