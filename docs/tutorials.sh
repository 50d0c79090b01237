#!/usr/bin/env bash
# tutorials.sh PROGRAM: does the tutorials that are done in the window, from their own text, and takes their pictures in
# docs/images/tutorials anew. PROGRAM is test_tutorials; without it that of the quick build is made and taken.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
program=${1:-}
if [ -z "$program" ]; then
    cmake --preset dev
    cmake --build --preset dev -j "$(nproc)" --target test_tutorials
    program=build/dev/tests/window/tutorials/test_tutorials
fi
walked=()
for name in first_section survey_to_depth magnetics_and_gravity pipe_with_remanence; do
    walked+=("docs/tutorials/$name.md")
done
"$program" --pictures "${walked[@]}"
