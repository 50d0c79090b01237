#!/usr/bin/env bash
# ensemble_coverage.sh PROGRAM: writes docs/ensemble_coverage.md anew from the tables that the program
# `ensemble_coverage` prints (cmake --preset bench; cmake --build --preset bench --target ensemble_coverage).
set -euo pipefail
[ $# -eq 1 ] || { echo "usage: docs/ensemble_coverage.sh build/bench/bench/ensemble_coverage"; exit 2; }
program=$(realpath "$1")
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
new=$(mktemp -d "$here/ensemble_coverage.XXXXXX")
trap 'rm -rf "$new"' EXIT
"$program" 200 100 1001 >"$new/tables"

# range TABLES TITLE: the least and the most inside of the parameters of that table.
range() {
    awk -F'|' -v title="## $2" '
        /^##/ { wanted = $0 == title }
        wanted && /^\| [a-z]/ {
            if (!count++ || $4 + 0 < least) least = $4 + 0
            if ($4 + 0 > most) most = $4 + 0
        }
        END { printf "%.1f to %.1f", least, most }' "$1"
}
{
    cat "$here/ensemble_coverage_head.md"
    sed -n 's/^## //p' "$new/tables" | while IFS= read -r title; do
        echo "| $title | $(range "$new/tables" "$title") |"
    done
    echo
    cat "$new/tables"
} >"$new/ensemble_coverage.md"
chmod 644 "$new/ensemble_coverage.md"
mv "$new/ensemble_coverage.md" "$here/ensemble_coverage.md"
