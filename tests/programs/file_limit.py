#!/usr/bin/env python3
"""A file that grows beyond the limit of the process is an error that is told, and not the end of a program.

file_limit.py BATCH WINDOW MODEL
"""

import os
import resource
import signal
import subprocess
import sys
import tempfile
import time

batch, window, model = sys.argv[1:]


def limited(size):
    """Runs in the child, before the program: what the shell's `ulimit -f` does."""

    def limit():
        signal.signal(signal.SIGXFSZ, signal.SIG_DFL)
        resource.setrlimit(resource.RLIMIT_FSIZE, (size, size))

    return limit


def check(condition, what):
    if not condition:
        sys.exit("failed: " + what)


def check_batch(folder):
    out = os.path.join(folder, "out.csv")
    with open(out, "w") as old:
        old.write("old")
    to_file = subprocess.run([batch, "export", model, "--profile-table", out], preexec_fn=limited(1000),
                             capture_output=True, text=True)
    check(to_file.returncode == 1, f"export ended with {to_file.returncode}: {to_file.stderr}")
    check(f"File too large ({out})" in to_file.stderr, to_file.stderr)
    check(open(out).read() == "old" and os.listdir(folder) == ["out.csv"], "the old file stays alone")
    with open(os.path.join(folder, "stream"), "w") as stream:
        to_stream = subprocess.run([batch, "forward", model], preexec_fn=limited(1000), stdout=stream,
                                   stderr=subprocess.PIPE, text=True)
    check(to_stream.returncode == 1, f"forward ended with {to_stream.returncode}: {to_stream.stderr}")
    check("could not be written" in to_stream.stderr, to_stream.stderr)


def check_figures(folder):
    """A page that does not fit leaves the old one, in every format."""
    for ending in ("pdf", "svg", "emf", "png"):
        out = os.path.join(folder, "page." + ending)
        with open(out, "w") as old:
            old.write("old")
        drawn = subprocess.run([batch, "render", model, "--view", "page", "-o", out], preexec_fn=limited(1000),
                               capture_output=True, text=True)
        check(drawn.returncode == 1, f"{ending} ended with {drawn.returncode}: {drawn.stderr}")
        check(f"File too large ({out})" in drawn.stderr, drawn.stderr)
        check(open(out).read() == "old", ending + ": the old page stays")
    check(len(os.listdir(folder)) == 4, "no half page stands beside them")


def state_of(process):
    with open(f"/proc/{process.pid}/stat") as stat:
        return stat.read().rsplit(") ", 1)[1][0]


def check_window(folder):
    """The first thing that the window writes is the mark of the folder in which it keeps its model."""
    places = {name: os.path.join(folder, name) for name in ("XDG_STATE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME")}
    process = subprocess.Popen([window], preexec_fn=limited(0), env={**os.environ, **places},
                               stderr=subprocess.PIPE, text=True)
    kept = os.path.join(places["XDG_STATE_HOME"], "anomalis/recovery")
    quiet = 0
    while process.poll() is None and quiet < 20:
        time.sleep(0.02)
        tried = os.path.isdir(kept) and state_of(process) == "S"
        quiet = quiet + 1 if tried else 0
    process.terminate()
    process.wait()
    check(process.returncode == -signal.SIGTERM, f"the window ended with {process.returncode}")
    check(os.listdir(kept) == [], "an empty folder was left")


with tempfile.TemporaryDirectory() as folder:
    check_batch(folder)
with tempfile.TemporaryDirectory() as folder:
    check_figures(folder)
with tempfile.TemporaryDirectory() as folder:
    check_window(folder)
