"""The earth's field, the filters and the regional against formulas of one line each."""
import json
import math

import numpy as np
import textbook as book
from cases import off


class Found:
    def __init__(self, what, against, worst, most, unit=""):
        self.words, self.worst, self.most, self.unit = [what, against], worst, most, unit

    def failed(self):
        return self.worst > self.most

    def cells(self):
        return [*self.words, f"{self.worst:.0e}{self.unit}"]


def main_field(folder, coefficients):
    dice = np.random.default_rng(41)
    years, table = book.read_shc(coefficients)
    worst = 0.0
    for _ in range(60):
        year = round(float(dice.uniform(1900, 2029.9)), 3)
        place = [round(float(v), 4) for v in (dice.uniform(-89, 89), dice.uniform(-180, 180), dice.uniform(-10, 9000))]
        told = json.loads(folder.run("field", "--at=" + ",".join(map(str, place)), "--date", year, "--json"))
        known = book.main_field(years, table, year, *place)
        worst = max(worst, *(abs(told[f"{name}_nT"] - v) for name, v in zip(("north", "east", "down"), known)))
    return Found("IGRF-14 at 60 places from 1900 to 2030, up to 9 km high", "potential of its coefficients, differenced", worst,
                 1e-6, " nT")


def kernel(kind, h):
    j = np.arange(1, h + 1)
    x = math.pi * j / (h + 1)
    if kind == 0:
        side, centre = (h + 1 - j) / (h + 1) ** 2, 1 / (h + 1)
    elif kind == 4:
        side, centre = np.full(h, 1 / (2 * h + 1)), 1 / (2 * h + 1)
    else:
        side = [(np.sin(x) / x) ** 2, (1 + np.cos(x)) / 2, 0.54 + 0.46 * np.cos(x)][kind - 1]
        side, centre = side / (1 + 2 * side.sum()), 1.0
    return np.concatenate([side[::-1], [centre], side])


def gradient_kernel(h):
    j = np.arange(1, h + 1)
    side = np.where(j % 2 == 1, -2 / math.pi / j ** 2, 0.0)
    return np.concatenate([side[::-1], [-2 * side.sum()], side])


def convolved(row, taps):
    h = len(taps) // 2
    return np.convolve(np.concatenate([np.full(h, row[0]), row, np.full(h, row[-1])]), taps[::-1], "valid")


def readings():
    dice = np.random.default_rng(42)
    x = np.arange(301) * 10.0
    return x, 80 * np.sin(x / 170) + 0.02 * x + dice.normal(0, 5, len(x))


def filters(folder):
    x, values = readings()
    stations = [(v, 0.0, 0.0) for v in x]
    worst = 0.0
    for kind in range(5):
        for smooth, wide in ((3, 0), (7, 0), (2, 25), (0, 60), (40, 0)):
            file = folder.write("filters", stations, [values], [], mag=4, filters=(smooth, wide), smooth_kind=kind)
            rows = folder.dump(file)["mag_data"]["observed"]
            smoothed = convolved(values, kernel(kind, smooth)) if smooth else values
            residual = smoothed - convolved(smoothed, kernel(kind, wide)) if wide else smoothed
            gradient = convolved(smoothed, gradient_kernel(5))
            for name, row in (("smoothed", smoothed), ("residual", residual), ("gradient", gradient)):
                worst = max(worst, off(rows[name], row))
    return Found("Smoothing and residual filter of all kernels, vertical gradient", "convolution of numpy", worst, 1e-4)


def regionals(folder):
    x, values = readings()
    stations = [(v, 0.0, 0.0) for v in x]
    body = dict(type=2, distance=1500, top=-100, width=100, dip=60, susc=2000)
    worst = 0.0
    for degree in range(4):
        file = folder.write("regional", stations, [values], [body], mag=4, extensions=[f"mag_regional {degree}"])
        told = folder.dump(file)
        calculated = np.array([row[0] for row in told["bodies"][0]["response"]])
        t = (x - 1500) / 1500
        fitted = np.polyfit(t, values - calculated, degree)[::-1]
        worst = max(worst, off(told["mag_regional"]["coefficients"], fitted))
    return Found("Regionals of degree 0 to 3 over a body", "polyfit of numpy", worst, 1e-7)
