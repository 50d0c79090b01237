"""Bodies by chance, calculated by the program and by the textbook: one function a row of the table."""
import math

import numpy as np
import textbook as book

SCALES = (1, 10, 100, 1000, 10000)
WORDS = "{} to {}".format


def single(value):
    """As a workspace keeps it."""
    return float(np.float32(value))


def off(program, truth):
    """The largest difference as a share of the largest value."""
    truth = np.asarray(truth, float)
    return float(np.max(np.abs(np.asarray(program) - truth)) / np.max(np.abs(truth)))


class Row:
    """`most`: a difference above it is a failure; a few times what singles leave."""

    def __init__(self, what, against, most=2e-7):
        self.what, self.against, self.most = what, against, most
        self.curves, self.sizes, self.heights, self.worst = 0, [], [], {"mag": [], "grav": []}

    def take(self, body, height, **pairs):
        for channel, (program, truth) in pairs.items():
            self.worst[channel].append(off(program, truth))
            self.curves += 1
        self.sizes += [body[key] for key in ("width", "length", "depth_extent") if body.get(key)]
        self.heights.append(height)

    def failed(self):
        return max(self.worst["mag"] + self.worst["grav"]) > self.most

    def cells(self):
        def two_digits(value):
            return f"{float(f'{value:.2g}'):g}"

        def span(values):
            return f"{two_digits(min(values))} to {two_digits(max(values))} m" if values else "–"

        worst = [f"{max(self.worst[c]):.0e}" if self.worst[c] else "–" for c in ("mag", "grav")]
        return [f"**{self.what}**: {self.against} ({self.curves} curves)", span(self.sizes), span(self.heights), *worst]


class Line:
    """41 stations to the east over a body in the middle, in step with a scale; the textbook's axes are the body's."""

    def __init__(self, folder, dice, scale, reach=2.5):
        self.folder, self.dice, self.scale = folder, dice, scale
        self.field = (int(dice.integers(25000, 62000)), int(dice.integers(-85, 86)), int(dice.integers(-30, 31)))
        self.x = np.linspace(0, 2 * reach * scale, 41)
        self.middle = single(reach * scale * 1.01)
        self.stations = [(500000 + x, 6500000.0, 0.0) for x in self.x]

    def draw(self, low, high):
        return single(self.scale * math.exp(self.dice.uniform(math.log(low), math.log(high))))

    def rock(self):
        d = self.dice
        return dict(susc=single(d.uniform(1e3, 1e5)), rem_q=single(d.uniform(0, 3)), rem_i=int(d.integers(-90, 91)),
                    rem_d=int(d.integers(-180, 181)), density=single(d.choice([-1, 1]) * d.uniform(0.1, 1)),
                    distance=self.middle, strike=int(d.integers(0, 360)))

    def ask(self, bodies):
        answers = self.folder.responses("case", self.stations, bodies, field=self.field)
        return [np.array(rows).T for rows in answers]  # nT, mGal

    def places(self, body):
        """Stations from the reference point: across strike, along it, up from the top."""
        s = math.radians(body["strike"])
        east = self.x - self.middle
        return np.stack([east * math.cos(s), east * math.sin(s), np.full_like(east, -body["top"])], 1)

    def turned(self, body, vector):
        s = math.radians(body["strike"])
        return np.array([vector[0] * math.cos(s) - vector[1] * math.sin(s), vector[0] * math.sin(s) + vector[1] * math.cos(s),
                         vector[2]])

    def vectors(self, body):
        moment = book.moment_density(self.field, body["susc"], body["rem_q"], body["rem_i"], body["rem_d"])
        return self.turned(body, moment), self.turned(body, book.unit(*self.field[1:]))


def lines(folder, seed, scales=SCALES, reach=2.5):
    dice = np.random.default_rng(seed)
    for scale in scales:
        yield Line(folder, dice, scale, reach)


def box_curves(line, body, moment=None):
    """An upright prism by the closed forms, long double."""
    m, f = line.vectors(body)
    if moment is not None:
        m = moment
    w, l, d, o = body["width"], body["length"], body["depth_extent"], body["offset"]
    mag, grav = [], []
    for p in line.places(body):
        g, t = book.box_tensor((-p[0], w - p[0]), (o - l / 2 - p[1], o + l / 2 - p[1]), (-d - p[2], -p[2]))
        mag.append(m @ t.astype(float) @ f)
        grav.append(float(g) * book.G * body["density"])
    return mag, grav


def upright_prisms(folder):
    row = Row("Thick Sheet with ends, upright", "closed forms of a box (Nagy 1966; Nagy, Papp and Benedek 2000)")
    for line in lines(folder, 1):
        bodies = [dict(type=2, width=line.draw(0.02, 2), length=line.draw(0.1, 4), depth_extent=line.draw(0.05, 4),
                       offset=single(line.scale * line.dice.uniform(-1, 1)), top=-line.draw(0.2, 2), **line.rock())
                  for _ in range(20)]
        for body, (mag, grav) in zip(bodies, line.ask(bodies)):
            true_mag, true_grav = box_curves(line, body)
            row.take(body, -body["top"], mag=(mag, true_mag), grav=(grav, true_grav))
    return row


