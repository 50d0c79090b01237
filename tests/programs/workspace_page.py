"""workspace_page.py ANOMALIS-BATCH PROJECT: the page of the guide about the workspace file, believed to the letter.

A reader that knows nothing but the tables of the page reads workspaces of every format, whole and cut, and the ones of
the project. What it reads must be what `anomalis-batch dump` tells of the same file, its data file being away."""
import json
import math
import pathlib
import re
import struct
import subprocess
import sys
import tempfile

tool, project = sys.argv[1], pathlib.Path(sys.argv[2])
page = (project / "docs/reference/workspace_file.md").read_text()
wrong = []


def table(heading):
    """The first table below a heading, each row a dictionary by its head."""
    rows = re.search(rf"^#+ {heading}\n.*?^(\|.*?)\n\n", page, re.S | re.M).group(1).splitlines()
    cells = [[cell.strip().replace("`", "") for cell in row.strip()[1:-1].split("|")] for row in rows]
    return [dict(zip([name.strip() for name in cells[0]], row)) for row in cells[2:]]


definitions, bodies, layout = table("The lines"), table("The lines of a body"), table("The layout of the window")
extensions = [name for row in table("Extensions") for name in [row["Name"]] if not name.startswith("fit")]
NEW_BODY = {row["Item"]: row["New"] for row in bodies}


def single(value):
    return struct.unpack("f", struct.pack("f", value))[0]


def as_kind(kind, token):
    if kind == "f64":
        return float(token)
    return single(float(token)) if kind == "f32" else round(float(token))


def usual(row, type_code=None):
    """The value of a new workspace or body."""
    text = row["New"]
    if type_code is not None and "," in text:
        text = text.split("pipes and wires")[1] if type_code >= 16 else text.split(",")[0]
    return as_kind(row["Kind"], text)


class Line:
    def __init__(self, text):
        self.items = re.split(r"[ \t]+", text.strip()) if text.strip() else []

    def take(self, kind):
        return as_kind(kind, self.items.pop(0))


# What the page says of line 4 in words: which items are there or not together.
GROUPS = [["vg_filter_width", "vg_filter_step"], ["smooth_filter_type", "smooth_filter_width"],
          ["first_distance", "last_distance"], ["first_station", "last_station"]]


def read_definitions(lines):
    read = {}
    for number in range(2, 13):
        line = Line(lines[number - 1])
        for row in (row for row in definitions if row["Line"] == str(number)):
            name, left = row["Item"], row["If left"]
            group = next((group for group in GROUPS if group[0] == name), [name])
            if left and len(line.items) < len(group):
                for member in (row for row in definitions if row["Item"] in group):
                    read[member["Item"]] = usual(member) if left == "stays" else as_kind(member["Kind"], left)
            elif name not in read:
                read[name] = line.take(row["Kind"])
    read["smooth_filter_type"] = min(max(read["smooth_filter_type"], 0), 4)
    if read["first_distance"] < read["last_distance"]:
        read["first_station"] = read["last_station"] = 0
    return read


def read_heading(text, version, body):
    line = Line(text)
    body["type"] = line.take("i32")
    if version == 0 and line.items:
        version = 1
    if version:
        for name in ("include_demagnetisation", "vary"):
            body[name] = line.take("i32")
        if line.items:
            body["colour"] = line.take("i32")
            rest = text.strip().split(None, 4)[4:]
            rest = rest[0] if rest else ""
            body["name"] = rest.split(None, 1)[-1] if rest[:1] in ("0", "1") else rest
    return version


