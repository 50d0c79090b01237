#!/usr/bin/env bash
# three_dykes.sh PROGRAM: makes docs/images/three_dykes.png anew: the map of a generated survey of 20 lines over three dykes
# that are known (bench/make_survey.py), and prints what they are beside the bodies that the lines were found to share.
set -euo pipefail
[ $# -eq 1 ] || { echo "usage: docs/three_dykes.sh build/anomalis-batch"; exit 2; }
program=$(realpath "$1")
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
new=$(mktemp -d)
trap 'rm -rf "$new"' EXIT
python3 "$here/../bench/make_survey.py" "$new/survey.csv" --lines 20 --stations 400 --oblique 100 --truth "$new/dykes.csv"
cat >"$new/plan.toml" <<PLAN
name = "Three dykes"
regional = 1

[source]
file = "survey.csv"
crs = "EPSG:32754"
date = 1990-07-01

[find]
most = 5
kinds = "thick"

[render]
width = 1100
height = 700
PLAN
"$program" survey "$new/plan.toml" -o "$new/results"
"$program" map "$new/results" -o "$new/three_dykes.png" --size 1100x640
"$program" joined "$new/results" --table "$new/joined.csv"
mv "$new/three_dykes.png" "$here/images/three_dykes.png"
cat "$new/dykes.csv"
python3 - "$new/joined.csv" <<'TABLE'
import csv, sys
names = ["start_east_m", "start_north_m", "strike_deg", "strike_deg_error", "depth_below_ground_m",
         "depth_below_ground_m_lower_90", "depth_below_ground_m_upper_90"]
for row in csv.DictReader(open(sys.argv[1])):
    print(f"joined from {row['lines']} lines:", ", ".join(f"{name} {float(row[name]):.1f}" for name in names))
TABLE
