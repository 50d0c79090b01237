#!/usr/bin/env python3
"""What it costs to start a program: processor time of the quickest of many runs, and what it loads.

start.py PROGRAM... [-- ARGUMENT...]     the arguments are --version when none are given
"""

import os
import subprocess
import sys

RUNS = 60


def arguments():
    words = sys.argv[1:]
    if "--" in words:
        cut = words.index("--")
        return words[:cut], words[cut + 1:]
    return words, ["--version"]


def processor_ms(command):
    """User and system time of one run."""
    child = os.posix_spawn(command[0], command, os.environ,
                           file_actions=[(os.POSIX_SPAWN_OPEN, 1, "/dev/null", os.O_WRONLY, 0)])
    _, status, used = os.wait4(child, 0)
    if status != 0:
        sys.exit(f"{' '.join(command)} ended with {os.waitstatus_to_exitcode(status)}")
    return 1e3 * (used.ru_utime + used.ru_stime)


def libraries(program):
    traced = subprocess.run([program], env={**os.environ, "LD_TRACE_LOADED_OBJECTS": "1"}, capture_output=True, text=True)
    return [line.split()[0] for line in traced.stdout.splitlines() if line.strip()]


programs, words = arguments()
if not programs:
    sys.exit(__doc__)
print(f"{'ms':>7}  {'libraries':>9}  {'of Qt':>5}  program")
best = {}
for _ in range(RUNS):  # in turns, so that a busy machine slows all of them
    for program in programs:
        best[program] = min(best.get(program, 1e9), processor_ms([os.path.abspath(program), *words]))
for program in programs:
    loaded = libraries(os.path.abspath(program))
    print(f"{best[program]:7.2f}  {len(loaded):9}  {sum('Qt' in name for name in loaded):5}  {program}")
