"""window_arguments.py ANOMALIS: what the workbench answers to a command line where there is no display."""
import os
import subprocess
import sys

bare = {name: value for name, value in os.environ.items()
        if name not in ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM")}
wrong = []


def expect(arguments, status, out, err):
    done = subprocess.run([sys.argv[1], *arguments], capture_output=True, text=True, timeout=120, env=bare)
    if done.returncode != status or out not in done.stdout or err not in done.stderr \
            or bool(out) != bool(done.stdout) or bool(err) != bool(done.stderr):
        wrong.append(f"{arguments}: {done.returncode} {done.stdout!r} {done.stderr!r}")


expect(["--help"], 0, "Usage: anomalis [FILE] [options]", "")
expect(["-h", "some.axm"], 0, "--version", "")
expect(["--version"], 0, "anomalis ", "")
expect(["--platform", "offscreen", "-v"], 0, "anomalis ", "")
expect(["--hlep"], 2, "", "Unknown option 'hlep'")
expect(["one.axm", "two.axm"], 2, "", "One file is opened at a time")
print("\n".join(wrong))
sys.exit(1 if wrong else 0)
