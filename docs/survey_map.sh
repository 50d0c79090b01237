#!/usr/bin/env bash
# survey_map.sh PROGRAM SURVEY_FILE: makes docs/images/survey_map.png anew from a real survey: twelve
# lines over the Osborne deposit, Queensland (airborne survey P1029 of 1990, Geoscience Australia, CC BY 4.0), as a table with
# the columns flight_line, longitude, latitude, height above the geoid (m) and total field anomaly (nT). The file is not part of
# the project. Takes a few minutes.
set -euo pipefail
[ $# -eq 2 ] || { echo "usage: docs/survey_map.sh build/anomalis-batch SURVEY_FILE"; exit 2; }
program=$(realpath "$1")
survey=$(realpath "$2")
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
new=$(mktemp -d)
trap 'rm -rf "$new"' EXIT
cat >"$new/plan.toml" <<PLAN
name = "Osborne"

[source]
file = "$survey"
date = 1990-07-01

[find]
window = [7000, 10500]

[render]
width = 1200
height = 800
PLAN
"$program" survey "$new/plan.toml" -o "$new/results"
"$program" map "$new/results" -o "$new/survey_map.png" --size 1100x860 --area 455300,459000,7551850,7554800
mv "$new/survey_map.png" "$here/images/survey_map.png"
