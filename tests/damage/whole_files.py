"""Tells whether an output of the batch tool is a whole file of its kind. Each check raises ValueError."""
import csv
import io
import json
import re
import struct
import xml.etree.ElementTree


def require(holds, what):
    if not holds:
        raise ValueError(what)


def no_constant(name):
    raise ValueError("not a number in JSON: " + name)


def check_json(data):
    require(data.endswith(b"\n"), "no end of the last line")
    json.loads(data.decode("utf-8"), parse_constant=no_constant)


NOT_FINITE = re.compile(rb"[-+]?(nan|inf|infinity)$", re.IGNORECASE)


def check_rows(lines, columns):
    for number, line in enumerate(lines, 1):
        words = line.split(b",")
        require(len(words) == columns, f"row {number} has {len(words)} of {columns} columns")
        for word in words:
            require(not NOT_FINITE.match(word.strip()), f"row {number} holds {word!r}")


def check_profile_table(data):
    require(data.endswith(b"\n"), "no end of the last line")
    lines = data.splitlines()
    require(lines and lines.pop(0).startswith(b"#Profile model data for "), "no title")
    require(lines and lines[0].startswith(b"East, "), "no names of columns")
    check_rows(lines, lines[0].count(b",") + 1)


def check_model_table(data):
    require(data.startswith(b"#Profile model for "), "no title")
    require(data.endswith(b"\n"), "no end of the last line")
    require(b"East, North, DepthToTop" in data, "no names of columns")


def check_clean_table(data):
    text = data.decode("utf-8")
    require(text.endswith("\n"), "no end of the last line")
    rows = list(csv.reader(io.StringIO(text), strict=True))
    require(rows, "no names of columns")
    for number, row in enumerate(rows):
        require(len(row) == len(rows[0]), f"row {number} has {len(row)} of {len(rows[0])} columns")
        for name, word in zip(rows[0], row):
            require(name in ("name", "type") or not NOT_FINITE.match(word.encode()), f"row {number} holds {word}")


def check_mesh(data):
    lines = data.splitlines()
    require(len(lines) == 5 and data.endswith(b"\n"), "not five lines")
    require(not re.search(rb"\b(nan|inf)", data, re.IGNORECASE), "a number that is none")


def check_dxf(data):
    lines = data.decode("latin-1").split("\r\n" if b"\r\n" in data else "\n")
    require(lines[-1] == "" and lines[-3].strip() == "0" and lines[-2] == "EOF", "no end mark")
    pairs = lines[:-1]
    require(len(pairs) % 2 == 0, "a group without a value")
    for code, value in zip(pairs[::2], pairs[1::2]):
        if 10 <= int(code) <= 59:
            require(abs(float(value)) < 3.5e38, f"group {code} holds {value}")


def check_workspace(data):
    require(data.count(b"\n") >= 10 and data.endswith(b"\r\n"), "no end of the last line")
    require(b"[AXM Display Settings]\r\n" in data, "no display settings")


def check_png(data):
    require(data.startswith(b"\x89PNG\r\n\x1a\n") and data.endswith(b"IEND\xaeB`\x82"), "not a whole PNG picture")


def check_svg(data):
    xml.etree.ElementTree.fromstring(data)


def check_pdf(data):
    require(data.startswith(b"%PDF-") and data.rstrip().endswith(b"%%EOF"), "not a whole PDF page")


def check_emf(data):
    require(len(data) > 100, "no header")
    kind, = struct.unpack_from("<I", data)
    signature, _version, size = struct.unpack_from("<III", data, 40)
    require(kind == 1 and signature == 0x464D4520 and size == len(data), "the header tells another size")
    require(struct.unpack_from("<I", data, size - 20)[0] == 14, "no last record")


def tells_failure(name, data):
    """Whether a table or report says itself that something failed on the way; None of outputs that have no place."""
    if name in ("forward.csv", "profile.csv", "model.csv"):
        return b" [WITH FAILURES: " in data.partition(b"\n")[0]
    if name in ("dump.json", "report.json"):
        try:
            return bool(json.loads(data.decode("utf-8"))["failures"])
        except (ValueError, LookupError):
            return None
    if name.startswith("clean"):
        return data.partition(b"\n")[0].rstrip().endswith(b",failures")
    return None


CHECKS = {
    "dump.json": check_json, "report.json": check_json, "forward.csv": check_profile_table,
    "profile.csv": check_profile_table, "model.csv": check_model_table, "mesh.hdr": check_mesh,
    "clean_profile.csv": check_clean_table, "clean_model.csv": check_clean_table, "bodies.dxf": check_dxf,
    "plan.dxf": check_dxf, "fitted.axm": check_workspace, "chart.png": check_png, "chart.svg": check_svg,
    "chart.pdf": check_pdf, "chart.emf": check_emf,
}


def check(name, data):
    try:
        CHECKS[name](data)
    except (ValueError, LookupError, xml.etree.ElementTree.ParseError, csv.Error, struct.error) as failure:
        raise ValueError(f"{name}: {failure}") from failure
