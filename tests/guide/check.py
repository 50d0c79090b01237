#!/usr/bin/env python3
"""check.py --html FOLDER [--tool anomalis-batch]: what the guide and the papers beside it name and is not there.

Links, anchors and pictures of the built pages; files of the project in `code`; menu entries in *emphasis*, as
*File, Export map*, and the keys behind them, buttons and boxes, as *Reset scale*; commands and options of
anomalis-batch. One line a finding; exit status 1 when there is any. Without --tool commands are left out.
"""
import argparse
import html.parser
import pathlib
import re
import sys
import urllib.parse

from names import Names, batch_names, window_names

PROJECT = pathlib.Path(__file__).resolve().parents[2]
PAPERS = ("README.md", "CONTRIBUTING.md")
WITHOUT_WINDOW = ("batch", "cluster", "commands", "python", "reports", "stability", "surveys", "tables")
FOLDERS = "docs|examples|tests|src|cmake|bench|fuzz"
KEY = re.compile(r"(?:(?:Ctrl|Shift|Alt)\+)+\S+|F\d{1,2}")


class Page(html.parser.HTMLParser):
    """The ids of a page, and what it links to."""

    def __init__(self, text):
        super().__init__()
        self.ids, self.targets = set(), []
        self.feed(text)

    def handle_starttag(self, tag, attrs):
        values = dict(attrs)
        self.ids.update(values[each] for each in ("id", "name") if values.get(each))
        self.targets += [values[each] for each in ("href", "src") if values.get(each)]


def dead_links(folder):
    """(page, link) of every link in the HTML files of a folder that leads nowhere."""
    pages = {path.resolve(): Page(path.read_text("utf-8")) for path in sorted(pathlib.Path(folder).rglob("*.html"))}
    for path, page in pages.items():
        for target in page.targets:
            url = urllib.parse.urlsplit(target)
            if url.scheme or url.netloc:
                continue
            file = (path.parent / urllib.parse.unquote(url.path)).resolve() if url.path else path
            known = pages[file].ids if file in pages else None
            if not file.exists() or (known is not None and url.fragment and url.fragment not in known):
                yield path.relative_to(pathlib.Path(folder).resolve()), target


class Paper:
    """A Markdown file: its prose, its inline code and its code blocks."""

    def __init__(self, text):
        blocks, prose = [], []
        fence = None
        for line in text.splitlines():
            mark = re.match(r" *(`{3,}|~{3,})", line)
            if mark and fence is None:
                fence = mark[1]
            elif mark and mark[1].startswith(fence):
                fence = None
            elif fence is not None or line.startswith("    "):
                blocks.append(line.strip())
            else:
                prose.append(line)
        self.prose = "\n".join(prose)
        self.codes = [re.sub(r"\s+", " ", each) for each in re.findall(r"(?<!`)`([^`]+)`(?!`)", self.prose)]
        self.lines = re.sub(r"\\\n\s*", " ", "\n".join(blocks)).splitlines()
        self.plain = re.sub(r"`[^`]*`", "", self.prose)


def missing_files(paper, project):
    for code in paper.codes:
        for word in code.split():
            if not re.fullmatch(rf"(?:{FOLDERS})/[\w./*-]+", word):
                continue
            pattern = re.sub(r"(?<=/)[A-Z]+\b(?!\.)", "*", word).rstrip("/")  # PAGE stands for any
            if not any(project.glob(pattern)):
                yield f"no file {word}"


def dead_paths(path, text):
    """Links of a paper that is read as it stands."""
    for target in re.findall(r"\]\(([^)\s#]+)", text):
        if ":" not in target and not (path.parent / target).exists():
            yield f"no {target}"


def menu_mistakes(paper, names):
    entries = re.compile(rf"(\*{{1,2}})({'|'.join(names.menus)}), ([^*]+)\1(?:\s+\(`([^`]+)`\))?")
    for _, menu, rest, key in entries.findall(paper.prose):
        path = [part.strip().rstrip(".").strip('"') for part in re.sub(r"\s+", " ", rest).split(",")]
        entry = names.entry(menu, path)
        if entry is None:
            yield f"no menu entry {menu}, {', '.join(path)}"
        elif key and key != entry:
            yield f"{menu}, {', '.join(path)} has the key {entry or 'none'}, not {key}"


def unknown_labels(paper, names):
    """What begins with a capital in emphasis is a text of the window, or the title of a page or section."""
    for words in re.findall(r"(?<!\*)\*([A-Z][^*]+)\*(?!\*)", paper.plain):
        label = re.sub(r"\s+", " ", words).rstrip(".:").strip()
        if label.split(",")[0] not in names.menus and label not in names.labels:
            yield f"no button or box {label}"


def unknown_keys(paper, names):
    for code in paper.codes:
        if KEY.fullmatch(code) and code not in names.keys:
            yield f"no key {code}"


def command_mistakes(paper, names):
    """Commands with their options as they would be typed."""
    for line in paper.lines + paper.codes:
        call = re.match(r"(?:\$ )?(?:\S*/)?anomalis-batch ([a-z]\S*)(.*)", line)
        if not call:
            continue
        if call[1] not in names.commands:
            yield f"no command anomalis-batch {call[1]}"
            continue
        for option in re.findall(r"(?<=\s)--[a-z][a-z0-9-]*", re.split(r"\s[#|;&]", call[2])[0]):
            if option not in names.commands[call[1]]:
                yield f"no option {option} of anomalis-batch {call[1]}"


def lone_options(paper, names):
    """Options of whatever command."""
    every = set().union(*names.commands.values())
    for code in paper.codes:
        option = re.match(r"--[a-z][a-z0-9-]*", code)
        if option and option[0] not in every:
            yield f"no option {option[0]}"


def mistakes(text, names, of_the_window=True, of_the_guide=True, project=PROJECT):
    paper = Paper(text)
    if of_the_window:
        yield from unknown_labels(paper, names)
    if of_the_guide and names.commands:
        yield from lone_options(paper, names)
    yield from missing_files(paper, project)
    yield from menu_mistakes(paper, names)
    yield from unknown_keys(paper, names)
    if names.commands:
        yield from command_mistakes(paper, names)


def main():
    arguments = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    arguments.add_argument("--html", required=True, help="the guide as it was built")
    arguments.add_argument("--tool", help="anomalis-batch")
    asked = arguments.parse_args()
    found = [f"{page}: no {target}" for page, target in dead_links(asked.html)]
    menus = window_names(PROJECT / "src")
    names = Names(*menus, batch_names(asked.tool) if asked.tool else {})
    papers = [PROJECT / name for name in PAPERS] + sorted(path for path in (PROJECT / "docs").rglob("*.md")
                                                          if not path.stem.endswith("_head"))
    texts = {path: path.read_text("utf-8") for path in papers}
    names.labels.update(heading for text in texts.values() for heading in re.findall(r"(?m)^#+ (.*)$", text))
    for path, text in texts.items():
        of_the_window = path.parent.name in ("reference", "tutorials") and path.stem not in WITHOUT_WINDOW
        findings = [*dead_paths(path, Paper(text).plain),
                    *mistakes(text, names, of_the_window, path.name not in PAPERS)]
        found += [f"{path.relative_to(PROJECT)}: {each}" for each in findings]
    print("\n".join(found) or f"{len(papers)} papers: all that they name is there")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
