"""Section and plan of the drawings, and what is measured in them alike for all types."""
from sheet import GREY, Panel, along

WIDTH, HALF, HIGH = 640, 315, 250
GROUND = 150


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