def read_body(lines, at, version, field):
    body = {}
    version = read_heading(lines[at], version, body)
    for row in bodies:
        if row["Kind"] != "text" and row["Line"] != "A" and row["New"]:
            body[row["Item"]] = ((usual(row), -99999, -99999) if row["Item"].endswith("limits")
                                 else usual(row, body["type"]))
    body["turned_off"] = 0
    for name in ("include_demagnetisation", "vary", "colour"):
        body.setdefault(name, as_kind("i32", NEW_BODY[name]))
    since = {letter: min(int(row["Since"]) for row in bodies if row["Line"] == letter) for letter in "BCDEFGHI"}
    for letter in "BCDEFGHI":
        if version < since[letter]:
            continue
        at += 1
        if letter in "BC":
            body["description" if letter == "B" else "rock_type"] = lines[at].strip()
            continue
        line = Line(lines[at])
        for row in (row for row in bodies if row["Line"] == letter and version >= int(row["Since"])):
            if not line.items and ("if left" in row["Meaning"] or letter in "DHI"):
                break
            limits = row["Item"].endswith("limits")
            body[row["Item"]] = tuple(line.take("f32") for _ in range(3)) if limits else line.take(row["Kind"])
    if version <= 2:
        body["susc"], body["density"] = single(body["susc"] * 4 * math.pi), single(body["density"] * 2)
    if version <= 6 and body["type"] < 16:
        induced = body["susc"] * field
        body["rem_q"] = single(body["rem_q"] / induced) if body["susc"] > 0 and field > 0 else 0
    if body["type"] < 16:
        body["dip"] = abs(body["dip"])
    return body, at + 1, version


def read_by_page(text):
    lines = text.split("\r\n")
    whole = {"data_file": lines[0].strip(), **read_definitions(lines[:12])}
    at, version, found = 12, whole.pop("version"), []
    for _ in range(whole["body_count"]):
        body, at, version = read_body(lines, at, version, whole["field_intensity"])
        found.append(body)
    if "[AXM Display Settings]" in lines:
        at = lines.index("[AXM Display Settings]") - 1
        for number in ("2", "3", "4"):
            line = Line(lines[at + int(number)])
            for row in (row for row in layout if row["Line"] == number):
                name = row["Item"]
                if name.startswith("splitter_fraction"):
                    whole["splitter_fraction"] = [line.take("f32") for _ in range(4)]
                elif row["Kind"] == "word":
                    word = line.items.pop(0).upper() if line.items else "NO"
                    whole[name] = word not in ("NO", "FALSE", "0")
                elif line.items:
                    whole[name] = line.take(row["Kind"])
    if "[AXM Extensions]" in lines:
        for line in lines[lines.index("[AXM Extensions]") + 1:]:
            name, _, value = line.partition(" ")
            if name in extensions:
                whole["extension " + name] = value.strip()
    return whole, found


# Under which name the dump has what an extension says.
IN_DUMP = {"formulas": ("formulas", str), "mag_regional": ("mag_regional_degree", int),
           "mag_noise": ("mag_noise", lambda text: single(float(text))),
           "grav_regional": ("grav_regional_degree", int),
           "grav_noise": ("grav_noise", lambda text: single(float(text))),
           "gap_distance": ("gap_distance", lambda text: single(float(text))), "source_file": ("file", str),
           "source_line": ("line", str), "coordinate_system": ("coordinate_system", str), "survey_date": ("date", str),
           "field_origin": ("field_origin", str), "field": ("field_missing", lambda text: text == "not_set"),
           "igrf": ("igrf_change", lambda text: {"removed": -1, "added": 1}[text])}


def dumped(text, folder):
    file = folder / "case.axm"
    file.write_bytes(text.encode())
    out = subprocess.run([tool, "dump", str(file)], capture_output=True, text=True, timeout=60).stdout
    dump = json.loads(out)
    flat = {}
    for name, value in dump["workspace"].items():
        flat.update(value if isinstance(value, dict) else {name: value})
    return flat, dump


