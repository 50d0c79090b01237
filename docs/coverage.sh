#!/usr/bin/env bash
# coverage.sh PROGRAM: writes docs/coverage.md anew from the tables that the program `coverage` prints
# (cmake --preset bench; cmake --build --preset bench --target coverage).
set -euo pipefail
[ $# -eq 1 ] || { echo "usage: docs/coverage.sh build/bench/bench/coverage"; exit 2; }
program=$(realpath "$1")
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
new=$(mktemp -d "$here/coverage.XXXXXX")
trap 'rm -rf "$new"' EXIT
"$program" 200 1001 >"$new/tables" &
"$program" 200 1 >"$new/chosen_on"
wait $!

# range TABLES KINDS BODIES: the least and the most inside of the parameters of these tables.
range() {
    awk -F'|' -v kinds="$2" -v bodies="$3" '
        /^##/ { wanted = $0 ~ kinds && $0 ~ bodies }
        wanted && /^\| [a-z]/ {
            if (!count++ || $4 + 0 < least) least = $4 + 0
            if ($4 + 0 > most) most = $4 + 0
        }
        END { printf "%.1f to %.1f", least, most }' "$1"
}
row() {
    echo "| $1 | $2 | $3 | $(range "$new/tables" "$4" "$5") | $(range "$new/chosen_on" "$4" "$5") |"
}
{
    cat "$here/coverage_head.md"
    echo "| What | Then | Due | Seeds 1001 to 1200 | Seeds 1 to 200 |"
    echo "|---|---:|---:|---:|---:|"
    white='## White noise,|white noise, '
    regional='White noise and a regional'
    geology='geology'
    row "White noise, thick dykes" "75 to 89" "87 to 93" "$white" thick
    row "White noise, thin dyke" "75 to 89" "87 to 93" "$white" thin
    row "White noise and a regional, thick dykes" "18 to 34" "85 or more" "$regional" thick
    row "White noise and a regional, thin dyke" "18 to 34" "85 or more" "$regional" thin
    row "Geology over 100 m, thick dykes" "22 to 34 (2 errors)" "84 or more" "$geology" thick
    row "Geology over 100 m, thin dyke" "22 to 34 (2 errors)" "84 or more" "$geology" thin
    echo
    cat "$new/tables"
} >"$new/coverage.md"
chmod 644 "$new/coverage.md"
mv "$new/coverage.md" "$here/coverage.md"
