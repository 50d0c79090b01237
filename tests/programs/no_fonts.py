#!/usr/bin/env python3
"""Where a system has no fonts both programs say so in the terminal, and go on.

no_fonts.py BATCH WINDOW MODEL
"""

import os
import subprocess
import sys
import tempfile

batch, window, model = sys.argv[1:]
told = "This system has no fonts"


def check(condition, what):
    if not condition:
        sys.exit("failed: " + what)


def without_fonts(folder):
    conf = os.path.join(folder, "fonts.conf")
    with open(conf, "w") as file:
        file.write(f"<fontconfig><dir>{folder}/none</dir><cachedir>{folder}/cache</cachedir></fontconfig>")
    places = {name: os.path.join(folder, name) for name in ("XDG_STATE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME")}
    return {**os.environ, **places, "FONTCONFIG_FILE": conf, "QT_QPA_FONTDIR": os.path.join(folder, "none")}


def check_batch(folder):
    for ending in ("png", "svg", "pdf", "emf"):
        picture = os.path.join(folder, "picture." + ending)
        done = subprocess.run([batch, "render", model, "-o", picture], env=without_fonts(folder),
                              capture_output=True, text=True)
        check(done.returncode == 1, f"{ending}: render ended with {done.returncode}: {done.stderr}")
        check(told in done.stderr and "Install" in done.stderr, done.stderr)
        check(os.path.getsize(picture) > 10000, "the curves are drawn all the same")
    with_fonts = subprocess.run([batch, "render", model, "-o", picture], capture_output=True, text=True)
    check(with_fonts.returncode == 0 and told not in with_fonts.stderr, with_fonts.stderr)


def check_window(folder):
    process = subprocess.Popen([window], env=without_fonts(folder), stderr=subprocess.PIPE, text=True)
    for line in process.stderr:
        if told in line:
            break
    else:
        sys.exit(f"failed: the window said nothing and ended with {process.wait()}")
    check(process.poll() is None, "the window goes on")
    process.terminate()
    process.wait()


with tempfile.TemporaryDirectory() as folder:
    check_batch(folder)
    check_window(folder)
