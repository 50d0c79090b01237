"""Laws that fields keep whatever the body, and limits that one body has in common with another."""
import math

import numpy as np
import textbook as book
from cases import Line, lines, off, single


class Law:
    """`most` as of a row of the cases."""

    def __init__(self, name, how, most=1e-6):
        self.name, self.how, self.most, self.worst, self.curves = name, how, most, {"mag": 0.0, "grav": 0.0}, 0

    def take(self, channel, one, other):
        self.worst[channel] = max(self.worst[channel], off(one, other))
        self.curves += 1

    def failed(self):
        return max(self.worst.values()) > self.most

    def cells(self):
        return [f"**{self.name}**: {self.how} ({self.curves} curves)", *(f"{v:.0e}" if v else "–" for v in self.worst.values())]


def any_body(line, kind=None):
    dice = line.dice
    kind = kind or int(dice.choice([1, 2, 2, 3, 4, 6, 16]))
    body = dict(type=kind, width=line.draw(0.1, 1), top=-line.draw(0.6, 2), dip=int(dice.integers(20, 161)), **line.rock())
    if kind in (1, 2):
        body.update(length=line.draw(0.3, 3), depth_extent=line.draw(0.2, 2), offset=single(dice.uniform(-1, 1) * line.scale),
                    plunge=int(dice.integers(-20, 21)))
    if kind in (3, 4):
        body["depth_extent"] = line.draw(0.2, 2)
    if kind == 16:
        body.update(length=line.draw(0.5, 3), dip=int(dice.integers(-30, 31)))
    return body


def superposition(folder):
    law = Law("Superposition", "an upright prism cut into two at a place by chance, and the two beside each other")
    for line in lines(folder, 21):
        for _ in range(8):
            whole = dict(type=2, width=single(line.scale * 0.75), length=line.scale * 2.0, depth_extent=line.draw(0.3, 2),
                         top=-line.draw(0.5, 2), **line.rock())
            near = single(0.25 * line.scale * int(line.dice.integers(1, 7)))
            parts = [{**whole, "length": near, "offset": near / 2 - line.scale},
                     {**whole, "length": 2 * line.scale - near, "offset": near / 2}]
            one, a, b = line.ask([whole, *parts])
            law.take("mag", a[0] + b[0], one[0])
            law.take("grav", a[1] + b[1], one[1])
    return law


def turned_world(folder):
    law = Law("Rotation of the world", "stations, strikes, declinations of field and remanence turned by an angle")
    for line in lines(folder, 22):
        for _ in range(6):
            bodies = [any_body(line) for _ in range(3)]
            plain = line.ask(bodies)
            angle = int(line.dice.integers(1, 360))
            turn = math.radians(angle)
            line_field, line_stations = line.field, line.stations
            line.field = (line.field[0], line.field[1], line.field[2] + angle)
            line.stations = [(500000 + x * math.cos(turn), 6500000 - x * math.sin(turn), 0.0) for x in line.x]
            # The profile always runs to the east, or north: turned further it is counted from its other end.
            turned = [{**b, "strike": b["strike"] + angle, "rem_d": b["rem_d"] + angle} for b in bodies]
            ahead = math.cos(turn) > 0 if abs(math.cos(turn)) > abs(math.sin(turn)) else math.sin(turn) < 0
            if not ahead:
                for body in turned:
                    body["distance"] = single(line.x[-1] - line.middle)
            rotated = line.ask(turned)
            line.field, line.stations = line_field, line_stations
            for one, other in zip(plain, rotated):
                for channel, i in (("mag", 0), ("grav", 1)):
                    law.take(channel, other[i] if ahead else other[i][::-1], one[i])
    return law


def scaled_world(folder):
    law = Law("Scaling", "all lengths times 8: the anomaly stays, gravity is 8 times as large")
    for line in lines(folder, 23, (1, 10, 100, 1000)):
        bodies = [any_body(line) for _ in range(10)]
        plain = line.ask(bodies)
        large = Line(line.folder, line.dice, 8 * line.scale)
        large.field, large.middle = line.field, single(8 * line.middle)
        sizes = ("width", "length", "depth_extent", "offset", "top")
        big = [{**b, **{key: 8 * b[key] for key in sizes if key in b}, "distance": large.middle} for b in bodies]
        for one, other in zip(plain, large.ask(big)):
            law.take("mag", other[0], one[0])
            law.take("grav", other[1] / 8, one[1])
    return law


def turned_body(folder):
    law = Law("A strike turned by 180°", "and 180° less the dip, from the other upper edge: the same body")
    for line in lines(folder, 24):
        for _ in range(5):
            body = any_body(line, 2)
            body["plunge"] = 0
            turn = math.radians(body["strike"])
            # From the far upper edge the same walls are seen from the other side.
            if abs(math.cos(turn)) < 0.2:
                continue
            other = {**body, "strike": body["strike"] + 180, "dip": 180 - body["dip"]}
            # Along the line the far edge lies width / cos(strike) on, and along strike so much nearer.
            other["distance"] = body["distance"] + body["width"] / math.cos(turn)
            other["offset"] = -(body["offset"] - body["width"] * math.tan(turn))
            one, same = line.ask([body, other])
            law.take("mag", same[0], one[0])
            law.take("grav", same[1], one[1])
    return law


