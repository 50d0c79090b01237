#!/usr/bin/env python3
"""shipped.py BATCH [--write] MODEL...: workspaces that went out once still open, and say what they said.

Beside each MODEL.axm stands MODEL.json: what the program tells of it, settings and bodies whole, rows at every
twentieth station. What is told must have all of that; it may have more. What stands in the files must be the same to
the last bit. What is calculated may differ by a millionth, in rows of the largest value, which is more than the
mathematical functions of another C library do to it. --write makes MODEL.json anew: only after the numbers are known to be right.
"""
import argparse
import json
import math
import os
import re
import subprocess
import sys

EVERY = 20
CLOSE = 1e-6
# Of the folder and the day a file was unpacked, or the sum of its parts.
LEFT_OUT = {"model_file", "model_file_date", "data_file_date", "units_of"}
# What comes from the files as it stands there.
READ = {"definition", "display", "transform", "source", "stations", "params", "last_fit"}


def told(batch, model):
    """What the program tells of `model`, which it opens from its own folder."""
    folder, name = os.path.split(os.path.abspath(model))
    run = subprocess.run([batch, "dump", name], cwd=folder, capture_output=True, text=True)
    if not run.stdout:
        sys.exit(f"{model} was not opened: {run.stderr}")
    return {"status": run.returncode, **shortened(json.loads(run.stdout))}


def shortened(value):
    if isinstance(value, dict):
        return {key: shortened(inner) for key, inner in value.items() if key not in LEFT_OUT}
    if isinstance(value, list):
        long = len(value) > 2 * EVERY
        rows = {"rows": len(value), "largest": largest(value)} if long else None
        kept = [shortened(inner) for inner in (value[::EVERY] if long else value)]
        return {**rows, "every": EVERY, "are": kept} if long else kept
    return value


def largest(row):
    """The largest size in a row of numbers; in a row of rows, one for each column."""
    if row and isinstance(row[0], list):
        return [largest(column) for column in zip(*row)]
    return max((abs(value) for value in row if isinstance(value, (int, float))), default=0)


def differences(wanted, got, place="", read=False, room=0.0):
    """Where `got` lacks something of `wanted` or says something else, a line each."""
    if isinstance(wanted, dict) and isinstance(got, dict):
        room = wanted.get("largest", room)
        for key, value in wanted.items():
            if key not in got:
                yield f"{place}.{key} is missing"
            else:
                yield from differences(value, got[key], f"{place}.{key}", read or key in READ, room)
    elif isinstance(wanted, list) and isinstance(got, list):
        if len(wanted) != len(got):
            yield f"{place} has {len(got)} values, not {len(wanted)}"
        columns = isinstance(room, list) and not any(isinstance(value, list) for value in wanted)
        for index, (one, other) in enumerate(zip(wanted, got)):
            yield from differences(one, other, f"{place}[{index}]", read, room[index] if columns else room)
    elif wanted != got and (read or not close(wanted, got, room)):
        yield f"{place} is {got!r}, not {wanted!r}"


def close(wanted, got, room):
    if not isinstance(wanted, float) or not isinstance(got, (int, float)):
        return False
    return math.isclose(wanted, got, rel_tol=CLOSE, abs_tol=CLOSE * room)


def write(record, path):
    text = json.dumps(record, indent=1, ensure_ascii=False)
    # A list of numbers alone takes one line.
    text = re.sub(r"\[[^\[\]{}\"]*\]", lambda found: " ".join(found.group(0).split()), text)
    with open(path, "w", encoding="utf-8") as out:
        out.write(text + "\n")


def main():
    arguments = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    arguments.add_argument("batch")
    arguments.add_argument("--write", action="store_true")
    arguments.add_argument("models", nargs="+")
    chosen = arguments.parse_args()
    failed = False
    for model in chosen.models:
        record, path = told(chosen.batch, model), os.path.splitext(model)[0] + ".json"
        if chosen.write:
            write(record, path)
            continue
        with open(path, encoding="utf-8") as stored:
            found = list(differences(json.load(stored), record))
        for line in found[:20]:
            print(f"{model}: {line.lstrip('.')}")
        failed |= bool(found)
    sys.exit(failed)


if __name__ == "__main__":
    main()