def check(what, text, folder):
    read, bodies_read = read_by_page(text)
    told, dump = dumped(text, folder)
    seen = 0

    def same(name, expected, got):
        nonlocal seen
        seen += 1
        if expected != got:
            wrong.append(f"{what}: {name} is {expected} by the page and {got} by the program")

    for name, value in read.items():
        if name.startswith("extension "):
            place, form = IN_DUMP[name.split()[1]]
            same(name, form(value), told[place])
        elif name != "data_file":
            same(name, value, told.get(name))
    same("bodies", len(bodies_read), len(dump["bodies"]))
    for number, (body, program) in enumerate(zip(bodies_read, dump["bodies"]), 1):
        for name, value in body.items():
            base = name.removesuffix(" limits")
            param = program["params"].get(base) if base in program["params"] else None
            got = program.get(name) if param is None else (
                tuple(param[key] for key in ("vary", "min", "max")) if base != name else param["value"])
            same(f"body {number} {name}", value, got)
    return seen


def sample(version, cut=None, type_code=2):
    """A workspace whose every item differs from every other and from its default. `cut`: the item that its line ends
    before."""
    count = iter(range(11, 1000))

    def of_kind(kind):
        return str(next(count)) if kind == "i32" else f"{next(count)}.25"

    fixed = {"body_count": "2", "version": str(version), "type": str(type_code), "smooth_filter_type": "3",
             "first_distance": "900", "last_distance": "800", "dip": "-61"}
    lines, ended = [], set()

    def put(key, row):
        while len(lines) and lines[-1][0] == key:
            break
        else:
            lines.append((key, []))
        if row["Item"] == cut:
            ended.add(key)
        if key in ended:
            return
        if row["Kind"] == "text":
            lines[-1][1].append(f"0 Text of {row['Item']}" if row["Item"] == "name" else f"Text of {row['Item']}")
        elif row["Item"].endswith("limits"):
            lines[-1][1].extend([of_kind("f32") for _ in range(3)])
        elif row["Item"] != "turned_off":
            lines[-1][1].append(fixed.get(row["Item"], of_kind(row["Kind"])))

    for row in definitions:
        put(row["Line"], row)
    for body in (1, 2):
        for row in bodies:
            if version >= int(row["Since"]):
                put((body, row["Line"]), row)
    text = [" ".join(items) for _, items in lines]
    text += ["", "[AXM Display Settings]", " 7  8  9 Yes 3.5", " 0.1  0.2  0.3  0.4 ", " 1234  5678 "]
    if version == 7:
        text += ["[AXM Extensions]", "formulas exact", "mag_regional 2", "mag_noise 1.25", "grav_regional 0",
                 "grav_noise 0.02", "gap_distance 75", "source_file s.csv", "source_line L 5", "igrf removed",
                 "coordinate_system EPSG:32754", "survey_date 1990-07-01", "field_origin of a test", "unknown thing"]
    return "\r\n".join(text) + "\r\n"


def check_fit(folder):
    """The record of a fit, by the order of its items on the page; the model as it was fitted must be there."""
    for file in (project / "tests/damage").glob("fitted.*"):
        (folder / file.name).write_bytes(file.read_bytes())
    out = subprocess.run([tool, "dump", str(folder / "fitted.axm")], capture_output=True, text=True).stdout
    fit = json.loads(out)["last_fit"]
    lines = (folder / "fitted.axm").read_text().splitlines()
    head = next(line for line in lines if line.startswith("fit ")).split()
    expected = [fit[name] for name in ("date", "formulas", "method", "channel", "target")]
    if head[2:7] != expected:
        wrong.append(f"the head of the fit: {head[2:7]} in place of {expected}")
    rows = [line.split()[1:] for line in lines if line.startswith("fit_parameter")]
    if not rows or len(rows) != len(fit["parameters"]):
        wrong.append("the parameters of the fit are not those of its lines")
    names = dict(re.findall(r"(\d+) `(\w+)`", page[page.index("Numbers of parameters"):]))
    for row, told in zip(rows, fit["parameters"]):
        expected = [int(row[0]), names[row[1]], single(float(row[2])), *map(float, row[3:6]), row[6] == "1",
                    row[7] == "1"]
        got = [told["body"], told["name"], told["value"], told["error"], *told["interval"], told["undetermined"],
               told["at_limit"]]
        if expected != got:
            wrong.append(f"a parameter of the fit: {expected} by the page, {got} by the program")
    row = next(line for line in lines if line.startswith("fit_mag")).split()[1:]
    told = [fit["mag"][name] for name in ("stations", "rms", "noise", "noise_given", "chi_square")]
    if [float(item) for item in row[:5]] != [float(value) for value in told]:
        wrong.append(f"the magnetics of the fit: {row[:5]} by the page, {told} by the program")