def poisson(folder):
    law = Law("Poisson's relation", "anomaly of a vertical magnetisation in a vertical field, by the vertical slope of the gravity", 5e-5)
    for line in lines(folder, 25):
        line.field = (line.field[0], 90, 0)
        for _ in range(4):
            body = any_body(line)
            body.update(rem_q=0, top=-single(1.5 * line.scale))
            anomaly, _ = line.ask([body])[0]
            step = line.scale / 16
            level = lambda k: line.ask([{**body, "top": body["top"] + k * step}])[0][1]
            slope = (45 * (level(1) - level(-1)) - 9 * (level(2) - level(-2)) + level(3) - level(-3)) / (60 * step)
            # T = (mu0 M / 4 pi) / (G rho) d g / d height, and a top that rises is a station that sinks.
            moment = body["susc"] * 1e-6 * line.field[0] / (4 * math.pi)
            law.take("mag", slope * moment / (book.G * body["density"]), anomaly)
    return law


def far_away(folder):
    law = Law("Far away", "at 200 sizes, against the dipole and the point of mass at the middle of the body")
    for line in lines(folder, 26, (100, 1000, 10000)):
        for _ in range(8):
            size = line.scale / 200
            body = dict(type=2, width=single(size), length=single(size), depth_extent=single(size), top=-single(line.scale),
                        **line.rock())
            mag, grav = line.ask([body])[0]
            m, f = line.vectors(body)
            p, middle = line.places(body), np.array([[size / 2, 0, -size / 2]])
            law.take("mag", mag, book.point_field(p, middle, np.array([size ** 3]), m, f))
            law.take("grav", grav, book.point_gravity(p, middle, np.array([size ** 3]), body["density"]))
    return law


def slab(folder):
    law = Law("Endless slab", "far on the + side of a step: 2 π G times density and thickness", 1e-5)
    for line in lines(folder, 27):
        body = dict(type=4, dip=90, depth_extent=line.draw(0.1, 1), top=-line.draw(0.5, 1), **line.rock())
        body.update(strike=0, distance=single(-1e7 * line.scale) if line.scale < 100 else -1e9)
        _, grav = line.ask([body])[0]
        law.take("grav", grav, np.full(41, 2 * math.pi * book.G * body["density"] * body["depth_extent"]))
    return law


LAWS = [superposition, turned_world, turned_body, scaled_world, poisson, far_away, slab]


# -- Limits: one body that becomes another one, drawn as curves of the difference.

def one_line(folder, seed):
    return next(lines(folder, seed, (100,)))


def long_prism(folder):
    """Length over depth; difference of prism and endless sheet in both channels."""
    line = one_line(folder, 31)
    base = dict(type=2, width=100, depth_extent=200, top=-100, dip=60, **line.rock())
    base.update(strike=10, rem_q=0)
    ratios = [2.0 ** k for k in range(0, 15)]
    endless, *prisms = line.ask([base] + [{**base, "length": 100 * r} for r in ratios])
    return ratios, [off(p[0], endless[0]) for p in prisms], [off(p[1], endless[1]) for p in prisms]


def deep_prism(folder):
    line = one_line(folder, 32)
    base = dict(type=2, width=100, length=300, top=-100, dip=70, **line.rock())
    base.update(strike=10, rem_q=0)
    ratios = [2.0 ** k for k in range(0, 15)]
    endless, *prisms = line.ask([base] + [{**base, "depth_extent": 100 * r} for r in ratios])
    return ratios, [off(p[0], endless[0]) for p in prisms], [off(p[1], endless[1]) for p in prisms]


def dipole_distance(folder):
    """Distance over size of a cube."""
    ratios, mags, gravs = [2.0 ** (k / 2) for k in range(1, 17)], [], []
    line = one_line(folder, 33)
    rock = line.rock()
    for ratio in ratios:
        size = single(100 / ratio)
        body = dict(type=2, width=size, length=size, depth_extent=size, top=-single(100 - size / 2), **rock)
        mag, grav = line.ask([body])[0]
        m, f = line.vectors(body)
        p, middle = line.places(body), np.array([[size / 2, 0, -size / 2]])
        mags.append(off(mag, book.point_field(p, middle, np.array([size ** 3]), m, f)))
        gravs.append(off(grav, book.point_gravity(p, middle, np.array([size ** 3]), body["density"])))
    return ratios, mags, gravs


def thin_sheet(folder):
    """Depth over width; the sheet against its poles and mass drawn together in its middle plane."""
    line = one_line(folder, 34)
    rock = line.rock()
    ratios, mags, gravs = [2.0 ** k for k in range(0, 11)], [], []
    for ratio in ratios:
        width = single(100 / ratio)
        body = dict(type=1, width=width, depth_extent=300, top=-100, dip=65, **rock)
        mag, grav = line.ask([body])[0]
        turn = math.radians(65)
        length = 300 / math.sin(turn)
        t, w = book.nodes(12, 12)
        middle = width / math.sin(turn) / 2
        places = np.stack([middle + t * length * math.cos(turn), -t * 300], 1)
        p = line.places(body)[:, [0, 2]]
        m, f = line.vectors(body)
        mags.append(off(mag, book.line_field(p, places, w * length * width, m[[0, 2]], f[[0, 2]])))
        gravs.append(off(grav, book.line_gravity(p, places, w * length * width, body["density"])))
    return ratios, mags, gravs


def pipe_sectors(folder):
    line = one_line(folder, 35)
    body = dict(type=16, width=100, length=300, top=-100, dip=10, **line.rock())
    counts = [4, 6, 8, 12, 16, 24, 32, 48, 64, 96, 128]
    fall = math.radians(10)
    axis = np.array([0, math.cos(fall), -math.sin(fall)])
    points = book.cylinder_points(-150 * axis, 300 * axis, 50.0, 15, order=10)
    m, f = line.vectors(body)
    p = line.places(body)
    truth = book.point_field(p, *points, m, f), book.point_gravity(p, *points, body["density"])
    answers = line.ask([{**body, "sectors": n} for n in counts])
    return counts, [off(a[0], truth[0]) for a in answers], [off(a[1], truth[1]) for a in answers]
