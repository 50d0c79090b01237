#!/usr/bin/env python3
"""check_desktop.py entry|metainfo|mime|releases|icons BUILT: whether desktops can use what this folder gives them.
BUILT is the folder of the files that are made from those here."""
import configparser
import pathlib
import shutil
import struct
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as xml

HERE = pathlib.Path(__file__).resolve().parent
ID = "org.anomalis.Anomalis"
TYPE = "application/x-anomalis-workspace"


def run(*command):
    done = subprocess.run(command, capture_output=True, text=True, check=False)
    assert done.returncode == 0 and "warning" not in done.stdout, f"{command}\n{done.stdout}{done.stderr}"
    return done.stdout


def check_entry(_):
    run("desktop-file-validate", str(HERE / f"{ID}.desktop"))
    reader = configparser.ConfigParser(interpolation=None, delimiters="=")
    reader.optionxform = str
    reader.read(HERE / f"{ID}.desktop", encoding="utf-8")
    entry = reader["Desktop Entry"]
    assert entry["Exec"] == "anomalis %f", "a double click hands one file over"
    assert entry["MimeType"].split(";")[0] == TYPE
    assert entry["Icon"] == ID


def check_metainfo(built):
    file = built / f"{ID}.metainfo.xml"
    run("appstreamcli", "validate", "--no-net", str(file))
    component = xml.parse(file).getroot()
    assert component.findtext("id") == ID
    assert component.findtext("launchable") == f"{ID}.desktop"
    assert component.findtext("provides/mediatype") == TYPE


def check_mime(_):
    """The database of types takes the file, and a workspace is known by its ending."""
    with tempfile.TemporaryDirectory() as folder:
        packages = pathlib.Path(folder, "mime/packages")
        packages.mkdir(parents=True)
        shutil.copy(HERE / f"{ID}.mime.xml", packages / f"{ID}.xml")
        run("update-mime-database", str(packages.parent))
        globs = (packages.parent / "globs2").read_text(encoding="utf-8")
    assert f":{TYPE}:*.axm" in globs, globs


def check_releases(_):
    sys.path.insert(0, str(HERE))
    sys.dont_write_bytecode = True
    import releases  # pylint: disable=import-outside-toplevel
    text = ("# Changes\n\n## Not yet released\n\n- Soon\n\n## 1.1.0 - 2027-02-01\n\n### Added\n\n- Pipes & `wires`\n"
            "  of [all](x.md) sizes\n\nWords.\n\n## [1.0.0] (2026-12-24)\n")
    found = releases.read_releases(text)
    assert found == [("1.1.0", "2027-02-01", ["Pipes & `wires` of [all](x.md) sizes"]), ("1.0.0", "2026-12-24", [])], found
    shop = releases.as_appstream(found)
    assert "<li>Pipes &amp; wires of all sizes</li>" in shop, shop
    assert [r.get("version") for r in xml.fromstring(shop)] == ["1.1.0", "1.0.0"]
    debian = releases.as_debian(found, "A B <a@b>")
    assert "\n  * Pipes & wires of all sizes\n" in debian, debian
    assert "\n -- A B <a@b>  Mon, 01 Feb 2027 00:00:00 +0000\n" in debian, debian


def check_icons(built):
    sizes = (16, 22, 24, 32, 48, 64, 128, 256, 512)
    for drawing in ("anomalis", "workspace"):
        for size in sizes:
            head = (built / f"{drawing}-{size}.png").read_bytes()[:24]
            assert head[:8] == b"\x89PNG\r\n\x1a\n" and struct.unpack(">II", head[16:]) == (size, size)
    for drawing in (HERE / "icons").iterdir():
        box = xml.parse(drawing).getroot().get("viewBox").split()
        assert box[:2] == ["0", "0"] and box[2] == box[3], f"{drawing} is no square"
        assert "clip" not in drawing.read_text(encoding="utf-8"), f"{drawing}: Qt draws no clipping"


if __name__ == "__main__":
    globals()["check_" + sys.argv[1]](pathlib.Path(sys.argv[2]))
