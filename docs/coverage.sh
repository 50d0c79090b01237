#!/usr/bin/env bash
# coverage.sh PROGRAM: writes docs/coverage.md anew from the tables that the program `coverage` prints
# (cmake --preset bench; cmake --build --preset bench --target coverage).
set -euo pipefail
[ $# -eq 1 ] || { echo "usage: docs/coverage.sh build/bench/bench/coverage"; exit 2; }
program=$(realpath "$1")
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
new=$(mktemp "$here/coverage.XXXXXX")
trap 'rm -f "$new"' EXIT
{
    cat "$here/coverage_head.md"
    "$program"
} >"$new"
chmod 644 "$new"
mv "$new" "$here/coverage.md"
