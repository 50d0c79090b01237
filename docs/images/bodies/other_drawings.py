"""Pipe, wire, steps, sphere and the direction of the remanence."""
import math

from sheet import GREY, INK, Panel, Sheet, along
from views import GROUND, HALF, HIGH, WIDTH, beside, plan, section, strike_of, top_of, zero_level


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
