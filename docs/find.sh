#!/usr/bin/env bash
# find.sh PROGRAM [LINES]: writes docs/find.md anew with the table that the program `find_score` prints
# (cmake --preset bench; cmake --build --preset bench --target find_score).
set -euo pipefail
[ $# -ge 1 ] || { echo "usage: docs/find.sh build/bench/bench/find_score [LINES]"; exit 2; }
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
new=$(mktemp "$here/find.XXXXXX")
trap 'rm -f "$new"' EXIT
{
    sed '/^| Lines /,$d' "$here/find.md"
    "$1" "${2:-100}" 1001
} >"$new"
chmod 644 "$new"
mv "$new" "$here/find.md"
