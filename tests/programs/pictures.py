#!/usr/bin/env python3
"""The batch tool starts without a window system and finds what draws its pictures.

pictures.py BATCH MODULE MODULES_FROM_PROGRAM MODEL
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile

batch, module, modules_from_program, model = sys.argv[1:]
starts = {"png": b"\x89PNG", "svg": b"<?xml", "pdf": b"%PDF", "emf": b"\x01\0\0\0"}


def check(condition, what):
    if not condition:
        sys.exit("failed: " + what)


def run(program, *words):
    return subprocess.run([program, *words], capture_output=True, text=True)


def check_start():
    """Neither the window system, nor its module, nor PROJ is among what the program loads at its start."""
    traced = subprocess.run([batch], env={**os.environ, "LD_TRACE_LOADED_OBJECTS": "1"}, capture_output=True, text=True)
    check("libc.so" in traced.stdout, "what is loaded is told: " + traced.stdout)
    check(not re.search("Qt|libX11|libGL|libproj|pictures", traced.stdout), traced.stdout)


def check_drawn(program, folder):
    for ending, start in starts.items():
        for view in ("section", "page"):
            out = os.path.join(folder, f"{view}.{ending}")
            drawn = run(program, "render", model, "--view", view, "-o", out)
            check(drawn.returncode == 0, f"{view} as {ending} ended with {drawn.returncode}: {drawn.stderr}")
            check(open(out, "rb").read(5).startswith(start), f"{out} is no {ending}")
    survey = os.path.join(folder, "survey.csv")
    with open(survey, "w") as rows:
        rows.write("line,east,north,mag\n" + "".join(f"{100 + i // 50},{500000 + i % 50 * 10},{6500000 + i // 50 * 100},"
                                                     f"{56000 + i}\n" for i in range(150)))
    out = os.path.join(folder, "map.png")
    drawn = run(program, "map", survey, "-o", out)
    check(drawn.returncode == 0, f"map ended with {drawn.returncode}: {drawn.stderr}")
    check(open(out, "rb").read(4) == starts["png"], "the map is a picture")


def check_places(folder):
    """A program without its module says what is missing and draws as soon as it is there."""
    alone = os.path.join(folder, "bin", os.path.basename(batch))
    os.mkdir(os.path.dirname(alone))
    shutil.copy(batch, alone)
    out = os.path.join(folder, "out.svg")
    refused = run(alone, "render", model, "-o", out)
    check(refused.returncode == 1 and not os.path.exists(out), f"it ended with {refused.returncode}")
    check("anomalis-pictures.so, which was not found, neither as" in refused.stderr, refused.stderr)
    check(run(alone, "info", model).returncode == 0, "what draws nothing needs no module")
    installed = os.path.normpath(os.path.join(folder, "bin", modules_from_program))
    os.makedirs(installed)
    shutil.copy(module, installed)
    drawn = run(alone, "render", model, "-o", out)
    check(drawn.returncode == 0 and os.path.exists(out), drawn.stderr)
    with open(os.path.join(folder, "bin", os.path.basename(module)), "w") as broken:
        broken.write("no module")
    refused = run(alone, "render", model, "-o", out)
    check(refused.returncode == 1 and "which could not be loaded (" in refused.stderr, refused.stderr)


check_start()
for check_in in (lambda folder: check_drawn(batch, folder), check_places):
    with tempfile.TemporaryDirectory() as place:
        check_in(place)
