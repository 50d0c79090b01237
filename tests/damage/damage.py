#!/usr/bin/env python3
"""Runs the batch tool over damaged copies of workspaces and data files.

  damage.py --tool build/anomalis-batch --count 50000 FOLDER...
  ANOMALIS_SEED=7 damage.py --tool build/anomalis-batch --budget 300 FOLDER...

Every workspace below the folders is damaged, alone or with its data, in ways that follow from a seed, and given to a
command that follows from it too; so are survey files, plans, results of surveys and command lines that are made here. No run may be ended by a signal, take longer or more memory than it is allowed,
change what it reads, leave half a file behind, end with status 0 after a failure, or fail without a word. Inputs that
break this are kept with their command. Exit status 0 when none does.

fitted.axm, with the record of a fit, is what `invert --channel joint --regional 1` wrote over a survey of its own.
"""
import argparse
import collections
import itertools
import multiprocessing
import os
import pathlib
import random
import resource
import shlex
import sys
import tempfile

sys.dont_write_bytecode = True
import batch_case  # noqa: E402: nothing of it is left in the sources
import wild_case  # noqa: E402

most_shown = 20  # of each sort of failure


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--tool", required=True, type=os.path.abspath)
    parser.add_argument("--count", type=int, default=1000, help="runs [1000]")
    parser.add_argument("--budget", type=float, help="as many runs as take so many seconds of processor time")
    parser.add_argument("--first", type=int, help="the seed of the first run [0; a million for each ANOMALIS_SEED above 1]")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), help="runs at a time")
    parser.add_argument("--seconds", type=int, default=5, help="processor time that a run may take [5]")
    parser.add_argument("--megabytes", type=int, default=2048, help="address space of a run, 0 for no limit [2048]")
    parser.add_argument("--keep", type=pathlib.Path, help="folder for the inputs that fail")
    parser.add_argument("--also", action="append", default=[], metavar="FOLDER", help="of more workspaces, if it exists")
    parser.add_argument("folders", nargs="+", help="with workspaces and their data")
    return parser.parse_args()


def case_of(seed, pairs, results):
    """Two of five are of the commands that read more than a workspace."""
    choice = random.Random(f"sort {seed}")
    return wild_case.WildCase(seed, choice, pairs, results) if choice.random() < 0.4 else batch_case.Case(seed, pairs)


def spent():
    return sum(sum(resource.getrusage(who)[:2]) for who in (resource.RUSAGE_SELF, resource.RUSAGE_CHILDREN))


def start_worker(options, pairs, results, scratch):
    global run_seed

    def run_seed(seed):
        folder = pathlib.Path(scratch) / str(os.getpid())
        case = case_of(seed, pairs, results)
        before = spent()
        failures = case.failures(options.tool, folder, batch_case.Limits(options.seconds, options.megabytes))
        if failures and options.keep:
            keep(case, failures, options.keep / str(seed))
        return seed, case.kinds, case.command, failures, spent() - before


def run_one(seed):
    return run_seed(seed)


def keep(case, failures, folder):
    if folder.exists():
        return
    case.write(folder)
    words = " ".join(shlex.quote(word) for word in case.arguments)
    notes = [f"{sort}: {text}" for sort, text in failures]
    (folder / "command.txt").write_text("\n".join([f"anomalis-batch {words}", f"from {case.source}: "
                                                   + ", ".join(case.kinds)] + notes) + "\n", errors="replace")


class Table:
    """Runs and failures by kind of damage and command."""

    def __init__(self):
        self.runs, self.failed, self.sorts = collections.Counter(), collections.Counter(), collections.Counter()

    def add(self, kinds, command, failures):
        for kind in kinds:
            self.runs[kind, command] += 1
            self.failed[kind, command] += bool(failures)
        for sort in {sort for sort, _ in failures}:
            self.sorts[sort] += 1

    def show(self, count):
        commands = sorted({command for _, command in self.runs})
        print(f"{'failed of runs':32}" + "".join(f"{command:>11}" for command in commands))
        for kind in sorted({kind for kind, _ in self.runs}):
            cells = (f"{self.failed[kind, command]} of {self.runs[kind, command]}" for command in commands)
            print(f"{kind:32}" + "".join(f"{cell:>11}" for cell in cells))
        sorts = ["signal", "time-out", "output", "input", "status"]
        print(f"{count} runs: " + ", ".join(f"{sort} {self.sorts[sort]}" for sort in sorts))


def main():
    options = parse_arguments()
    pairs = batch_case.source_pairs(options.folders + [folder for folder in options.also if os.path.isdir(folder)])
    if not pairs:
        sys.exit("no workspaces in " + ", ".join(options.folders))
    os.environ["QT_QPA_PLATFORM"] = "offscreen"
    results = wild_case.made_results(options.tool)
    chance = int(os.environ.get("ANOMALIS_SEED") or 1) - 1
    first = options.first if options.first is not None else 1000000 * chance
    table, count, used = Table(), 0, 0.0
    print(f"seeds from {first}", flush=True)
    # Small files by the thousand: kept in memory where there is a place for it.
    place = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None
    with tempfile.TemporaryDirectory(prefix="anomalis-damage-", dir=place) as scratch, \
            multiprocessing.Pool(options.jobs, start_worker, (options, pairs, results, scratch)) as pool:
        seeds = range(first, first + (1000000 if options.budget else options.count))
        batches = (seeds[at:at + 200] for at in range(0, len(seeds), 200))
        done = itertools.chain.from_iterable(pool.imap_unordered(run_one, batch, chunksize=8)
                                             for batch in itertools.takewhile(
                                                 lambda _: not options.budget or used < options.budget, batches))
        for seed, kinds, command, failures, seconds in done:
            table.add(kinds, command, failures)
            count, used = count + 1, used + seconds
            for sort, text in failures:
                if table.sorts[sort] <= most_shown:
                    print(f"seed {seed}, {command}, {' and '.join(kinds)}: {sort}: {text.strip()}")
    table.show(count)
    return 1 if table.sorts else 0


if __name__ == "__main__":
    sys.exit(main())
