#!/usr/bin/env python3
"""notices.py [--check FILE...]: writes NOTICES.md, what Anomalis takes from others and the terms it comes under.

The texts are those of Debian's packages, which must be installed. --check instead asks whether NOTICES.md tells of every
library that the programs and modules FILE... load, and of every one that the build description looks for.
"""
import itertools
import pathlib
import re
import subprocess
import sys

PROJECT = pathlib.Path(__file__).resolve().parent.parent
NOTICES = PROJECT / "NOTICES.md"
COMMON = pathlib.Path("/usr/share/common-licenses")
PAPERS = pathlib.Path("/usr/share/doc")

# Name; version in Debian 12; how it is used; holders of the rights; licences; libraries; names in the build description.
LIBRARIES = [
    ("Qt", "6.4.2", "loaded: the window, pictures, the guide", "The Qt Company Ltd. and contributors", "LGPL-3",
     "libQt6Core libQt6Gui libQt6Widgets libQt6Svg libQt6PrintSupport libQt6Help", "Qt6"),
    ("libEMF", "1.0.13", "loaded: enhanced metafiles", "2002 lignum Computing, Inc.", "LGPL-2.1 or later", "libEMF", ""),
    ("PROJ", "9.1.1", "loaded when a coordinate system is spoken of",
     "2000-2022 Frank Warmerdam, Gerald Evenden, Even Rouault, Charles Karney, Kristian Evers, Thomas Knudsen and others",
     "MIT", "libproj", "PROJ"),
    ("SQLite", "3.40.1", "loaded: GeoPackage files", "none: D. Richard Hipp gave it to the public", "public domain",
     "libsqlite3", "SQLite3"),
    ("zlib", "1.2.13", "loaded: packed files", "1995-2013 Jean-loup Gailly and Mark Adler", "Zlib", "libz", "ZLIB"),
    ("Eigen", "3.4.0", "compiled in: least squares", "2008-2021 Gaël Guennebaud, Benoît Jacob and others", "MPL-2.0", "",
     "Eigen3"),
    ("CLI11", "2.1.2", "compiled in: the command line",
     "2017-2020 University of Cincinnati, developed by Henry Schreiner under NSF award 1414736", "BSD-3-Clause", "",
     "CLI11"),
    ("JSON for Modern C++", "3.11.2", "compiled in: JSON",
     "2013-2022 Niels Lohmann, 2009 Florian Loitsch, 2008-2009 Björn Hoehrmann", "MIT", "", "nlohmann_json"),
    ("toml++", "3.3.0", "compiled in: survey plans", "2020-2022 Mark Gillard, 2008-2009 Björn Hoehrmann", "MIT", "", ""),
    ("pybind11", "2.10.3", "compiled into the module for Python", "2016-2019 Wenzel Jakob and others", "BSD-3-Clause", "",
     "pybind11"),
    ("Furo", "2022.12.07", "in the guide's HTML: style and scripts of its pages", "2020 Pradyun Gedam; 2019 Chris Ferdinandi "
     "and others", "MIT", "", ""),
    ("Sphinx, jQuery, Underscore", "5.3.0", "in the guide's HTML: scripts of its search",
     "2007-2022 the Sphinx team; 2021 OpenJS Foundation; 2009-2021 Jeremy Ashkenas and others; 2001 Martin Porter",
     "BSD-2-Clause; MIT; BSD-3-Clause", "", ""),
    ("libstdc++ and libgcc", "12.2.0", "loaded; parts compiled in", "1997-2022 Free Software Foundation, Inc.",
     "GPL-3 or later with the GCC Runtime Library Exception", "libstdc++ libgcc_s", ""),
    ("IGRF-14", "2024", "its coefficients: the earth's main field",
     "International Association of Geomagnetism and Aeronomy (IAGA), Working Group V-MOD; doi:10.5281/zenodo.14012302; "
     "the published file, unchanged", "CC BY 4.0", "", ""),
]
# The C library and its loader, which every program of the system has; what tests alone and the interpreter bring.
OF_THE_SYSTEM = {"libc", "libm", "ld-linux-x86-64", "libdl", "libpthread", "librt", "libasan", "libubsan"}
NOT_SHIPPED = {"Threads", "Python", "GTest", "benchmark", "Anomalis", "anomalis"}

