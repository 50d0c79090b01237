#!/usr/bin/env python3
"""releases.py appstream|debian CHANGELOG.md [VERSION] [CONTACT]: the releases of the changelog, newest first, as
AppStream or as the changelog of a Debian package. A heading `## 1.2.0 (2026-11-23)` begins a release; one without a
date is still being made. VERSION, where given, is one that must be among them."""
import datetime
import re
import sys
import textwrap
from xml.sax.saxutils import escape

HEADING = re.compile(r"^## \[?(\d+\.\d+\.\d+)\]?(?:\D*(\d{4}-\d{2}-\d{2}))?")


def read_releases(text):
    """[(version, date or None, [what changed, ...])] of a changelog in Markdown."""
    found = []
    fresh = True
    for line in text.splitlines():
        heading = HEADING.match(line)
        if heading:
            found.append((heading[1], heading[2], []))
        elif line.startswith("## "):
            found.append((None, None, []))
        elif found and line.startswith(("- ", "* ")):
            found[-1][2].append(line[2:].strip())
            fresh = False
            continue
        elif found and found[-1][2] and line.startswith("  ") and line.strip() and not fresh:
            found[-1][2][-1] += " " + line.strip()
            continue
        fresh = True
    return [release for release in found if release[0]]


def plain(text):
    """Without the marks of Markdown."""
    text = re.sub(r"\[([^\]]*)\]\([^)]*\)", r"\1", text)
    return re.sub(r"[`*]|(?<!\w)_|_(?!\w)", "", text)


def as_appstream(releases):
    lines = ["  <releases>"]
    for version, date, changes in releases:
        if not date:
            continue
        lines.append(f'    <release version="{version}" date="{date}">')
        if changes:
            lines += ["      <description>", "        <ul>"]
            lines += [f"          <li>{escape(plain(change))}</li>" for change in changes]
            lines += ["        </ul>", "      </description>"]
        lines.append("    </release>")
    return "\n".join(lines + ["  </releases>"]) if len(lines) > 1 else ""


def as_debian(releases, contact):
    entries = []
    for version, date, changes in releases:
        if not date:
            continue
        day = datetime.date.fromisoformat(date).strftime("%a, %d %b %Y 00:00:00 +0000")
        points = ["\n".join(textwrap.wrap(plain(change), 76, initial_indent="  * ", subsequent_indent="    "))
                  for change in changes or ["New release."]]
        body = "\n".join(points)
        entries.append(f"anomalis ({version}) stable; urgency=medium\n\n{body}\n\n -- {contact}  {day}\n")
    return "\n".join(entries)


def main(form, changelog, version="", contact=""):
    with open(changelog, encoding="utf-8") as file:
        releases = read_releases(file.read())
    if version and version not in [release[0] for release in releases if release[1]]:
        sys.exit(f"{changelog} has no release {version} with a date: add `## {version} (YEAR-MONTH-DAY)`")
    print(as_appstream(releases) if form == "appstream" else as_debian(releases, contact))


if __name__ == "__main__":
    main(*sys.argv[1:])
