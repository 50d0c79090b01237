#!/usr/bin/env bash
# check_style.sh format|tidy changed|all [BUILD]: whether the sources keep to .clang-format, or to the checks of
# .clang-tidy with the compile commands of the folder BUILD. What is changed is what git knows: for the format since the
# branch left main, for the checks, which take long, since the last commit.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
what=$1 which=$2 build=${3:-}

require() {
    command -v "$1" >/dev/null && return 0
    echo "$1 is missing. On Debian: apt-get install -y --no-install-recommends $1"
    exit 1
}

all_sources() {
    find src tests bench fuzz examples '(' -name '*.cpp' -o -name '*.h' ')' -print
}

changed_sources() {
    local since=HEAD
    [ "$what" = tidy ] || since=$(git merge-base HEAD main 2>/dev/null || echo HEAD)
    git diff --name-only --diff-filter=d "$since" -- '*.cpp' '*.h'
    git ls-files --others --exclude-standard -- '*.cpp' '*.h'
}

sources() {
    if [ "$which" = all ]; then all_sources; else changed_sources; fi
}

# What clang does not know goes: the precompiled headers of another compiler, and its warnings.
write_commands_for_clang() {
    mkdir -p "$build/tidy"
    sed -E 's/ -Winvalid-pch -include [^ ]+//; s/ -Wno-(restrict|array-bounds|stringop-over[a-z]+)//g; s/ -Werror//; s/ -fpch-preprocess//' \
        "$build/compile_commands.json" >"$build/tidy/compile_commands.json"
}

if [ "$which" = changed ] && ! git rev-parse --verify --quiet HEAD >/dev/null 2>&1; then
    echo "No history of git here, so nothing tells what has changed: nothing is checked."
    exit 0
fi
case $what in
    format)
        require clang-format
        sources | xargs -r clang-format --dry-run -Werror
        ;;
    tidy)
        require clang-tidy
        write_commands_for_clang
        { sources | grep -E '^src/.*\.cpp$' || true; } |
            xargs -r -n 1 -P "$(nproc)" clang-tidy -p "$build/tidy" --quiet --warnings-as-errors='*'
        ;;
esac
echo "All is as it should be."