HEAD = """# Notices

What Anomalis takes from others, and the terms it comes under. Anomalis itself is under the Apache License 2.0
(`LICENSE`). This page is shipped with the programs and shown by *Help, About*; `docs/notices.py` writes it.

| What | Version | How it is used | Rights | Licence |
|---|---|---|---|---|
"""
AFTER = """
Versions are those of Debian 12; *Help, Find File in Path* tells which ones a program really runs with.

**Qt, libEMF and your right to change them.** Both are loaded as the system's own shared libraries when a program starts,
unchanged; nothing of them is in our files but what their headers say. You may change or replace them: install another
build with the same interface in their place, or name its folder in `LD_LIBRARY_PATH`. Nothing in Anomalis prevents that,
nor looking into the programs to mend what you changed. Their sources come with `apt-get source qt6-base qt6-svg qt6-tools
libemf` on Debian. Qt may be taken under the LGPL version 3; libEMF under the LGPL version 2.1 or any later one.

**Eigen** is used unchanged; its sources come with `apt-get source eigen3` or from its makers.

The fonts of charts are those of the system. The libraries named here bring others with them, each told of in
`/usr/share/doc/PACKAGE/copyright` of a Debian system.
"""


def of_package(package, heading):
    """The licence that the papers of a Debian package have under a heading of its own."""
    lines = (PAPERS / package / "copyright").read_text(encoding="utf-8").splitlines()
    first = next(i for i, line in enumerate(lines) if line == heading and not lines[i - 1])
    text = itertools.takewhile(lambda line: line.startswith(" "), lines[first + 1:])
    return "\n".join("" if line.strip() == "." else line[1:].rstrip() for line in text).strip("\n")


def gcc_exception():
    papers = (PAPERS / "libstdc++6" / "copyright").read_text(encoding="utf-8")
    last = "requirements of the license of GCC."
    return papers[papers.index("GCC RUNTIME LIBRARY EXCEPTION"):papers.index(last) + len(last)]


def common(name):
    return (COMMON / name).read_text(encoding="utf-8").strip("\n")


def texts():
    return [
        ("LGPL-3: Qt", common("LGPL-3")),
        ("GPL-3, which LGPL-3 builds on: Qt, libstdc++ and libgcc", common("GPL-3")),
        ("GCC Runtime Library Exception: libstdc++ and libgcc", gcc_exception()),
        ("LGPL-2.1: libEMF", common("LGPL-2.1")),
        ("MPL-2.0: Eigen", common("MPL-2.0")),
        ("MIT: PROJ, JSON for Modern C++, toml++, Furo, jQuery, Underscore", of_package("libtomlplusplus-dev", "License: Expat")),
        ("BSD-2-Clause: Sphinx", of_package("sphinx-common", "License: BSD-2-clause")),
        ("BSD-3-Clause: stemmers of the search of Sphinx", of_package("sphinx-common", "License: BSD-3-clause")),
        ("BSD-3-Clause: CLI11", of_package("libcli11-dev", "License: BSD-3-clause")),
        ("BSD-3-Clause: pybind11", of_package("pybind11-dev", "License: BSD-3-Clause+CLA")),
        ("Zlib: zlib", of_package("zlib1g", "License: Zlib")),
        ("CC BY 4.0: IGRF-14", of_package("libuv1", "License: CC-BY-4.0")),
    ]


def page():
    rows = "".join(f"| {name} | {version} | {use} | {rights} | {licence} |\n"
                   for name, version, use, rights, licence, _, _ in LIBRARIES)
    return HEAD + rows + AFTER + "".join(f"\n## {title}\n\n```text\n{text}\n```\n" for title, text in texts())


def loaded_by(path):
    dynamic = subprocess.run(["readelf", "-W", "-d", path], check=True, text=True, capture_output=True).stdout
    return {re.split(r"\.so|-\d", name)[0] if not name.startswith("ld-") else name.split(".so")[0]
            for name in re.findall(r"\(NEEDED\).*\[(.*)\]", dynamic)}


def looked_for():
    files = [PROJECT / "CMakeLists.txt", *(PROJECT / "src").rglob("CMakeLists.txt")]
    return {name for file in files for name in re.findall(r"find_package\((\w+)", file.read_text(encoding="utf-8"))}


def check(files):
    told = {row[0] for row in LIBRARIES if f"\n| {row[0]} | " in NOTICES.read_text(encoding="utf-8")}
    libraries = {name for row in LIBRARIES if row[0] in told for name in row[5].split()}
    packages = {name for row in LIBRARIES if row[0] in told for name in row[6].split()}
    lacking = {f"{name}, which {path} loads" for path in files for name in loaded_by(path) - libraries - OF_THE_SYSTEM}
    lacking |= {f"{name}, which the build looks for" for name in looked_for() - packages - NOT_SHIPPED}
    for what in sorted(lacking):
        print(f"NOTICES.md lacks {what}: add it to docs/notices.py and run that")
    return 1 if lacking else 0


if __name__ == "__main__":
    if sys.argv[1:2] == ["--check"]:
        sys.exit(check(sys.argv[2:]))
    NOTICES.write_text(page(), encoding="utf-8")
