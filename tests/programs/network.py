#!/usr/bin/env python3
"""network.py BATCH WINDOW TEST_WINDOW EXAMPLES: nothing that the programs do opens the network.

Runs the commands of the batch tool, the workbench with a model, and its tests of help and first page (F1 among them)
while strace tells of each socket; one of the internet fails the test. PROJ is told by its environment to use the
network, which must change nothing. A program that does open a socket is seen first, lest strace see nothing at all.
"""
import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile

SECONDS_OF_THE_WINDOW = 8


def sockets(words, folder, seconds=None):
    """The calls by which `words`, run in `folder`, or a process that it started, asked for the internet."""
    trace = folder / "trace"
    surroundings = {**os.environ, "PROJ_NETWORK": "ON", "QT_QPA_PLATFORM": "offscreen", "HOME": str(folder),
                    "XDG_CONFIG_HOME": str(folder / "config"), "XDG_DATA_HOME": str(folder / "data"),
                    "XDG_STATE_HOME": str(folder / "state"), "ASAN_OPTIONS": "detect_leaks=0"}
    command = ["strace", "-f", "-qq", "-e", "trace=socket,connect", "-o", str(trace), *map(str, words)]
    with subprocess.Popen(command, cwd=folder, env=surroundings, text=True, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, start_new_session=True) as run:
        try:
            told, _ = run.communicate(timeout=seconds)
            if run.returncode:
                sys.exit(f"{' '.join(map(str, words))} ended with {run.returncode}: {told}")
        except subprocess.TimeoutExpired:
            os.killpg(run.pid, signal.SIGKILL)  # a window stays open until it is closed
            run.communicate()
    return re.findall(r".*\bAF_INET6?\b.*", trace.read_text(errors="replace"))


def check_seen(folder):
    ask = "import socket; socket.socket(socket.AF_INET, socket.SOCK_DGRAM).close()"
    if not sockets([sys.executable, "-c", ask], folder):
        sys.exit("strace does not tell of a socket that was opened")


def commands():
    """Each command of the batch tool that could want something from elsewhere, and the plain ones."""
    model, survey, date = "dyke_swarm.axm", "dyke_lines.csv", ["--date", "1990-07-01"]
    yield ["info", model]
    yield ["dump", model, "-o", "dump.json"]
    yield ["forward", model, "-o", "profile.csv"]
    yield ["render", model, "-o", "section.png"]
    yield ["invert", model, "--channel", "mag", "--iterations", "2", "-o", "fitted.axm"]
    yield ["field", "--at=-22.1,140.5,350", *date]
    yield ["lines", survey]
    yield ["map", survey, "-o", "map.png"]
    # The second one has grids of shifts that a network would bring.
    for system, lines in (("EPSG:32754", "new"), ("EPSG:20354", "old")):
        yield ["import", survey, "--line", "1010", "--crs", system, *date, "--name", lines, "-o", "models"]
        yield ["export", f"models/{lines}_1010.axm", "--geojson", f"{lines}.geojson", "--geopackage", f"{lines}.gpkg", "--wgs84"]
    yield ["survey", "dyke_lines.toml", "-o", "results"]


def main():
    batch, window, test_window, examples = map(pathlib.Path, sys.argv[1:])
    found = []
    with tempfile.TemporaryDirectory() as place:
        folder = pathlib.Path(place)
        shutil.copytree(examples, folder, dirs_exist_ok=True, ignore=shutil.ignore_patterns("*.cpp", "package"))
        check_seen(folder)
        for words in commands():
            found += sockets([batch, *words], folder)
        found += sockets([window, "dyke_swarm.axm"], folder, SECONDS_OF_THE_WINDOW)
        for test in ("help", "form_start"):
            found += sockets([test_window, "--only", test], folder)
    if found:
        sys.exit("the network was asked for:\n" + "\n".join(found))


if __name__ == "__main__":
    main()
