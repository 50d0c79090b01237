"""Fields of simple bodies from the laws themselves and from closed forms of the literature, for checks of the program.
Nothing here comes from the program. Units: m, nT, g/cc, mGal, SI; x, y, z are east, north, up."""
import math

import numpy as np

G = 0.00667  # mGal m^2 / (g/cc m^3): the constant that the program states


def unit(inclination, declination):
    i, d = math.radians(inclination), math.radians(declination)
    return np.array([math.cos(i) * math.sin(d), math.cos(i) * math.cos(d), -math.sin(i)])


def moment_density(field, susc, rem_q=0.0, rem_i=0.0, rem_d=0.0):
    """mu0 M / 4 pi in nT, induced and remanent; susc in micro SI."""
    return susc * 1e-6 * field[0] / (4 * math.pi) * (unit(*field[1:]) + rem_q * unit(rem_i, rem_d))


# -- Points: Newton's law and Coulomb's dipole, summed.

def point_gravity(stations, places, volumes, density):
    total = np.zeros(len(stations))
    for i, station in enumerate(stations):
        r = station - places
        total[i] = np.sum(volumes * r[:, 2] / np.einsum("ij,ij->i", r, r) ** 1.5)
    return G * density * total


def point_field(stations, places, volumes, moment, direction):
    total = np.zeros(len(stations))
    for i, station in enumerate(stations):
        r = station - places
        square = np.einsum("ij,ij->i", r, r)
        total[i] = np.sum(volumes * (3 * (r @ moment) * (r @ direction) / square - moment @ direction) / square ** 1.5)
    return total


# -- The same in the plane across an endless body: lines of mass and of dipoles.

def line_gravity(stations, places, areas, density):
    dx, dz = stations[:, :1] - places[None, :, 0], stations[:, 1:] - places[None, :, 1]
    return 2 * G * density * np.sum(areas * dz / (dx ** 2 + dz ** 2), axis=1)


def line_field(stations, places, areas, moment, direction):
    """`moment` and `direction` have their parts across strike (x) and up (z) alone."""
    dx, dz = stations[:, :1] - places[None, :, 0], stations[:, 1:] - places[None, :, 1]
    square = dx ** 2 + dz ** 2
    along = (moment[0] * dx + moment[1] * dz) * (direction[0] * dx + direction[1] * dz)
    return 2 * np.sum(areas * (2 * along / square - moment @ direction) / square, axis=1)


# -- Where the points are: Gauss and Legendre's nodes in cells that are small against their distance.

def nodes(cells, order):
    """Places and weights from 0 to 1."""
    x, w = np.polynomial.legendre.leggauss(order)
    starts = np.arange(cells) / cells
    return (starts[:, None] + (x + 1) / 2 / cells).ravel(), np.tile(w / 2 / cells, cells)


def parallelepiped_points(origin, edges, nearest, order=8):
    edges = np.asarray(edges, float)
    rows = [nodes(max(1, math.ceil(np.linalg.norm(e) / nearest)), order) for e in edges]
    u, v, w = np.meshgrid(*(r[0] for r in rows), indexing="ij")
    weight = rows[0][1][:, None, None] * rows[1][1][None, :, None] * rows[2][1][None, None, :]
    places = origin + np.stack([u, v, w], -1).reshape(-1, 3) @ edges
    return places, weight.ravel() * abs(np.linalg.det(edges))


def parallelogram_points(origin, edges, nearest, order=12):
    edges = np.asarray(edges, float)
    rows = [nodes(max(1, math.ceil(np.linalg.norm(e) / nearest)), order) for e in edges]
    u, v = np.meshgrid(*(r[0] for r in rows), indexing="ij")
    weight = rows[0][1][:, None] * rows[1][1][None, :]
    return origin + np.stack([u, v], -1).reshape(-1, 2) @ edges, weight.ravel() * abs(np.linalg.det(edges))