def tilted_prisms(folder):
    row = Row("Thick and Thin Sheet with ends, dip 25 to 155, plunge and slope", "points of mass and dipoles summed")
    for line in lines(folder, 2, (1, 100, 10000)):
        bodies = []
        for i in range(6):
            bodies.append(dict(type=1 + i % 2, width=line.draw(0.1, 1), length=line.draw(0.3, 2), depth_extent=line.draw(0.2, 1),
                               offset=single(line.scale * line.dice.uniform(-0.5, 0.5)), top=-line.draw(0.9, 2),
                               dip=int(line.dice.integers(25, 156)), plunge=int(line.dice.integers(-20, 21)),
                               slope=int(line.dice.integers(-15, 16)), **line.rock()))
        for body, (mag, grav) in zip(bodies, line.ask(bodies)):
            cot = 1 / math.tan(math.radians(body["dip"]))
            width = body["width"] / (math.sin(math.radians(body["dip"])) if body["type"] == 1 else 1)
            tilt = math.tan(math.radians(body["slope"]))
            width /= 1 + tilt * cot
            fall = math.sin(math.radians(body["plunge"]))
            near = body["offset"] - body["length"] / 2
            origin = np.array([0, near, -near * fall])
            edges = [[width, 0, width * tilt], [0, body["length"], -body["length"] * fall],
                     [cot * body["depth_extent"], 0, -body["depth_extent"]]]
            points = book.parallelepiped_points(origin, edges, -0.5 * body["top"])
            m, f = line.vectors(body)
            p = line.places(body)
            row.take(body, -body["top"], mag=(mag, book.point_field(p, *points, m, f)),
                     grav=(grav, book.point_gravity(p, *points, body["density"])))
    return row


def in_plane(line, body):
    m, f = line.vectors(body)
    return line.places(body)[:, [0, 2]], m[[0, 2]], f[[0, 2]]


def endless_sheets(folder):
    row = Row("Thick and Thin Sheet without ends along strike", "lines of mass and of dipoles summed")
    for line in lines(folder, 3):
        bodies = [dict(type=1 + i % 2, width=line.draw(0.02, 2), depth_extent=line.draw(0.1, 4), top=-line.draw(0.2, 2),
                       dip=int(line.dice.integers(10, 171)), **line.rock()) for i in range(12)]
        for body, (mag, grav) in zip(bodies, line.ask(bodies)):
            sine, cot = math.sin(math.radians(body["dip"])), 1 / math.tan(math.radians(body["dip"]))
            width = body["width"] / (sine if body["type"] == 1 else 1)
            points = book.parallelogram_points(np.zeros(2), [[width, 0], [cot * body["depth_extent"], -body["depth_extent"]]],
                                               -0.7 * body["top"])
            p, m, f = in_plane(line, body)
            row.take(body, -body["top"], mag=(mag, book.line_field(p, *points, m, f)),
                     grav=(grav, book.line_gravity(p, *points, body["density"])))
    return row


def bottomless_sheets(folder):
    row = Row("The same without lower end", "lines of dipoles summed to infinity")
    for line in lines(folder, 4):
        bodies = [dict(type=1 + i % 2, width=line.draw(0.02, 2), top=-line.draw(0.3, 2), dip=int(line.dice.integers(20, 161)),
                       **line.rock()) for i in range(8)]
        for body, (mag, _) in zip(bodies, line.ask(bodies)):
            turn = math.radians(body["dip"])
            width = body["width"] / (math.sin(turn) if body["type"] == 1 else 1)
            points = book.half_strip_points(np.zeros(2), [width, 0], [math.cos(turn), -math.sin(turn)], -0.5 * body["top"],
                                            line.scale)
            p, m, f = in_plane(line, body)
            row.take(body, -body["top"], mag=(mag, book.line_field(p, *points, m, f)))
    return row


def steps(folder):
    row = Row("Edge and Sloping step with a depth extent", "lines of mass and of dipoles summed to infinity")
    for line in lines(folder, 5):
        bodies = [dict(type=3 + i % 2, depth_extent=line.draw(0.1, 2), top=-line.draw(0.3, 2),
                       dip=int(line.dice.integers(20, 161)), **line.rock()) for i in range(8)]
        for body, (mag, grav) in zip(bodies, line.ask(bodies)):
            depth = body["depth_extent"]
            points = book.half_strip_points(np.zeros(2), [depth / math.tan(math.radians(body["dip"])), -depth], [1, 0],
                                            -0.5 * body["top"], line.scale)
            p, m, f = in_plane(line, body)
            row.take(body, -body["top"], mag=(mag, book.line_field(p, *points, m, f)),
                     grav=(grav, book.line_gravity(p, *points, body["density"])))
    return row


