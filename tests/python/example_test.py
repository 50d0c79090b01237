"""The example script does what it says: explains the line to its noise and draws it; its types are sound."""
import importlib.util
import os
import subprocess
import sys
import tempfile

script, picture = sys.argv[1:]
run = subprocess.run([sys.executable, script, picture], capture_output=True, text=True, check=False)
assert run.returncode == 0, run.stdout + run.stderr
assert "bodies found" in run.stdout, run.stdout
assert "Top of body 1" in run.stdout, run.stdout
with open(picture, "rb") as file:
    assert file.read(8) == b"\x89PNG\r\n\x1a\n"
    assert os.path.getsize(picture) > 50000

if importlib.util.find_spec("mypy"):
    environment = dict(os.environ, MYPYPATH=os.environ["PYTHONPATH"])
    environment.pop("LD_PRELOAD", None)
    with tempfile.TemporaryDirectory() as cache:
        check = subprocess.run([sys.executable, "-m", "mypy", "--strict", "--ignore-missing-imports", "--cache-dir", cache,
                                script], env=environment, capture_output=True, text=True, check=False)
    assert check.returncode == 0, check.stdout + check.stderr