def check_damage(folder):
    """What the page says of damaged files: refused or told, and with which exit status."""
    whole = (project / "examples/fault_block.axm").read_bytes().decode()
    (folder / "fault_block.dat").write_bytes((project / "examples/fault_block.dat").read_bytes())
    lines = whole.split("\r\n")
    refused, told = "An error occurred while reading the location file : ", f"{folder}/damaged.axm, line "
    for what, text, status, words in (
            ("no workspace", "a table\r\n" * 20, 1, refused + "Not a workspace file"),
            ("cut in a body", "\r\n".join(lines[:15]), 1, refused + "Input past end of file"),
            ("cut before line 11", "\r\n".join(lines[:8]), 1, refused + "Input past end of file"),
            ("beyond its kind", whole.replace(" 58120 ", " 1e60 "), 1, refused + "Overflow"),
            ("no number", whole.replace(" 58120 ", " 581x20 "), 1, told + '3: "581x20" is no number; 581 was taken'),
            ("a decimal comma", whole.replace("-64.5", "-64,5"), 1, told + '3: "11.2" is left over'),
            ("layout", whole.replace(" 0.5  0.6", " 0.5x  0.6"), 0, "Note: " + told + "42: "),
            ("more bodies", whole.replace(" 3  7  500", " 9  7  500"), 1, refused)):
        file = folder / "damaged.axm"
        file.write_bytes(text.encode())
        done = subprocess.run([tool, "dump", str(file)], capture_output=True, text=True, timeout=60)
        if done.returncode != status or words not in done.stderr or not json.loads(done.stdout):
            wrong.append(f"{what}: {done.returncode} {done.stderr}")


with tempfile.TemporaryDirectory() as name:
    folder, seen = pathlib.Path(name), 0
    for version in range(8):
        for type_code in (2, 16):
            seen += check(f"format {version}, type {type_code}", sample(version, type_code=type_code), folder)
    for row in definitions + bodies:
        item = row["Item"]
        if row.get("If left") or item in ("end_width_a", "num_sectors", "max_triangle_size", "slope", "density"):
            if not any(item in group[1:] for group in GROUPS) or item == "first_station":
                seen += check(f"cut before {item}", sample(0 if item == "version" else 7, cut=item), folder)
    unset = sample(7).replace("igrf removed", "igrf added\r\nfield not_set").split("\r\n")
    unset[2] = " 0  0  0 "
    seen += check("a field that is not set", "\r\n".join(unset), folder)
    for file in [*(project / "examples").glob("*.axm"), *(project / "tests/damage").glob("*.axm")]:
        seen += check(file.name, file.read_bytes().decode().replace("\r\n", "\n").replace("\n", "\r\n"), folder)
    check_fit(folder)
    check_damage(folder)
    if set(extensions) != set(IN_DUMP):
        wrong.append(f"extensions of the page: {sorted(set(extensions) ^ set(IN_DUMP))}")
    example = re.search(r"## An example.*?```text\n(.*?)```", page, re.S).group(1).splitlines()
    shown = (project / "examples/fault_block.axm").read_text().splitlines()[:len(example)]
    if [line.strip() for line in example] != [line.strip() for line in shown]:
        wrong.append("the example is not what the file holds")
    if seen < 2000:
        wrong.append(f"only {seen} items were compared")
print("\n".join(wrong[:40]), seen)
sys.exit(1 if wrong else 0)
