#!/usr/bin/env python3
"""Runs a survey on a real Slurm cluster of two nodes, kills one of them in the middle, and compares.

  survey_on_slurm.py --tool build/anomalis-batch [--lines 1000] [--seed N]

It needs Debian's slurm-wlm and munge, and starts and stops both with a configuration of its own: nothing of a cluster
that this machine may belong to is touched. As root in a container or on a machine for tests; nodes of Slurm belong to
root elsewhere. No line may be lost, none done twice, and the tables must be those of one process, bit for bit. Exit
status 77 where Slurm is not installed. A failure tells the seed, and keeps the folder.
"""
import argparse
import os
import pathlib
import random
import re
import shutil
import subprocess
import sys
import tempfile
import time

sys.dont_write_bytecode = True
import slurm_cluster  # noqa: E402: nothing of it is left in the sources
import survey_case  # noqa: E402
from survey_case import check  # noqa: E402

skipped = 77


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--tool", required=True, type=os.path.abspath)
    parser.add_argument("--lines", type=int, default=1000, help="of the survey [1000]")
    parser.add_argument("--stations", type=int, default=500, help="of a line [500]")
    parser.add_argument("--shards", type=int, default=8, help="about so many [8]")
    parser.add_argument("--minutes", type=float, default=30, help="that the jobs may take [30]")
    parser.add_argument("--seed", type=int, default=int.from_bytes(os.urandom(4), "big"), help="of chance")
    return parser.parse_args()


def submit(cluster, survey, results, shards):
    lines_a_shard = -(-survey.lines // shards)
    done = subprocess.run(survey.command(results, "--slurm", f"--lines-a-shard={lines_a_shard}", "-j1"),
                          env=cluster.environment, text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    check(done.returncode == 0, f"not submitted: {done.stdout}")
    print(done.stdout, end="", flush=True)


def wait_for(cluster, ready, minutes, what):
    end = time.monotonic() + 60 * minutes
    while not ready():
        check(time.monotonic() < end, f"{what} took longer than {minutes} min:\n{cluster.ask('squeue')}")
        time.sleep(0.2)


def kill_a_node(cluster, survey, results, options, chance):
    """One that has a job, when some of the lines are there."""
    count = chance.randrange(survey.lines // 10, survey.lines // 2)
    running = lambda: set(re.findall(r"node\d", cluster.ask("squeue", "-h", "-t", "R", "-o", "%N")))
    wait_for(cluster, lambda: len(survey_case.lines_done(results)) >= count and running(), options.minutes,
             "the first lines")
    node = chance.choice(sorted(running()))
    jobs = cluster.kill_node(node)
    print(f"{node} killed with {jobs} job when {len(survey_case.lines_done(results))} lines were there", flush=True)
    check(jobs > 0, f"{node} had no job when it was killed")


def run_on_cluster(cluster, survey, results, options, chance):
    submit(cluster, survey, results, options.shards)
    kill_a_node(cluster, survey, results, options, chance)
    before = survey_case.lines_done(results)
    restarts = set()

    def all_ended():
        restarts.update(re.findall(r"Restarts=([1-9]\d*)", cluster.ask("scontrol", "show", "job")))
        return not cluster.ask("squeue", "-h").strip()

    wait_for(cluster, all_ended, options.minutes, "the jobs")
    check(restarts, "no job was put into the queue again")
    after = survey_case.lines_done(results)
    changed = [name for name, when in before.items() if after.get(name) != when]
    check(not changed, f"done again: {changed[:5]}")
    logs = "\n".join(path.read_text()[-500:] for path in sorted((results / "logs").iterdir()))
    check((results / "lines.csv").exists(), f"there are no tables:\n{logs}")


def main():
    options = parse_arguments()
    if missing := slurm_cluster.missing_programs():
        print(f"Left out: {', '.join(missing)} not found. apt-get install slurm-wlm munge")
        return skipped
    print(f"seed {options.seed}", flush=True)
    chance = random.Random(options.seed)
    folder = pathlib.Path(tempfile.mkdtemp(prefix="anomalis-slurm-"))
    folder.chmod(0o755)
    survey = survey_case.Survey(folder, options.tool, options.lines, options.stations)
    try:
        survey.run(folder / "one-process")
        survey.check_whole(folder / "one-process")
        with slurm_cluster.Cluster(folder / "slurm") as cluster:
            run_on_cluster(cluster, survey, folder / "on-slurm", options, chance)
        survey.check_whole(folder / "on-slurm")
        survey_case.check_same_tables(folder / "one-process", folder / "on-slurm", "on the cluster")
    except (survey_case.Failed, RuntimeError) as failure:
        print(f"FAILED with --seed {options.seed}, kept in {folder}: {failure}")
        return 1
    print(f"{options.lines} lines on two nodes, one of them killed: the tables of one process")
    shutil.rmtree(folder)
    return 0


sys.exit(main())
