#!/usr/bin/env bash
# speed.sh BUILD: writes docs/speed.md anew from the benches of a build (cmake --preset bench; cmake --build --preset
# bench). Nothing else should run meanwhile.
set -euo pipefail
[ $# -eq 1 ] || { echo "usage: docs/speed.sh build/bench"; exit 2; }
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
new=$(mktemp "$here/speed.XXXXXX")
trap 'rm -f "$new"' EXIT
python3 "$here/../bench/speed_tables.py" "$1" >"$new"
chmod 644 "$new"
mv "$new" "$here/speed.md"
