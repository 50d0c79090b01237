#!/usr/bin/env bash
# reproducible.sh [TARGET]: builds the release of TARGET (anomalis-batch; all: everything) from the last commit twice, in
# folders of different depth, with different clocks, names and number of jobs, and compares programs, modules, libraries
# and, where cpack makes some, packages byte by byte. Nothing is taken from a compiler cache. On two cores anomalis-batch
# takes about 12 minutes, all 20.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
target=${1:-anomalis-batch}
jobs=$(nproc)
place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct)
export SOURCE_DATE_EPOCH

build() { # build FOLDER JOBS
    mkdir -p "$1"
    git archive HEAD | tar -x -C "$1"
    cmake -S "$1" -B "$1/build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DANOMALIS_CCACHE=OFF >"$1.log"
    cmake --build "$1/build" -j "$2" --target "$target" >>"$1.log" || { tail -n 40 "$1.log"; exit 1; }
}

TZ=UTC0 LC_ALL=C build "$place/one" "$jobs"
TZ=UTC-11 LC_ALL=C.UTF-8 build "$place/another/much/deeper/place" $((jobs + 1))

built() { (cd "$1/build" && find . '(' -name '*.a' -o -name '*.so' -o -name '*.deb' -o -name '*.qch' -o -perm -u+x ')' \
    -type f ! -path '*/CMakeFiles/*' -print0 | sort -z | xargs -0 sha256sum); }
built "$place/one" >"$place/one.sums"
built "$place/another/much/deeper/place" >"$place/another.sums"
echo "$(wc -l <"$place/one.sums") files, $(grep -c '\.a$' "$place/one.sums") of them libraries"
[ -s "$place/one.sums" ]
if ! cmp -s "$place/one.sums" "$place/another.sums"; then
    diff "$place/one.sums" "$place/another.sums" || true
    first=$(diff "$place/one.sums" "$place/another.sums" | sed -n 's/^[<>] [0-9a-f]*  //p' | head -n 1)
    if command -v diffoscope >/dev/null; then
        diffoscope --max-report-size 20000 "$place/one/build/$first" "$place/another/much/deeper/place/build/$first" || true
    fi
    echo "Not the same bytes."
    exit 1
fi
echo "The same bytes in both folders."
