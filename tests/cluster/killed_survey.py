#!/usr/bin/env python3
"""Runs a survey, kills it at moments of chance, runs it again each time, and compares.

  killed_survey.py --tool build/anomalis-batch [--lines 1000] [--kills 3] [--seed N]

The tables must be the same bits as those of a run that nobody disturbed, no line may be lost or half done, and none that
was done before a kill done again. A failure tells the seed, and keeps the folder.
"""
import argparse
import os
import pathlib
import random
import shutil
import subprocess
import sys
import tempfile
import time

sys.dont_write_bytecode = True
import survey_case  # noqa: E402: nothing of it is left in the sources


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--tool", required=True, type=os.path.abspath)
    parser.add_argument("--lines", type=int, default=1000, help="of the survey [1000]")
    parser.add_argument("--stations", type=int, default=500, help="of a line [500]")
    parser.add_argument("--kills", type=int, default=3, help="[3]")
    parser.add_argument("--seed", type=int, default=int.from_bytes(os.urandom(4), "big"), help="of chance")
    parser.add_argument("--folder", type=pathlib.Path, help="for everything, kept [a temporary one]")
    return parser.parse_args()


def run_until_killed(survey, results, count, delay):
    """Kills the run when so many lines are there and a while later; false when it was faster."""
    with open(survey.folder / "log.txt", "a") as log:
        process = subprocess.Popen(survey.command(results), stdout=log, stderr=log)
        while process.poll() is None and len(survey_case.lines_done(results)) < count:
            time.sleep(0.005)
        time.sleep(delay)
        killed = process.poll() is None
        process.kill()
        process.wait()
    return killed


def kill_and_resume(survey, results, options, chance):
    moments = sorted(chance.randrange(survey.lines) for _ in range(options.kills))
    for number, count in enumerate(moments, 1):
        before = survey_case.lines_done(results)
        killed = run_until_killed(survey, results, count, chance.uniform(0, 0.1))
        after = survey_case.lines_done(results)
        print(f"kill {number}: {len(after)} of {survey.lines} lines were there"
              + ("" if killed else ", the run had ended before"), flush=True)
        changed = [name for name, when in before.items() if after.get(name) != when]
        survey_case.check(not changed, f"done again or gone after a kill: {changed[:5]}")
    before = survey_case.lines_done(results)
    survey.run(results)
    after = survey_case.lines_done(results)
    changed = [name for name, when in before.items() if after.get(name) != when]
    survey_case.check(not changed, f"done again: {changed[:5]}")


def main():
    options = parse_arguments()
    print(f"seed {options.seed}", flush=True)
    chance = random.Random(options.seed)
    folder = pathlib.Path(options.folder or tempfile.mkdtemp(prefix="anomalis-killed-survey-"))
    folder.mkdir(parents=True, exist_ok=True)
    survey = survey_case.Survey(folder, options.tool, options.lines, options.stations)
    try:
        start = time.monotonic()
        survey.run(folder / "undisturbed")
        print(f"undisturbed: {time.monotonic() - start:.1f} s", flush=True)
        survey.check_whole(folder / "undisturbed")
        kill_and_resume(survey, folder / "killed", options, chance)
        survey.check_whole(folder / "killed")
        survey_case.check_same_tables(folder / "undisturbed", folder / "killed", "after kills")
    except survey_case.Failed as failure:
        print(f"FAILED with --seed {options.seed}, kept in {folder}: {failure}")
        return 1
    print(f"{options.lines} lines, {options.kills} kills: the same tables")
    if not options.folder:
        shutil.rmtree(folder)
    return 0


sys.exit(main())
