#!/usr/bin/env bash
# ./test --deep [--seed N] [--list] [STAGE...]: all that tests can ask of a clone, stage after stage. What goes by
# chance follows from the seed; amounts are seconds of processor time. Stages that fail are named at the end, and
# their output, with the inputs that failed, is kept in build/deep.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. cmake/prepare.sh
jobs=$(nproc)

# One line a stage: its name, what it does.
stage_list() {
    cat <<'LIST'
build    everything with address and undefined-behaviour sanitizers
tests    all tests of ./test
chance   long walks of chance, and all tests that are of this run alone
format   the format of every file
checks   the clang-tidy checks of files of chance (of all: cmake/check_groups.py tidy build/debug)
headers  files of chance with clang alone, whether each includes what it uses
release  the programs as they are given away
pages    pages of the guide from their own text; all reports and tables against what is told of them
damage   the released batch tool over damaged inputs
surveys  surveys of many lines killed, and on a Slurm cluster
fuzzers  fuzz targets, led by what the code does
threads  what runs on threads, with the thread sanitizer
LIST
}

stage_build() {
    cmake --preset debug && cmake --build --preset debug -j "$jobs"
}

# No display, and nobody's own settings.
quiet_session() {
    local home=$PWD/build/debug/home
    export QT_QPA_PLATFORM=offscreen XDG_CONFIG_HOME="$home/config" XDG_DATA_HOME="$home/data"
    export XDG_STATE_HOME="$home/state" ASAN_OPTIONS=${ASAN_OPTIONS:-malloc_context_size=2}
}

stage_tests() {
    stage_build >"$kept/tests-build.log" || return 1
    quiet_session
    # What is tried every day is the same every day.
    env -u ANOMALIS_SEED ctest --preset debug --schedule-random -j "$jobs"
}

# The tests that are of this run alone, as one expression. One list after the other: each may be written anew.
long_tests() {
    local daily all
    daily=$(ctest --preset debug -N | sed -n 's/^ *Test *#[0-9]*: //p' | sort)
    all=$(ctest --preset debug -C deep -N | sed -n 's/^ *Test *#[0-9]*: //p' | sort)
    comm -13 <(echo "$daily") <(echo "$all") | sed 's/[][+*().]/\\&/g' | paste -sd '|'
}

stage_chance() {
    stage_build >"$kept/chance-build.log" || return 1
    quiet_session
    ctest --preset debug -C deep --no-tests=error -R "^($(long_tests))\$" -j "$jobs"
}

stage_format() {
    cmake/check_style.sh format all
}

stage_checks() {
    [ -f build/debug/compile_commands.json ] || cmake --preset debug || return 1
    python3 cmake/check_groups.py tidy build/debug --seconds 600
}

stage_headers() {
    [ -f build/debug/compile_commands.json ] || cmake --preset debug || return 1
    python3 cmake/check_groups.py headers build/debug --seconds 120
}

stage_release() {
    cmake --preset release && cmake --build --preset release -j "$jobs"
}

stage_pages() {
    stage_release >"$kept/pages-build.log" || return 1
    quiet_session
    local failed=0 python=/usr/bin/python3 tool=$PWD/build/anomalis-batch
    $python tests/tutorials/run_blocks.py --tool $tool docs/tutorials/whole_survey.md docs/reference/surveys.md \
        docs/reference/cluster.md || failed=1
    $python tests/tutorials/run_blocks.py --tool $tool --only sh README.md || failed=1
    $python tests/reports/schemas_test.py --tool $tool --all || failed=1
    $python tests/reports/tables_test.py --tool $tool || failed=1
    return $failed
}

stage_damage() {
    stage_release >"$kept/damage-build.log" || return 1
    tests/damage/damage.py --tool build/anomalis-batch --budget 300 --keep "$kept/damaged" tests/damage examples
}

stage_surveys() {
    stage_release >"$kept/surveys-build.log" || return 1
    local failed=0
    tests/cluster/killed_survey.py --tool build/anomalis-batch --lines 300 --seed "$ANOMALIS_SEED" || failed=1
    tests/cluster/survey_on_slurm.py --tool build/anomalis-batch --lines 300 --seed "$ANOMALIS_SEED"
    case $? in 0 | 77) ;; *) failed=1 ;; esac
    return $failed
}

