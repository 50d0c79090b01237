#!/usr/bin/env python3
"""Make the drawings of bodies.md: the outlines are those of the program, arrows and words are added here.

  sketches.py --tool build/examples/body_outlines            writes the drawings beside this script
  sketches.py --tool build/examples/body_outlines --check    ends with 1 where one is not what it would write

Standard library only.
"""
import argparse
import json
import math
import pathlib
import subprocess
import sys

sys.dont_write_bytecode = True

from sheet import GREY, INK, Panel, Sheet, along

HERE = pathlib.Path(__file__).resolve().parent
WIDTH, HALF, HIGH = 680, 335, 262
GROUND = 150


class Outlines:
    def __init__(self, tool):
        self.tool = tool

    def __call__(self, **values):
        words = " ".join(f"{name}={value}" for name, value in values.items())
        done = subprocess.run([self.tool, words], check=True, capture_output=True, text=True)
        return json.loads(done.stdout)


def section(sheet, column, row, title="Section along the line", high=178):
    panel = Panel(sheet, title, 4 + column * (HALF + 6), 4 + row * HIGH, HALF, HIGH - 6, (0, -24), (260, high))
    panel.ground(GROUND)
    return panel


def plan(sheet, column, row, title="Plan"):
    panel = Panel(sheet, title, 4 + column * (HALF + 6), 4 + row * HIGH, HALF, HIGH - 6, (-130, -104), (130, 104))
    panel.line((-128, -20), (128, 20), dash="9 3 2 3")
    panel.words((128, 20), "line", "right", GREY, dy=-10)
    return panel


def zero_level(panel, words=True):
    panel.line((panel.low[0], 0), (panel.high[0], 0), dash="9 3 2 3")
    if words:
        panel.words((panel.high[0], 0), "elevation 0", "right", GREY, dy=11)


def top_of(panel, reference, x, words="Top"):
    zero_level(panel)
    panel.line((x - 6, reference[1]), reference)
    panel.measure((x, 0), (x, reference[1]), both=False)
    panel.words((x, reference[1] / 2), words, "right", dx=-7)


def strike_of(panel, strike, radius=58):
    panel.north((0, 0), 88)
    panel.line((0, 0), along((0, 0), 100, 90 - strike))
    panel.arc((0, 0), radius, 90, 90 - strike)
    panel.words(along((0, 0), radius + 10, 90 - strike / 2), "Strike", "middle", dy=-4)


def beside(panel, strike, start, end, words, aside, both=True, side="right"):
    """What is measured along the strike, drawn `aside` metres to its left."""
    direction = 90 - strike
    place = lambda reach, off: along(along((0, 0), reach, direction), off, direction + 90)
    for reach in (start, end):
        panel.line(place(reach, 0), place(reach, aside + 5))
    panel.measure(place(start, aside), place(end, aside), both)
    panel.words(place((start + end) / 2, aside), words, side, dx=-8 if side == "right" else 10, dy=-4 if side == "right" else 8)


def place(outlines):
    sheet = Sheet(WIDTH, HIGH)
    at = (120, 70)
    left = section(sheet, 0, 0, high=196)
    left.body(outlines(type=2, distance=at[0], top=at[1], dip=70, width=42, depth_extent=70)["section"])
    zero_level(left)
    left.line((0, 178), (260, 178), colour=INK, dash="2 5")
    left.words((260, 178), "sensor", "right", GREY, dy=-9)
    left.line(at, (at[0], 178))
    left.measure((0, 164), (at[0], 164), both=False)
    left.words((56, 164), "Distance", "middle", dy=-9)
    left.measure((at[0], 0), at, both=False)
    left.words((at[0], 36), "Top", "right", dx=-7)
    left.measure((at[0] - 34, GROUND), (at[0] - 34, at[1]))
    left.line((at[0] - 40, at[1]), at)
    left.words((at[0] - 34, 112), "burial depth", "right", dx=-7)
    left.reference(at)
    right = plan(sheet, 1, 0)
    right.body(outlines(type=2, distance=0, strike=30, width=42, dip=70, length=130)["plan"])
    start = (-118, -118 * 20 / 128)
    right.sheet.dot(right.at(start))
    right.words(start, "first station", "left", GREY, dx=-6, dy=14)
    right.measure(start, (-3, -0.5), both=False)
    right.words((-66, -10), "Distance", "middle", dy=-14)
    strike_of(right, 30)
    right.reference((0, 0), "", dx=-8, dy=16)
    right.measure(along((0, 0), 44, -30), along((0, 0), 84, -30), both=False, colour=GREY)
    right.words(along((0, 0), 88, -30), "+ side", "left", GREY)
    right.words((0, 0), "East, North", "right", dx=-10, dy=20)
    return sheet


