#!/usr/bin/env python3
"""Sets the import of a survey file against a data-frame library, on one file in one run.

    python3 bench/import_ratio.py build/bench/bench/bench_import

Both take turns; the best of each counts, in seconds of processor time. Needs pandas (Debian: python3-pandas).
"""
import json
import os
import resource
import subprocess
import sys
import tempfile
import time

TURNS = 3


def pandas_seconds(path):
    """Seconds of one reading, and the peak memory of it in MB, in a process of its own."""
    code = (
        "import pandas, resource, time\n"
        "start = time.process_time()\n"
        f"frame = pandas.read_csv({path!r})\n"
        "seconds = time.process_time() - start\n"
        "print(seconds, resource.getrusage(resource.RUSAGE_SELF).ru_maxrss / 1e3, len(frame))\n"
    )
    seconds, peak, rows = subprocess.run([sys.executable, "-c", code], check=True, capture_output=True,
                                         text=True).stdout.split()
    assert int(rows) == 1_000_000, "rows are missing"
    return float(seconds), float(peak)


def our_results(program, path):
    """Milliseconds and peak memory in MB of each benchmark of a million rows."""
    out = subprocess.run([program, "--benchmark_filter=rows:1000000/", "--benchmark_format=json"], check=True,
                         capture_output=True, text=True, env={**os.environ, "ANOMALIS_IMPORT_FILE": path}).stdout
    return {one["name"].split("/")[0]: (one["real_time"] / 1e3, one["peak_MB"])
            for one in json.loads(out)["benchmarks"]}


def main():
    program = sys.argv[1]
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "survey.csv")
        best, best_pandas, peak, pandas_peak = {}, float("inf"), {}, 0
        for _ in range(TURNS):
            for name, (seconds, megabytes) in our_results(program, path).items():
                best[name] = min(best.get(name, float("inf")), seconds)
                peak[name] = max(peak.get(name, 0), megabytes)
            seconds, megabytes = pandas_seconds(path)
            best_pandas, pandas_peak = min(best_pandas, seconds), max(pandas_peak, megabytes)
        size = os.path.getsize(path) / 1e6
    print(f"{size:.0f} MB, 1000000 rows")
    print(f"pandas.read_csv          {best_pandas:7.3f} s   peak {pandas_peak:5.0f} MB")
    for name, seconds in best.items():
        print(f"{name:24s} {seconds:7.3f} s   peak {peak[name]:5.0f} MB   {best_pandas / seconds:.2f} times as fast")


if __name__ == "__main__":
    main()