# run_fuzzer PROGRAM: for a while; what it finds on the way is forgotten, what fails is kept.
run_fuzzer() {
    local name=${1##*/} status
    mkdir -p "$kept/$name"
    "$1" -seed="$ANOMALIS_SEED" -max_total_time=10 -artifact_prefix="$kept/$name-" -verbosity=0 -print_final_stats=1 \
        "$kept/$name" "fuzz/corpus/${name#fuzz_}" >"$kept/$name.log" 2>&1
    status=$?
    rm -rf "${kept:?}/$name"
    echo "$name: $(sed -n 's/stat::number_of_executed_units: *//p' "$kept/$name.log") inputs"
    [ "$status" = 0 ] || cat "$kept/$name.log"
    return "$status"
}

stage_fuzzers() {
    cmake --preset clang && cmake --build --preset clang -j "$jobs" --target fuzzers || return 1
    export kept
    export -f run_fuzzer
    find build/clang/fuzz -maxdepth 1 -type f -perm -u+x -name 'fuzz_*' -print0 |
        xargs -0 -P "$jobs" -n 1 bash -c 'run_fuzzer "$0" || exit 1'
}

stage_threads() {
    cmake --preset tsan && cmake --build --preset tsan -j "$jobs" --target threads || return 1
    quiet_session
    TSAN_OPTIONS="halt_on_error=1 second_deadlock_stack=1" \
        ctest --preset tsan --no-tests=error -L threads -j "$jobs"
}

usage() {
    sed -n '2,4s/^# //p' "${BASH_SOURCE[0]}"
    echo
    stage_list
}

# chosen_stages NAME...: those names, or all; 1 for a name that is none.
chosen_stages() {
    local known name
    known=" $(stage_list | awk '{ print $1 }' | paste -sd ' ') "
    [ $# -gt 0 ] || { echo "$known"; return 0; }
    for name; do
        case $known in *" $name "*) ;; *) echo "No stage is called '$name'." >&2; return 1 ;; esac
    done
    echo "$@"
}

seed='' names=()
while [ $# -gt 0 ]; do
    case $1 in
        --seed) seed=${2:-} && shift ;;
        --seed=*) seed=${1#--seed=} ;;
        --list) usage; exit 0 ;;
        -*) usage; exit 2 ;;
        *) names+=("$1") ;;
    esac
    shift
done
seed=${seed:-${SEED:-$((1 + $(od -An -N4 -tu4 /dev/urandom) % 1000000))}}
[[ $seed =~ ^[1-9][0-9]{0,8}$ ]] || { echo "A seed is a whole number from 1 to 999999999."; exit 2; }
stages=$(chosen_stages ${names[@]+"${names[@]}"}) || exit 2
export ANOMALIS_SEED=$seed
kept=$PWD/build/deep
mkdir -p "$kept"
again="./test --deep --seed $seed${names[*]:+ ${names[*]}}"
echo "Seed $seed; the same run again: $again"
ensure_packages build test tidy deep || exit 1

failed=() table=''
begin=$SECONDS
for stage in $stages; do
    echo "=== $stage: $(stage_list | sed -n "s/^$stage  *//p")"
    from=$SECONDS work=$(awk '{ print $16 + $17 }' /proc/$$/stat)
    (stage_"$stage") 2>&1 | tee "$kept/$stage.log"
    status=${PIPESTATUS[0]}
    work=$((($(awk '{ print $16 + $17 }' /proc/$$/stat) - work) / $(getconf CLK_TCK)))
    [ "$status" = 0 ] || failed+=("$stage")
    line=$(printf '%-9s %6d s, %6d s of processor%s' "$stage" $((SECONDS - from)) "$work" \
        "$([ "$status" = 0 ] || echo ', FAILED')")
    echo "=== $line"
    table+=$line$'\n'
done
echo
printf '%s' "$table"
echo "All: $((SECONDS - begin)) s. Seed $seed; the same run again: $again"
[ ${#failed[@]} -eq 0 ] || { echo "FAILED: ${failed[*]}. Output and inputs that failed are in build/deep."; exit 1; }