def sides(outlines):
    sheet = Sheet(WIDTH, 2 * 170)
    cases = [(0, 60, "Strike to the left of the line, dip 60"), (0, 120, "Strike to the left of the line, dip 120"),
             (180, 60, "Strike to the right of the line, dip 60"), (180, 120, "Strike to the right of the line, dip 120")]
    for i, (strike, dip, title) in enumerate(cases):
        panel = Panel(sheet, title, 4 + (i % 2) * (HALF + 6), 4 + (i // 2) * 170, HALF, 164, (0, 0), (260, 110))
        panel.ground(100, "")
        at = (130, 86)
        panel.body(outlines(type=2, distance=at[0], top=at[1], strike=strike, dip=dip, width=36, depth_extent=70)["section"])
        side = 1 if strike == 0 else -1
        panel.line(at, (at[0] + side * 62, at[1]))
        level = 0 if side > 0 else 180
        panel.arc(at, 46, level, level - side * dip)
        panel.measure((at[0] + side * 66, at[1]), (at[0] + side * 100, at[1]), both=False, colour=GREY)
        panel.words((at[0] + side * 84, at[1]), "+ side", "middle", GREY, dy=12)
        panel.words((at[0] + side * 76, 40), f"Dip {dip}°", "left" if side > 0 else "right")
        panel.reference(at, "")
        panel.words((4, 8), "line →", "left", GREY)
    return sheet


def thin_sheet(outlines):
    sheet = Sheet(WIDTH, HIGH)
    at, dip, width = (110, 112), 60, 13
    left = section(sheet, 0, 0)
    outline = outlines(type=1, distance=at[0], top=at[1], dip=dip, width=width, depth_extent=84)["section"]
    left.body(outline)
    bottom = outline[0][3]
    top_of(left, at, 30)
    left.line(bottom, (64, bottom[1]))
    left.measure((70, at[1]), (70, bottom[1]))
    left.words((74, 62), "Depth", "left")
    left.words((74, 62), "Ext", "left", dy=14)
    left.line(at, (at[0] + 84, at[1]))
    left.arc(at, 52, 0, -dip)
    left.words(along(at, 58, -dip / 2), "Dip")
    half = (0.22 * outline[0][0][0] + 0.78 * bottom[0], 0.22 * at[1] + 0.78 * bottom[1])
    across = along(half, width, 90 - dip)
    left.measure(along(half, -26, 90 - dip), half, both=False)
    left.measure(along(across, 30, 90 - dip), across, both=False)
    left.words(along(across, 32, 90 - dip), "Width", dy=-3)
    left.reference(at, dx=-4, dy=-12)
    right = plan(sheet, 1, 0)
    right.body(outlines(type=1, distance=0, strike=40, width=width, dip=dip, length=100, offset=24)["plan"])
    strike_of(right, 40)
    beside(right, 40, -26, 74, "Length", -34, side="left")
    beside(right, 40, 0, 24, "Offset", 14, both=False)
    right.reference((0, 0), "", dx=10, dy=14)
    return sheet


def thick_sheet(outlines):
    sheet = Sheet(WIDTH, 2 * HIGH)
    at, dip = (96, 112), 60
    left = section(sheet, 0, 0)
    outline = outlines(type=2, distance=at[0], top=at[1], dip=dip, width=60, depth_extent=84)["section"]
    left.body(outline)
    bottom = outline[0][3]
    top_of(left, at, 26)
    left.line(bottom, (54, bottom[1]))
    left.measure((60, at[1]), (60, bottom[1]))
    left.words((64, 62), "Depth", "left")
    left.words((64, 62), "Ext", "left", dy=14)
    left.arc(at, 50, 0, -dip)
    left.words(along(at, 40, -dip / 2), "Dip", "middle", dx=-4)
    left.line(at, (at[0], at[1] + 16))
    far = outline[0][1]
    left.line(far, (far[0], far[1] + 16))
    left.measure((at[0], at[1] + 10), (far[0], far[1] + 10))
    left.words(((at[0] + far[0]) / 2, at[1] + 10), "Width", "middle", dy=-10)
    left.reference(at, "reference point", "right", -6, -10)
    right = plan(sheet, 1, 0)
    right.body(outlines(type=2, distance=0, strike=40, width=50, dip=dip, length=100, offset=24)["plan"])
    strike_of(right, 40)
    beside(right, 40, -26, 74, "Length", -66, side="left")
    beside(right, 40, 0, 24, "Offset", 14, both=False)
    end = along((0, 0), -36, 50)
    right.measure(end, along(end, 50, -40))
    right.words(along(along(end, -12, 50), 25, -40), "Width", "right", dy=4)
    right.reference((0, 0), "")
    slope_of(sheet, outlines)
    plunge_of(sheet, outlines)
    return sheet


def slope_of(sheet, outlines):
    panel = section(sheet, 0, 1, "Section: Slope above 0")
    at = (84, 92)
    outline = outlines(type=2, distance=at[0], top=at[1], dip=60, width=84, slope=20, depth_extent=70)["section"]
    plain = outlines(type=2, distance=at[0], top=at[1], dip=60, width=84, depth_extent=70)["section"]
    panel.body(outline)
    panel.line(*plain[0], colour=GREY, dash="4 3")
    panel.line(at, (at[0] + 118, at[1]))
    panel.arc(at, 108, 0, 20)
    panel.words(along(at, 114, 10), "Slope")
    far = plain[0][1]
    panel.measure((at[0], at[1] - 12), (far[0], far[1] - 12))
    panel.words(((at[0] + far[0]) / 2 + 4, at[1] - 12), "Width", "middle", dy=11)
    panel.reference(at, "reference point", "right", -8, 0)


def plunge_of(sheet, outlines):
    panel = Panel(sheet, "Seen across strike: Plunge above 0", 4 + HALF + 6, 4 + HIGH, HALF, HIGH - 6, (-120, -24), (140, 178))
    panel.ground(GROUND)
    at = (0, 108)
    panel.body(outlines(type=2, top=at[1], dip=60, width=60, depth_extent=60, length=150, plunge=14)["side"])
    panel.line(at, (130, at[1]))
    panel.arc(at, 104, 0, -14)
    panel.words(along(at, 108, -6), "Plunge", "left", dx=2, dy=-1)
    panel.line((0, -16), (0, GROUND), dash="9 3 2 3")
    panel.words((0, -16), "line", "left", GREY, dx=6)
    panel.words((138, -16), "strike →", "right", GREY)
    panel.reference(at, "reference point", "right", -8, -30)
    panel.line(along(at, 10, 128), along(at, 24, 128))


def pipe(outlines):
    sheet = Sheet(WIDTH, 2 * HIGH)
    at = (130, 76)
    left = section(sheet, 0, 0)
    left.body(outlines(type=16, distance=at[0], top=at[1], width=62)["section"])
    zero_level(left)
    left.measure((at[0], 0), at, both=False)
    left.words((at[0], 26), "Depth", "left", dx=8)
    left.measure((at[0] - 31, at[1] + 42), (at[0] + 31, at[1] + 42))
    for x in (-31, 31):
        left.line((at[0] + x, at[1]), (at[0] + x, at[1] + 46))
    left.words((at[0], at[1] + 42), "Diameter", "middle", dy=-10)
    left.reference(at, "")
    left.words((at[0] + 40, at[1]), "reference point,", "left", GREY, dy=-7)
    left.words((at[0] + 40, at[1]), "on the axis", "left", GREY, dy=8)
    right = plan(sheet, 1, 0)
    right.body(outlines(type=16, distance=0, strike=40, width=32, length=100, offset=24)["plan"])
    strike_of(right, 40, 84)
    beside(right, 40, -26, 74, "Length", -36, side="left")
    beside(right, 40, 0, 24, "Offset", 27, both=False)
    right.reference((0, 0), "")
    low = Panel(sheet, "Seen across strike: Dip above 0", 4, 4 + HIGH, HALF, HIGH - 6, (-120, -24), (140, 178))
    low.ground(GROUND)
    middle, fall = (0, 86), 20
    low.body(outlines(type=16, top=middle[1], width=36, length=110, offset=25, dip=fall)["side"])
    low.line(middle, (130, middle[1]))
    low.line(along(middle, -40, -fall), along(middle, 100, -fall), dash="9 3 2 3")
    low.arc(middle, 112, 0, -fall)
    low.words(along(middle, 116, -fall / 2), "Dip")
    low.line((0, -16), (0, GROUND), dash="9 3 2 3")
    low.words((0, -16), "line", "left", GREY, dx=6)
    low.words((138, -16), "strike →", "right", GREY)
    aside = lambda reach, off: along(along(middle, reach, -fall), off, -fall - 90)
    for reach in (-30, 80):
        low.line(aside(reach, -18), aside(reach, -36))
    low.measure(aside(-30, -32), aside(80, -32))
    low.words(aside(25, -32), "Length", "left", dx=2, dy=-10)
    low.line(aside(0, 0), aside(0, 32))
    low.line(aside(25, 0), aside(25, 32))
    low.measure(aside(0, 28), aside(25, 28), both=False)
    low.words(aside(12, 34), "Offset", "right", dx=0, dy=6)
    low.reference(middle, "")
    hollow = section(sheet, 1, 1, "Section of a hollow pipe")
    hollow.body(outlines(type=16, distance=130, top=76, width=84, shell=16)["section"])
    hollow.measure((130 - 42 - 26, 76), (130 - 42, 76), both=False)
    hollow.measure((130 - 26 + 24, 76), (130 - 26, 76), both=False)
    hollow.words((58, 76), "Wall", "right", dx=-4)
    hollow.reference((130, 76), "")
    hollow.line((130 - 42, 10), (130 - 42, 70))
    hollow.line((130 + 42, 10), (130 + 42, 70))
    hollow.measure((130 - 42, 16), (130 + 42, 16))
    hollow.words((130, 16), "Diameter", "middle", dy=12)
    return sheet


def wire(outlines):
    sheet = Sheet(WIDTH, HIGH)
    at, turn, apart = (118, 74), 40, 96
    left = section(sheet, 0, 0)
    pair = outlines(type=17, distance=at[0], top=at[1], width=22, offset=apart, dip=turn)["section"]
    left.body(pair)
    zero_level(left)
    left.measure((at[0], 0), at, both=False)
    left.words((at[0], 22), "Depth", "left", dx=8)
    first, second = along(at, apart / 2, 90 - turn), along(at, -apart / 2, 90 - turn)
    left.line(at, (at[0], at[1] + 62))
    left.arc(at, 28, 90, 90 - turn)
    left.line(at, first)
    left.words((at[0], at[1] + 34), "Rotation", "right", dx=-6)
    aside = lambda point: along(point, 22, -turn)
    left.line(first, along(first, 27, -turn))
    left.line(second, along(second, 27, -turn))
    left.measure(aside(second), aside(first))
    left.words(along(at, 28, -turn), "Separation", dy=6)
    for point, radius in ((first, 4), (second, 3)):
        left.sheet.dot(left.at(point), 2.2)
    left.sheet.line([left.at(along(first, 8, 45)), left.at(along(first, -8, 45))], INK, 1.2)
    left.sheet.line([left.at(along(first, 8, 135)), left.at(along(first, -8, 135))], INK, 1.2)
    left.words((first[0] + 16, first[1] + 2), "current away", "left", GREY, dy=-4)
    left.words((second[0] - 16, second[1]), "back", "right", GREY)
    left.reference(at, "")
    right = plan(sheet, 1, 0, "Plan: a single wire")
    right.body(outlines(type=17, distance=0, strike=40, width=12)["plan"])
    strike_of(right, 40, 70)
    right.measure(along((0, 0), -70, 50), along((0, 0), -24, 50), both=False)
    right.words(along((0, 0), -50, 50), "Current above 0", "left", dx=14, dy=6)
    right.reference((0, 0), "")
    return sheet


def steps(outlines):
    sheet = Sheet(WIDTH, HIGH)
    at, dip = (84, 112), 60
    for column, (kind, title) in enumerate(((3, "Edge: section"), (4, "Sloping step: section"))):
        panel = section(sheet, column, 0, title)
        depth = 0 if kind == 3 else 70
        outline = outlines(type=kind, distance=at[0], top=at[1], dip=dip, depth_extent=depth)["section"]
        cut = [[(min(max(x, 0), 260), max(y, -24)) for x, y in outline[0]]]
        if kind == 3:
            run = (at[1] + 24) / math.tan(math.radians(dip))
            cut = [[at, (260, at[1]), (260, -24), (at[0] + run, -24), at]]
        panel.body(cut)
        open_sides = cut[0][1:4] if kind == 3 else cut[0][1:3]
        panel.sheet.line([panel.at(point) for point in open_sides], "#ffffff", 2.6)
        panel.arc(at, 58, 0, -dip)
        panel.words(along(at, 64, -dip / 2), "Dip", "left")
        top_of(panel, at, 22)
        panel.words((256, 80), "without end →", "right", GREY)
        if kind == 4:
            bottom = outline[0][3]
            panel.line(bottom, (50, bottom[1]))
            panel.measure((56, at[1]), (56, bottom[1]))
            panel.words((60, 66), "Depth", "left")
            panel.words((60, 66), "Ext", "left", dy=14)
        panel.reference(at, dx=-4, dy=-11)
    return sheet


def sphere(outlines):
    sheet = Sheet(WIDTH, HIGH)
    at = (120, 72)
    left = section(sheet, 0, 0)
    left.body(outlines(type=6, distance=at[0], top=at[1], width=70)["section"])
    zero_level(left)
    left.measure((at[0], 0), at, both=False)
    left.words((at[0], 22), "Top", "left", dx=8)
    for x in (-35, 35):
        left.line((at[0] + x, at[1]), (at[0] + x, at[1] + 52))
    left.measure((at[0] - 35, at[1] + 47), (at[0] + 35, at[1] + 47))
    left.words((at[0], at[1] + 47), "Width", "middle", dy=-10)
    left.reference(at, "")
    left.words((at[0] + 42, at[1]), "reference point:", "left", GREY, dy=-7)
    left.words((at[0] + 42, at[1]), "the centre", "left", GREY, dy=8)
    right = plan(sheet, 1, 0)
    right.sheet.parts.append(f'<circle cx="{right.at((0, 0))[0]:.1f}" cy="{right.at((0, 0))[1]:.1f}" '
                             f'r="{35 * right.scale:.1f}" fill="#d5e2ee" stroke="{INK}" stroke-width="1.2"/>')
    right.words((0, -52), "under the line at Distance; no strike", "middle", GREY, dy=6)
    right.reference((0, 0), "")
    return sheet


def magnetisation(outlines):
    sheet = Sheet(WIDTH, HIGH)
    left = Panel(sheet, "Plan: Rem D, and the field's declination", 4, 4, HALF, HIGH - 6, (-130, -104), (130, 104))
    left.north((-20, -50), 130)
    left.measure((-20, -50), along((-20, -50), 120, 40), both=False, colour=INK)
    left.arc((-20, -50), 70, 90, 40)
    left.words(along((-20, -50), 78, 62), "Rem D", "left", dy=-4)
    left.words(along((-20, -50), 122, 40), "east of north: above 0", "middle", GREY, dy=-12)
    left.measure((-20, -50), along((-20, -50), 84, 128), both=False, colour=GREY)
    left.words(along((-20, -50), 88, 128), "west: below 0", "middle", GREY, dy=-8)
    right = Panel(sheet, "Upright plane of that direction: Rem I", 4 + HALF + 6, 4, HALF, HIGH - 6, (-130, -104), (130, 104))
    at = (-70, 12)
    right.line((-120, 12), (126, 12))
    right.words((126, 12), "horizontal, towards Rem D", "right", GREY, dy=-10)
    right.measure(at, along(at, 130, -38), both=False, colour=INK)
    right.arc(at, 80, 0, -38)
    right.words(along(at, 86, -19), "Rem I", "left")
    right.words(along(at, 134, -38), "down: above 0", "left", GREY)
    right.measure(at, along(at, 100, 44), both=False, colour=GREY)
    right.words(along(at, 106, 44), "up: below 0", "left", GREY)
    return sheet


DRAWINGS = {"place": place, "sides": sides, "thin_sheet": thin_sheet, "thick_sheet": thick_sheet, "pipe": pipe, "wire": wire,
            "steps": steps, "sphere": sphere, "magnetisation": magnetisation}


def main():
    options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    options.add_argument("--tool", required=True)
    options.add_argument("--check", action="store_true")
    given = options.parse_args()
    outlines = Outlines(given.tool)
    stale = []
    for name, draw in DRAWINGS.items():
        text = draw(outlines).text()
        file = HERE / f"{name}.svg"
        if not given.check:
            file.write_text(text)
        elif not file.exists() or file.read_text() != text:
            stale.append(file.name)
    if stale:
        sys.exit(f"not what the program draws: {', '.join(stale)}; run {pathlib.Path(__file__).name} again")


if __name__ == "__main__":
    main()