def half_strip_points(origin, top, wall, nearest, scale, order=12):
    """From the edge `top` down along the unit vector `wall` without end: the way t = scale s / (1 - s)."""
    top, wall = np.asarray(top, float), np.asarray(wall, float)
    across, across_weight = nodes(max(1, math.ceil(np.linalg.norm(top) / nearest)), order)
    s, s_weight = nodes(40, order)
    t, t_weight = scale * s / (1 - s), scale * s_weight / (1 - s) ** 2
    places = origin + across[:, None, None] * top + t[None, :, None] * wall
    area = abs(top[0] * wall[1] - top[1] * wall[0])
    return places.reshape(-1, 2), (across_weight[:, None] * t_weight[None, :]).ravel() * area


def cylinder_points(axis_start, axis, radius, nearest, inner=0.0, order=8):
    """A round cylinder, solid or hollow: rings of points."""
    length = np.linalg.norm(axis)
    d = axis / length
    a = np.cross(d, [0.0, 0.0, 1.0])
    a = a / np.linalg.norm(a)
    b = np.cross(d, a)
    t, tw = nodes(max(1, math.ceil(length / nearest)), order)
    r, rw = nodes(max(1, math.ceil((radius - inner) / nearest)), order)
    r, rw = inner + (radius - inner) * r, (radius - inner) * rw
    count = 96
    angle = 2 * math.pi * (np.arange(count) + 0.5) / count
    ring = np.cos(angle)[:, None] * a + np.sin(angle)[:, None] * b
    places = (axis_start + t[:, None, None, None] * axis + r[None, :, None, None] * ring[None, None]).reshape(-1, 3)
    weight = tw[:, None, None] * length * (rw * r)[None, :, None] * np.full(count, 2 * math.pi / count)
    return places, weight.ravel()


# -- Closed forms.

def box_tensor(x, y, z, dtype=np.longdouble):
    """Of an upright rectangular box, corners x, y, z (pairs) from the station: the attraction down of unit G and density
    (Nagy 1966, z down) and the second derivatives of the potential (Nagy, Papp and Benedek 2000)."""
    gz = np.zeros((), dtype)
    t = np.zeros((3, 3), dtype)
    for i in (0, 1):
        for j in (0, 1):
            for k in (0, 1):
                sign = dtype((-1) ** (i + j + k + 1))
                a, b, c = dtype(x[i]), dtype(y[j]), dtype(z[k])
                r = np.sqrt(a * a + b * b + c * c)
                lna, lnb, lnc = (_log_sum(p, r) for p in (a, b, c))
                gz += sign * (a * lnb + b * lna - c * np.arctan(a * b / (c * r)))
                t += sign * np.array([[-np.arctan2(b * c, a * r), lnc, lnb], [lnc, -np.arctan2(a * c, b * r), lna],
                                      [lnb, lna, -np.arctan2(a * b, c * r)]])
    return gz, t


def _log_sum(p, r):
    """ln(p + r) without loss where p is negative."""
    return np.log(p + r) if p > 0 else np.log((r * r - p * p) / (r - p))


def sphere_gravity(stations, centre, radius, density):
    r = stations - centre
    return G * density * 4 / 3 * math.pi * radius ** 3 * r[:, 2] / np.linalg.norm(r, axis=1) ** 3


def sphere_field(stations, centre, radius, moment, direction):
    return point_field(stations, centre[None], np.array([4 / 3 * math.pi * radius ** 3]), moment, direction)


def wire_field(stations, wires, field, strike):
    """True change of the strength by straight currents: Biot and Savart for wires of 1e7 m. `wires`: (place, mA)."""
    s = math.radians(strike)
    along = np.array([math.sin(s), math.cos(s), 0.0])
    earth = np.longdouble(field[0]) * unit(*field[1:]).astype(np.longdouble)
    added = np.zeros((len(stations), 3), np.longdouble)
    half = 1e7
    for place, current in wires:
        r = stations - place
        t = r @ along
        off = r - t[:, None] * along
        p = np.linalg.norm(off, axis=1)
        ends = (half - t) / np.hypot(half - t, p) + (half + t) / np.hypot(half + t, p)
        # mu0 I / (4 pi p) times the ends: 1e-7 T per A and m
        added += (1e-7 * current * 1e-3 * 1e9 * ends / p)[:, None] * np.cross(along, off / p[:, None])
    whole = earth + added
    return (np.sqrt((whole ** 2).sum(1)) - np.sqrt((earth ** 2).sum())).astype(float)


