#!/usr/bin/env python3
"""hardening.py [--checks] FILE...: whether programs and modules were built so that a mistake in them ends them.

Looks into what was linked, with readelf, not at what the build was told. Always: programs lie at another address each
time, tables of addresses are read-only before the first line runs, no page is written and executed, and no folder to
look for libraries in is written down. With --checks, as in every optimised build, also: guarded stacks, and calls of
the C library and of the standard library that check their arguments.
"""
import argparse
import re
import subprocess
import sys


def readelf(path, *what):
    return subprocess.run(["readelf", "-W", *what, path], check=True, text=True, capture_output=True).stdout


def segment_flags(headers, name):
    found = re.search(rf"^\s+{name}\s.*?0x\w+ 0x\w+ ([RWE ]{{3}}) ", headers, re.M)
    return found.group(1) if found else None


def faults_of_layout(path):
    """What is wrong in how the file at `path` is laid out, a line each."""
    header, segments, dynamic = readelf(path, "-h"), readelf(path, "-l"), readelf(path, "-d")
    if not re.search(r"Type:\s+DYN", header):
        yield "lies at a fixed address"
    if segment_flags(segments, "INTERP") and "PIE" not in dynamic:
        yield "is a program that is not position independent"
    if segment_flags(segments, "GNU_RELRO") is None:
        yield "keeps its tables writable"
    if not re.search(r"BIND_NOW|FLAGS_1.*\bNOW\b", dynamic):
        yield "looks for its functions when they are first called, so their table stays writable"
    if "E" in (segment_flags(segments, "GNU_STACK") or "E"):
        yield "has a stack that can be executed"
    for load in re.findall(r"^\s+LOAD\s.*?0x\w+ 0x\w+ ([RWE ]{3}) ", segments, re.M):
        if "W" in load and "E" in load:
            yield "has a page that is both written and executed"
    for folder in re.findall(r"\((?:RPATH|RUNPATH)\).*\[(.*)\]", dynamic):
        yield f"looks for libraries in {folder}"


def faults_of_checks(path):
    """Which checks the compiler was to build in are not called from the file at `path`."""
    wanted = {
        r"__stack_chk_fail\b": "no guard of the stack",
        r"_ZSt21__glibcxx_assert_fail": "no assertion of the standard library",
    }
    # A small module may have no array of its own that the C library could be told the size of.
    if segment_flags(readelf(path, "-l"), "INTERP"):
        wanted[r"__(?!stack)\w+_chk\b"] = "no function of the C library that knows the size it writes to"
    called = readelf(path, "--dyn-syms")
    for pattern, fault in wanted.items():
        if not re.search(rf"\bUND {pattern}", called):
            yield fault


def main():
    arguments = argparse.ArgumentParser(description=__doc__)
    arguments.add_argument("--checks", action="store_true")
    arguments.add_argument("files", nargs="+")
    chosen = arguments.parse_args()
    failed = False
    for path in chosen.files:
        faults = list(faults_of_layout(path)) + (list(faults_of_checks(path)) if chosen.checks else [])
        for fault in faults:
            print(f"{path}: {fault}")
        failed |= bool(faults)
    sys.exit(failed)


if __name__ == "__main__":
    main()
