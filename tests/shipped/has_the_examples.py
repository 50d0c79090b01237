#!/usr/bin/env python3
"""has_the_examples.py SHIPPED EXAMPLES: every example workspace, with its table, is kept among what was shipped."""
import pathlib
import sys

shipped, examples = map(pathlib.Path, sys.argv[1:])


def table_of(model):
    return model.parent / model.read_bytes().splitlines()[0].strip().decode()


def both(model):
    return model.read_bytes(), table_of(model).read_bytes()


kept = {both(model) for model in shipped.glob("*/*.axm")}
models = sorted(examples.rglob("*.axm"))
if not models:
    sys.exit(f"no workspace in {examples}")
lacking = [model.name for model in models if both(model) not in kept]
if lacking:
    sys.exit(f"not kept below {shipped}: {', '.join(lacking)}. CONTRIBUTING.md, Releases, tells how.")
