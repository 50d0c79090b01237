"""A page of the guide as blocks: what stands in its fences, what comments ask for, which pictures it shows."""
import dataclasses
import re

LANGUAGES = ("sh", "python")


@dataclasses.dataclass
class Block:
    language: str
    line: int  # of the first line of its text, from 1
    text: str
    expected: str | None = None  # what it prints, where the page says so
    expected_line: int = 0
    skipped: str = ""  # why it is not run
    file: str = ""  # the text is written there instead


@dataclasses.dataclass
class Picture:
    line: int
    target: str  # as the page names it


class PageFault(Exception):
    def __init__(self, line, text):
        super().__init__(text)
        self.line = line


def blocks_of(text):
    """The blocks that can be run, in their order. `text` directly behind one is what it prints.

    A comment `<!-- not run: REASON -->` leaves out the next block, `<!-- file: NAME -->` has it written to a file of
    that name; `<!-- run` ... `-->` holds commands of a shell that a reader need not see.
    """
    reader = _Reader(text.split("\n"))
    return reader.read()


def pictures_of(text):
    return [Picture(number, found.group(1))
            for number, line in enumerate(text.split("\n"), 1)
            for found in re.finditer(r"!\[[^\]]*\]\(([^)\s]+)\)", line)]


class _Reader:
    def __init__(self, lines):
        self.lines = lines
        self.at = 0
        self.blocks = []
        self.reason = self.file = ""
        self.last = None  # the block that an expected text may follow

    def read(self):
        while self.at < len(self.lines):
            self.take(self.lines[self.at])
        if self.reason or self.file:
            raise PageFault(len(self.lines), "a comment speaks of the next block, and there is none")
        return self.blocks

    def take(self, line):
        left_out = re.fullmatch(r"<!-- not run: (.+) -->", line)
        file = re.fullmatch(r"<!-- file: (\S+) -->", line)
        fence = re.match(r"(```+)(\S*)", line)
        if left_out:
            self.reason = left_out.group(1)
            self.at += 1
        elif file:
            self.file = file.group(1)
            self.at += 1
        elif line == "<!-- run":
            first = self.at + 2
            self.blocks.append(Block("sh", first, self.until("-->")))
        elif fence:
            self.fenced(fence.group(2), fence.group(1))
        else:
            if line.strip():
                self.last = None
            self.at += 1

    def fenced(self, language, ending):
        first = self.at + 2
        text = self.until(ending)
        if self.file:
            self.blocks.append(Block("file", first, text + "\n", file=self.file))
            self.file, self.last = "", None
        elif language == "text" and self.last:
            self.last.expected, self.last.expected_line = text, first
            self.last = None
        elif language in LANGUAGES:
            self.last = Block(language, first, text, skipped=self.reason)
            self.blocks.append(self.last)
            self.reason = ""
        else:
            self.last = None

    def until(self, ending):
        start = self.at + 1
        for end in range(start, len(self.lines)):
            if self.lines[end].rstrip() == ending:
                self.at = end + 1
                return "\n".join(self.lines[start:end])
        raise PageFault(start, f"no line \"{ending}\" ends what begins here")
