"""Calls of chance with wrong types, kinds and shapes of arrays, lifetimes and threads: wild_calls_test.py CALLS|SECONDSs.

A call gives something or raises an exception of Python's own or of the module; nothing else may happen. ANOMALIS_SEED
chooses the calls.
"""
import gc
import inspect
import os
import pathlib
import random
import sys
import tempfile
import threading
import time
import warnings

import anomalis
import numpy

warnings.simplefilter("ignore")
examples = sorted(map(str, pathlib.Path(os.environ["ANOMALIS_EXAMPLES"]).glob("*.axm")))
# Those that take long by their nature, or write where the arguments say.
left_out = {"fit", "find", "uncertainty", "write", "export"}


def line(count=21):
    distance = numpy.arange(count) * 25.0
    return 450000 + distance, 7550000 + 0 * distance, 300 + 0 * distance


class Trouble:
    """Raises whatever is asked of it."""

    def __getattr__(self, name):
        raise RuntimeError(name)

    def __float__(self):
        raise OverflowError("no number")

    def __len__(self):
        return -1


def arrays(chance):
    """Arrays of many kinds: strides, orders, bytes, dimensions, emptiness, what is not finite."""
    count = chance.choice([0, 1, 2, 20, 21, 21, 22])
    array = numpy.linspace(-100, 100, count).astype(chance.choice(
        ["f8", "f4", "f2", ">f8", "i4", "u1", "c16", "O", "S3", "M8[s]", "?"]), casting="unsafe") \
        if chance.random() < 0.9 else numpy.zeros(count)
    change = chance.randrange(7)
    if change == 0:
        array = numpy.repeat(array, 2)[::2]
    elif change == 1:
        array = array[::-1]
    elif change == 2:
        array = array.reshape(-1, 1)
    elif change == 3:
        array = numpy.broadcast_to(array[:1], (21,)) if count else array
    elif change == 4 and array.dtype.kind == "f" and count:
        array = array.copy()
        array[chance.randrange(count)] = chance.choice([numpy.nan, numpy.inf, -numpy.inf])
    elif change == 5:
        array.flags.writeable = False
    return array


def value(chance):
    plain = [None, True, 0, -1, 1, 2, 3.5, 1e300, -1e-320, float("nan"), float("inf"), 2**70, "", "mag", "grav", "raw", "sphere",
             "dip", "a" * 5000, "\ud800", b"bytes", (), (1, 2), (50000, -60, 5), [], [1, "x"], {}, {"mag": 1}, set(), object(),
             Trouble(), anomalis, range(5), lambda *_: 1 / 0]
    kind = chance.random()
    if kind < 0.5:
        return chance.choice(plain)
    if kind < 0.75:
        return arrays(chance)
    if kind < 0.85:
        return anomalis.Body("sphere", distance=200, top=200, width=40)
    if kind < 0.95:
        return chance.choice(line())
    return chance.choice(things(chance))


def things(chance):
    made = [anomalis.Body("thin_sheet"), anomalis.Workspace()]
    if chance.random() < 0.3:
        made.append(anomalis.Workspace.from_arrays(*line()[:2], mag=numpy.arange(21.0)))
    if chance.random() < 0.1:
        made.append(anomalis.Workspace.read(chance.choice(examples)))
    return made


def call(function, chance):
    arguments = [value(chance) for _ in range(chance.choice([0, 1, 1, 2, 3, 4]))]
    names = ["bodies", "mag", "grav", "field", "formulas", "channel", "row", "heights", "distance", "dip", "vary", "x"]
    keyed = {name: value(chance) for name in chance.sample(names, chance.choice([0, 0, 1, 2]))}
    return function(*arguments, **keyed)


def targets(thing):
    # __reduce__ is left out: that of the pickle protocols 0 and 1 ends the process (a limit of pybind11).
    return [name for name in dir(thing) if name not in left_out and (not name.startswith("_") or name in (
        "__eq__", "__hash__", "__repr__", "__copy__", "__init__", "__setstate__"))]


def one(chance, held):
    """Something is done with a thing; results live on for a while, longer than what they came from."""
    ours = [thing for thing in held if type(thing).__module__ == "anomalis"]
    thing = chance.choice([anomalis, *things(chance), *ours])
    name = chance.choice(targets(thing) or ["__repr__"])
    try:
        if chance.random() < 0.3:
            if thing is not anomalis and not name.startswith("_"):
                setattr(thing, name, value(chance))
        member = getattr(thing, name)
        result = call(member, chance) if callable(member) and not inspect.isclass(member) or chance.random() < 0.5 else member
        if isinstance(result, numpy.ndarray) and result.size and result.flags.writeable:
            result.flat[0] = result.flat[-1]
        held.append(result)
        repr(result)
    except Exception:  # noqa: BLE001: any exception is an answer, a crash is none
        pass
    del held[:-8]


def many(seed, goes_on, done):
    chance, held = random.Random(seed), []
    while goes_on(done[0]):
        one(chance, held)
        done[0] += 1
        if done[0] % 200 == 0:
            gc.collect()


def main():
    amount = sys.argv[1]
    seed = int(os.environ.get("ANOMALIS_SEED") or 1)
    begin, broken = time.process_time(), []
    threading.excepthook = lambda failure: (broken.append(failure), sys.__excepthook__(*failure[:3]))
    goes_on = (lambda _: time.process_time() - begin < float(amount[:-1])) if amount.endswith("s") else \
        (lambda done: done < int(amount))
    with tempfile.TemporaryDirectory() as folder:
        os.chdir(folder)
        counts = [[0] for _ in range(3)]
        threads = [threading.Thread(target=many, args=(f"{seed} {number}", goes_on, count))
                   for number, count in enumerate(counts)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        os.chdir("/")
    print(f"seed {seed}: {sum(count[0] for count in counts)} calls on {len(threads)} threads")
    return 1 if broken else 0


sys.exit(main())
