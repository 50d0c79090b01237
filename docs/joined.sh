#!/usr/bin/env bash
# joined.sh PROGRAM [SURVEYS]: writes docs/joined.md anew with the table that the program `joined_score` prints
# (cmake --preset bench; cmake --build --preset bench --target joined_score).
set -euo pipefail
[ $# -ge 1 ] || { echo "usage: docs/joined.sh build/bench/bench/joined_score [SURVEYS]"; exit 2; }
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
new=$(mktemp "$here/joined.XXXXXX")
trap 'rm -f "$new"' EXIT
{
    sed '/^| Surveys /,$d' "$here/joined.md"
    "$1" "${2:-100}" 1001
} >"$new"
chmod 644 "$new"
mv "$new" "$here/joined.md"