def box_demagnetising_factor(a, b, c):
    """Along c of a box with the half sides a, b, c, averaged over it (Aharoni 1998, J. Appl. Phys. 83, eq. 1)."""
    ab, bc, ca, abc = a * a + b * b, b * b + c * c, c * c + a * a, a * a + b * b + c * c
    r, rab, rbc, rca = (math.sqrt(v) for v in (abc, ab, bc, ca))
    log = math.log
    return ((b * b - c * c) / (2 * b * c) * log((r - a) / (r + a)) + (a * a - c * c) / (2 * a * c) * log((r - b) / (r + b))
            + b / (2 * c) * log((rab + a) / (rab - a)) + a / (2 * c) * log((rab + b) / (rab - b))
            + c / (2 * a) * log((rbc - b) / (rbc + b)) + c / (2 * b) * log((rca - a) / (rca + a))
            + 2 * math.atan(a * b / (c * r)) + (a ** 3 + b ** 3 - 2 * c ** 3) / (3 * a * b * c)
            + (a * a + b * b - 2 * c * c) / (3 * a * b * c) * r + c / (a * b) * (rca + rbc)
            - (rab ** 3 + rbc ** 3 + rca ** 3) / (3 * a * b * c)) / math.pi


# -- The main field: the potential of its coefficients, differenced.

def read_shc(path):
    rows = [line.split() for line in open(path) if line.strip() and not line.startswith("#")]
    years = [float(v) for v in rows[1]]
    return years, {(int(r[0]), int(r[1])): [float(v) for v in r[2:]] for r in rows[2:]}


def _schmidt(n, m, mu):
    """Schmidt's functions from the Legendre polynomial, differentiated m times."""
    p = np.polynomial.legendre.Legendre.basis(n)
    p = p.deriv(m) if m else p
    norm = 1.0 if m == 0 else math.sqrt(2 * math.factorial(n - m) / math.factorial(n + m))
    return norm * (1 - mu * mu) ** (m / 2) * p(mu)


def main_field(years, table, year, latitude, longitude, height):
    """North, east, down in nT at a geodetic place (WGS 84)."""
    last = max(i for i in range(len(years) - 1) if years[i] <= year)
    part = (year - years[last]) / (years[last + 1] - years[last])
    now = {key: row[last] + part * (row[last + 1] - row[last]) for key, row in table.items()}

    def potential(p):
        r = math.sqrt(p @ p)
        longitude, mu, total = math.atan2(p[1], p[0]), p[2] / r, 0.0
        for (n, m), g in now.items():
            order, wave = abs(m), math.cos(m * longitude) if m >= 0 else math.sin(-m * longitude)
            total += 6371.2 * (6371.2 / r) ** (n + 1) * g * _schmidt(n, order, mu) * wave
        return total

    a, f = 6378.137, 1 / 298.257223563
    lat, lon, h = math.radians(latitude), math.radians(longitude), height / 1000
    e2 = f * (2 - f)
    nu = a / math.sqrt(1 - e2 * math.sin(lat) ** 2)
    place = np.array([(nu + h) * math.cos(lat) * math.cos(lon), (nu + h) * math.cos(lat) * math.sin(lon),
                      (nu * (1 - e2) + h) * math.sin(lat)])
    north = np.array([-math.sin(lat) * math.cos(lon), -math.sin(lat) * math.sin(lon), math.cos(lat)])
    east = np.array([-math.sin(lon), math.cos(lon), 0.0])
    down = -np.array([math.cos(lat) * math.cos(lon), math.cos(lat) * math.sin(lon), math.sin(lat)])
    step = 20.0  # km
    slope = lambda way: -(45 * (potential(place + step * way) - potential(place - step * way))
                          - 9 * (potential(place + 2 * step * way) - potential(place - 2 * step * way))
                          + potential(place + 3 * step * way) - potential(place - 3 * step * way)) / (60 * step)
    return [slope(way) for way in (north, east, down)]
