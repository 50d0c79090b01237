"""One sheet of a drawing as SVG: panels in metres with outlines, measures and words. Only what SVG Tiny has, so that
every viewer shows it."""
import math

INK, BODY, GREY, ACCENT, GROUND = "#1d2b36", "#d5e2ee", "#77828b", "#b3261e", "#7a6a3a"
FONT = 13


class Sheet:
    def __init__(self, width, height):
        self.width, self.height = width, height
        self.parts = []

    def line(self, points, colour=INK, width=1.2, dash="", fill="none"):
        path = " ".join(f"{x:.1f},{y:.1f}" for x, y in points)
        broken = f' stroke-dasharray="{dash}"' if dash else ""
        self.parts.append(f'<polyline points="{path}" fill="{fill}" stroke="{colour}" stroke-width="{width}"{broken}/>')

    def area(self, points, fill=BODY, stroke=INK):
        path = " ".join(f"{x:.1f},{y:.1f}" for x, y in points)
        self.parts.append(f'<polygon points="{path}" fill="{fill}" stroke="{stroke}" stroke-width="1.2"/>')

    def dot(self, at, radius=3.6, fill=INK):
        self.parts.append(f'<circle cx="{at[0]:.1f}" cy="{at[1]:.1f}" r="{radius}" fill="{fill}"/>')

    def words(self, at, text, side="left", colour=INK, bold=False, size=FONT):
        anchor = {"left": "start", "middle": "middle", "right": "end"}[side]
        weight = ' font-weight="bold"' if bold else ""
        self.parts.append(f'<text x="{at[0]:.1f}" y="{at[1] + size * 0.35:.1f}" font-family="DejaVu Sans, Arial, sans-serif" '
                          f'font-size="{size}" text-anchor="{anchor}" fill="{colour}"{weight}>{text}</text>')

    def head(self, tip, tail, colour):
        length = math.hypot(tip[0] - tail[0], tip[1] - tail[1])
        if length == 0:
            return
        x, y = (tip[0] - tail[0]) / length, (tip[1] - tail[1]) / length
        base = (tip[0] - 9 * x, tip[1] - 9 * y)
        corners = [tip, (base[0] - 3.3 * y, base[1] + 3.3 * x), (base[0] + 3.3 * y, base[1] - 3.3 * x)]
        path = " ".join(f"{px:.1f},{py:.1f}" for px, py in corners)
        self.parts.append(f'<polygon points="{path}" fill="{colour}"/>')

    def text(self):
        return "\n".join([f'<svg xmlns="http://www.w3.org/2000/svg" version="1.2" baseProfile="tiny" width="{self.width}" '
                          f'height="{self.height}" viewBox="0 0 {self.width} {self.height}">',
                          f'<rect x="0" y="0" width="{self.width}" height="{self.height}" fill="#ffffff"/>',
                          *self.parts, "</svg>", ""])


class Panel:
    """A part of a sheet with metres of its own: `low` and `high` are its corners, upright."""

    def __init__(self, sheet, title, left, top, width, height, low, high):
        self.sheet, self.low, self.high = sheet, low, high
        self.scale = min(width / (high[0] - low[0]), (height - 24) / (high[1] - low[1]))
        self.left = left + (width - self.scale * (high[0] - low[0])) / 2
        self.top = top + 24
        sheet.words((left + 4, top + 10), title, bold=True)

    def at(self, point):
        return (self.left + self.scale * (point[0] - self.low[0]), self.top + self.scale * (self.high[1] - point[1]))

    def body(self, outlines, fill=BODY):
        for outline in outlines:
            self.sheet.area([self.at(p) for p in outline[:-1]], fill)

    def line(self, *points, colour=GREY, width=1.0, dash=""):
        self.sheet.line([self.at(p) for p in points], colour, width, dash)

    def ground(self, level, words="ground"):
        self.line((self.low[0], level), (self.high[0], level), colour=GROUND, width=2)
        if words:
            self.words((self.high[0], level), words, "right", GROUND, dy=-10)

    def words(self, at, text, side="left", colour=INK, dx=0, dy=0, bold=False):
        x, y = self.at(at)
        self.sheet.words((x + dx, y + dy), text, side, colour, bold)

    def reference(self, at, words="reference point", side="left", dx=8, dy=-9):
        self.sheet.dot(self.at(at))
        if words:
            self.words(at, words, side, GREY, dx, dy)

    def measure(self, start, end, both=True, colour=ACCENT):
        a, b = self.at(start), self.at(end)
        self.sheet.line([a, b], colour, 1.8)
        self.sheet.head(b, a, colour)
        if both:
            self.sheet.head(a, b, colour)

    def arc(self, centre, radius, start, end, colour=ACCENT):
        """From one direction to another, degrees anticlockwise from the right, an arrow at its end."""
        points = []
        for i in range(41):
            angle = math.radians(start + (end - start) * i / 40)
            points.append(self.at((centre[0] + radius * math.cos(angle), centre[1] + radius * math.sin(angle))))
        self.sheet.line(points, colour, 1.8)
        tail = next(p for p in reversed(points) if math.dist(p, points[-1]) >= 8 or p is points[0])
        self.sheet.head(points[-1], tail, colour)

    def north(self, at, length):
        self.measure(at, (at[0], at[1] + length), both=False, colour=GREY)
        self.words((at[0], at[1] + length), "N", "middle", GREY, dy=-9)


def along(start, length, angle):
    turn = math.radians(angle)
    return (start[0] + length * math.cos(turn), start[1] + length * math.sin(turn))
