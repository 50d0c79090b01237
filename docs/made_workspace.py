"""Workspaces that scripts of the guide make for the batch tool: a line, its field, bodies; and what the tool answers."""
import json
import pathlib
import subprocess

UNSET = "-99999"
ORDER = ("strike", "dip", "width", "depth_extent", "length", "offset", "plunge", "slope", "susc", "rem_q", "rem_i", "rem_d",
         "density", "distance", "top")
USUAL = dict(type=2, demagnetised=0, distance=0, top=0, strike=0, dip=90, width=100, depth_extent=0, length=0, offset=0,
             plunge=0, slope=0, susc=50000, rem_q=0, rem_i=0, rem_d=0, density=0, sectors=12, shell=0, ends=0)


def body_lines(number, body):
    b = {**USUAL, **body}
    free = b.get("vary", ())
    mark = lambda *names: " ".join(f"{1 if name in free else 0} {UNSET} {UNSET}" for name in names)
    values = lambda *names: " ".join(f"{b[name]:.9g}" for name in names)
    return [f" {b['type']}  {b['demagnetised']}  1  9871600  0  {b.get('name', f'Body {number}')}", "", "",
            f" {b['distance']:.9g} 0 0 {b['top']:.9g} {mark('distance', 'top')} 0 0 {b['shell']} {b['ends']} {b['sectors']} 1 0 ",
            f" {values('strike', 'dip', 'width', 'depth_extent')} {mark('strike', 'dip', 'width', 'depth_extent')}",
            f" {b['length']:.9g} {mark('length')}", f" {b['offset']:.9g} {mark('offset')}",
            f" {b['plunge']:.9g} {mark('plunge')} {b['slope']:.9g} {mark('slope')}",
            f" {values('susc', 'rem_q', 'rem_i', 'rem_d')} {mark('susc', 'rem_q', 'rem_i', 'rem_d')} "
            f"{b['density']:.9g} {mark('density')}"]


def workspace_text(data, bodies, field=(56000, -65, -4), mag=0, grav=0, formulas="exact", filters=(0, 0), smooth_kind=0,
                   base=0, floats=0, extensions=()):
    """`data` has the columns east, north, sensor; `mag` and `grav` are the columns of the readings, 0 for none. `filters`
    are the half-widths of smoothing and residual filter."""
    lines = [data, f" 1  1  1  2  3  0  {mag}  {grav}  0  0  0  0 ", " {} {} {} ".format(*field),
             f" {filters[1]}  5  1  0  0  0  {smooth_kind}  {filters[0]}  0  0 ", f" {base}  0  0  {base}  {floats}  {floats} ",
             " 0  1  1 ", " 0  0 ", " 0  0 ", " 1  1 ", " 1  1 ", " 0  1 ", f" {len(bodies)}  7  500  0  0 "]
    for number, body in enumerate(bodies, 1):
        lines += body_lines(number, body)
    lines += ["[AXM Display Settings]", " 1  1  0 No 2 ", " 0.25  0.5  0.75  0.5 ", " 12000  9000 ", "[AXM Extensions]",
              f"formulas {formulas}", *extensions, ""]
    return "\r\n".join(lines)


def data_text(stations, *columns):
    """Stations are (east, north, sensor)."""
    rows = zip(stations, *columns) if columns else ((s,) for s in stations)
    return "".join("{:.9f} {:.9f} {:.9f}".format(*s) + "".join(f" {v:.9g}" for v in values) + "\n" for s, *values in rows)


class Folder:
    """A folder for workspaces, and the tool that works on them."""

    def __init__(self, tool, path):
        self.tool, self.path = str(pathlib.Path(tool).resolve()), pathlib.Path(path)

    def write(self, name, stations, columns, bodies, **more):
        (self.path / f"{name}.dat").write_text(data_text(stations, *columns))
        file = self.path / f"{name}.axm"
        file.write_text(workspace_text(f"{name}.dat", bodies, **more), newline="")
        return file

    def run(self, *words):
        return subprocess.run([self.tool, *map(str, words)], check=True, capture_output=True, text=True).stdout

    def dump(self, file, *words):
        out = self.path / "dump.json"
        self.run("dump", file, "-o", out, *words)
        return json.loads(out.read_text())

    def responses(self, name, stations, bodies, **more):
        """What each body gives: a list of (nT, mGal) a body."""
        readings = [[(i * 7919) % 13 / 13 for i in range(len(stations))]] * 2
        file = self.write(name, stations, readings, bodies, mag=4, grav=5, **more)
        return [[tuple(row[:2]) for row in body["response"]] for body in self.dump(file)["bodies"]]
