#!/usr/bin/env python3
"""Looks at the sources with clang, several at a time where they bear it.

  check_groups.py tidy BUILD [--seconds N]     the checks of .clang-tidy for every file below src
  check_groups.py headers BUILD [--seconds N]  whether each file, by itself, includes what it uses

With --seconds those of chance that take about so many seconds of processor time; ANOMALIS_SEED chooses them.

BUILD is the folder of a build with compile_commands.json. The standard library and Qt are read once for a group, which
takes most of the time; a group whose names clash is halved.
"""
import argparse
import concurrent.futures
import json
import os
import pathlib
import random
import re
import resource
import shlex
import subprocess
import sys
import tempfile

root = pathlib.Path(__file__).resolve().parents[1]
group_size = 16


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("what", choices=["tidy", "headers"])
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument("--seconds", type=float, default=float("inf"))
    return parser.parse_args()


def flags_for_clang(command):
    """Of a command of g++ what clang takes too, without the precompiled headers, so that each file stands alone."""
    words = shlex.split(command)
    kept, skip = [], False
    for at, word in enumerate(words[1:], 1):
        if skip:
            skip = False
        elif word in ("-o", "-c", "-include"):
            skip = True
        elif re.match(r"-(D|I|std=|f(no-)?math-errno|ffp-contract|m)", word):
            kept.append(word)
        elif word == "-isystem":
            kept += [word, words[at + 1]]
    return kept + ["-Wall", "-Wextra", "-Wno-unused-command-line-argument"]


def sources_with_flags(build):
    """Every source that is compiled, a group of the build taken apart, with its flags."""
    found = {}
    for entry in json.loads((build / "compile_commands.json").read_text()):
        file = pathlib.Path(entry["directory"], entry["file"])
        flags = tuple(flags_for_clang(entry["command"]))
        members = re.findall(r'#include "(.*)"', file.read_text()) if "/Unity/" in str(file) else [str(file)]
        for member in members:
            if member.startswith(str(root)) and not member.startswith(str(build.resolve())):
                found.setdefault(member, flags)
    return found


def groups_of(sources):
    """Files of a room with the same flags."""
    groups = {}
    for file, flags in sorted(sources.items()):
        groups.setdefault((pathlib.Path(file).relative_to(root).parts[:2], flags), []).append(file)
    for (_, flags), files in groups.items():
        for at in range(0, len(files), group_size):
            yield files[at:at + group_size], flags


def run(command):
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, cwd=root)
    return done.returncode, done.stdout


def tidy(files, flags, folder):
    """The status and the words of clang-tidy over files as one; over each half where names clash."""
    with tempfile.NamedTemporaryFile("w", suffix=".cpp", dir=folder, delete=False) as group:
        group.write("".join(f'#include "{file}"\n' for file in files))
    compile_only, _ = run(["clang++", "-fsyntax-only", "-w", *flags, group.name]) if len(files) > 1 else (0, "")
    if compile_only != 0:
        middle = len(files) // 2
        results = [tidy(half, flags, folder) for half in (files[:middle], files[middle:])]
        return max(status for status, _ in results), "".join(text for _, text in results)
    name = group.name if len(files) > 1 else files[0]
    return run(["clang-tidy", "--quiet", "--checks=-bugprone-suspicious-include", "--warnings-as-errors=*", "--header-filter=/src/.*\\.(h|cpp)$",
                f"--config-file={root}/.clang-tidy", name, "--", *flags])


def spent():
    usage = resource.getrusage(resource.RUSAGE_CHILDREN)
    return usage.ru_utime + usage.ru_stime


def shuffled(pieces):
    pieces = list(pieces)
    random.Random(os.environ.get("ANOMALIS_SEED", "1")).shuffle(pieces)
    return pieces


def check_tidy(sources, seconds):
    ours = {file: flags for file, flags in sources.items() if file.startswith(f"{root}/src/")}
    failed, looked_at = False, 0
    with tempfile.TemporaryDirectory() as folder, \
            concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        groups = shuffled(groups_of(ours))
        results = pool.map(lambda group: tidy(*group, folder) if spent() < seconds else None, groups)
        for (files, _), result in zip(groups, results):
            if result is None:
                continue
            looked_at += len(files)
            if result[0] != 0:
                failed = True
                print(result[1], flush=True)
    print(f"{looked_at} of {len(ours)} files")
    return failed


def check_headers(sources, seconds):
    files = shuffled(sorted(sources))

    def look(file):
        return run(["clang++", "-fsyntax-only", *sources[file], file]) if spent() < seconds else None

    failed, looked_at = False, 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for file, result in zip(files, pool.map(look, files)):
            if result is None:
                continue
            looked_at += 1
            if result[0] != 0:
                failed = True
                print(file, result[1], flush=True)
    print(f"{looked_at} of {len(files)} files")
    return failed


def main():
    options = parse_arguments()
    sources = sources_with_flags(options.build)
    check = check_tidy if options.what == "tidy" else check_headers
    return 1 if check(sources, options.seconds) else 0


sys.exit(main())
