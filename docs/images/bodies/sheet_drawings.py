"""Where bodies are, and the sheets."""
from sheet import GREY, INK, Panel, Sheet, along
from views import GROUND, HALF, HIGH, WIDTH, beside, plan, section, strike_of, top_of, zero_level


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
    right.words(start, "first station", "left", GREY, dx=-6, dy=22)
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