def pipes(folder, sectors, hollow):
    kind = "hollow" if hollow else "solid"
    row = Row(f"Cylinder/pipe, {kind}, {sectors} sectors", "points in a round cylinder summed", 1e-5 if sectors > 48 else 2e-4)
    for line in lines(folder, 6, (1, 100, 10000)):
        bodies = []
        for _ in range(4):
            body = dict(type=16, sectors=sectors, width=line.draw(0.2, 1), length=line.draw(0.5, 3), top=-line.draw(1, 2.5),
                        dip=int(line.dice.integers(-20, 21)), offset=single(line.scale * line.dice.uniform(-0.5, 0.5)), **line.rock())
            body["shell"] = single(0.1 * body["width"]) if hollow else 0
            bodies.append(body)
        for body, (mag, grav) in zip(bodies, line.ask(bodies)):
            fall = math.radians(body["dip"])
            axis = np.array([0, math.cos(fall), -math.sin(fall)])
            radius = body["width"] / 2
            points = book.cylinder_points((body["offset"] - body["length"] / 2) * axis, body["length"] * axis, radius,
                                          -0.2 * body["top"], radius - body["shell"] if hollow else 0.0)
            m, f = line.vectors(body)
            p = line.places(body)
            row.take(body, -body["top"], mag=(mag, book.point_field(p, *points, m, f)),
                     grav=(grav, book.point_gravity(p, *points, body["density"])))
    return row


def spheres(folder):
    row = Row("Sphere", "dipole and point of mass")
    for line in lines(folder, 7):
        bodies = [dict(type=6, width=line.draw(0.05, 1), top=-line.draw(1, 3), **line.rock()) for _ in range(20)]
        for body, (mag, grav) in zip(bodies, line.ask(bodies)):
            m, f = line.vectors(body)
            p = line.places(body)
            row.take(body, -body["top"], mag=(mag, book.sphere_field(p, np.zeros(3), body["width"] / 2, m, f)),
                     grav=(grav, book.sphere_gravity(p, np.zeros(3), body["width"] / 2, body["density"])))
    return row


def wires(folder):
    row = Row("Wire, single and pair", "Biot and Savart, strength of the sum less that of the field")
    for line in lines(folder, 8, (1, 10, 100)):
        bodies = [dict(type=17, width=1, offset=line.draw(0.05, 0.5) if i % 2 else 0, dip=int(line.dice.integers(-180, 181)),
                       top=-line.draw(0.5, 2), distance=line.middle, strike=int(line.dice.integers(0, 360)),
                       susc=single(line.dice.choice([-1, 1]) * math.exp(line.dice.uniform(math.log(1), math.log(1e6)))))
                  for i in range(12)]
        for body, (mag, _) in zip(bodies, line.ask(bodies)):
            s, turn, half = (math.radians(body["strike"]), math.radians(body["dip"]), body["offset"] / 2)
            way = np.array([math.sin(turn) * math.cos(s), -math.sin(turn) * math.sin(s), math.cos(turn)])
            wires_of = [(half * way, body["susc"]), (-half * way, -body["susc"])] if half else [(np.zeros(3), body["susc"])]
            stations = np.stack([line.x - line.middle, np.zeros_like(line.x), np.full_like(line.x, -body["top"])], 1)
            row.take({}, -body["top"], mag=(mag, book.wire_field(stations, wires_of, line.field, body["strike"])))
    return row


def demagnetised(folder):
    row = Row("Demagnetisation of upright prisms, 0.01 to 3 SI", "factors of Aharoni (1998) in the closed form of a box")
    for line in lines(folder, 9):
        bodies = [dict(type=2, demagnetised=1, width=line.draw(0.1, 2), length=line.draw(0.1, 2), depth_extent=line.draw(0.1, 2),
                       offset=0, top=-line.draw(0.3, 2), **{**line.rock(), "susc": single(10 ** line.dice.uniform(4, 6.48))})
                  for _ in range(10)]
        for body, (mag, _) in zip(bodies, line.ask(bodies)):
            a, b, c = body["width"] / 2, body["length"] / 2, body["depth_extent"] / 2
            factors = [book.box_demagnetising_factor(b, c, a), book.box_demagnetising_factor(c, a, b),
                       book.box_demagnetising_factor(a, b, c)]
            moment = line.vectors(body)[0] / (1 + body["susc"] * 1e-6 * np.array(factors))
            row.take(body, -body["top"], mag=(mag, box_curves(line, body, moment)[0]))
    return row


CASES = [upright_prisms, tilted_prisms, endless_sheets, bottomless_sheets, steps, lambda f: pipes(f, 96, False),
         lambda f: pipes(f, 96, True), lambda f: pipes(f, 12, False), spheres, wires, demagnetised]
