#include "survey/cluster/slurm.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <string_view>
#include <sys/stat.h>
#include <utility>

#include "core/failure.h"
#include "core/safe_file.h"
#include "survey/cluster/shards.h"

namespace anomalis::survey {

namespace {

/// A word as the shell takes it, whatever is in it.
std::string shell_word(std::string_view text) {
    std::string word = "'";
    for (const char c : text) word += c == '\'' ? "'\\''" : std::string(1, c);
    return word + "'";
}

constexpr std::string_view script_body = R"bash(
# Slurm sets % in the paths of logs.
logs=${folder//%/%%}/logs
survey() {
    "$program" survey "$plan" -o "$folder" -j "${SLURM_CPUS_PER_TASK:-$cores}" "$@"
}

# 75: no room, no access to a file, or stopped. What is done stays done, so another try does the rest.
try_again() {
    if [ "${SLURM_RESTART_COUNT:-0}" -lt "$tries" ] && scontrol requeue "$SLURM_JOB_ID"; then
        # Slurm ends this run; it shall not end by itself before.
        sleep 300
    fi
    exit 75
}

case ${1:-} in
    shard)
        survey --shard "$SLURM_ARRAY_TASK_ID/$shards" && status=0 || status=$?
        case $status in
            0 | 1) exit 0 ;;  # lines that failed are rows of the table
            75) try_again ;;
            *) exit "$status" ;;
        esac
        ;;
    merge)
        survey --merge && status=0 || status=$?
        [ "$status" -ne 75 ] || echo "Submit it again, which does what is missing: bash $(printf %q "$script")"
        exit "$status"
        ;;
esac

if ! command -v sbatch >/dev/null; then
    echo "sbatch is not here, so nothing was submitted. On a node of the cluster that submits jobs, run:" >&2
    echo "  bash $(printf %q "$script")" >&2
    exit 127
fi
mkdir -p "$folder/logs"
options=(--cpus-per-task="$cores" --mem-per-cpu=1G --requeue --open-mode=append "$@")
array=$(sbatch --parsable --job-name="$name" --array="1-$shards" --output="$logs/shard-%a.log" \
    "${options[@]}" "$script" shard)
merge=$(sbatch --parsable --job-name="$name: tables" --dependency="afterany:${array%%;*}" \
    --output="$logs/merge.log" "${options[@]}" "$script" merge)
echo "Submitted: ${array%%;*} ($shards shards) and ${merge%%;*} (the tables)."
echo "  squeue -j ${array%%;*},${merge%%;*}    shows how far they are"
echo "  tail -F $(printf %q "$folder")/logs/*.log    shows what they say"
)bash";

void make_executable(const std::string& path) {
    // Only a convenience: bash reads the script without it.
    [[maybe_unused]] const int unsupported = ::chmod(path.c_str(), 0755);
}

}  // namespace

int slurm_shards(const SlurmSurvey& survey) {
    constexpr std::size_t most = 1000;
    const std::size_t a_shard = std::max<std::size_t>(survey.lines_a_shard, 1);
    return static_cast<int>(std::clamp<std::size_t>((survey.lines + a_shard - 1) / a_shard, 1, most));
}

std::string slurm_script_file(const std::string& folder) {
    return folder + "/survey.sbatch.sh";
}

std::string slurm_script(const SlurmSurvey& survey) {
    const auto setting = [](const char* name, const std::string& value) {
        return std::string(name) + "=" + value + "\n";
    };
    std::string text =
        "#!/bin/bash\n"
        "# A survey on a Slurm cluster: an array of shards, then their tables.\n"
        "#   bash survey.sbatch.sh [OPTION OF SBATCH]...    submits both, such as with --partition=long\n"
        "# Submitted again it does what is missing.\n"
        "set -euo pipefail\n";
    text += setting("name", shell_word(survey.name));
    text += setting("program", shell_word(survey.program));
    text += setting("plan", shell_word(survey.plan));
    text += setting("folder", shell_word(survey.folder));
    text += setting("script", shell_word(slurm_script_file(survey.folder)));
    text += setting("shards", std::to_string(slurm_shards(survey)));
    text += setting("cores", std::to_string(std::max(survey.cores, 1)));
    text += setting("tries", "10");
    return text.append(script_body);
}

void submit_to_slurm(const SlurmSurvey& survey, const std::function<void(const std::string&)>& tell) {
    const std::string script = slurm_script_file(survey.folder);
    write_file_safely(script, slurm_script(survey));
    make_executable(script);
    std::FILE* pipe = ::popen(("bash " + shell_word(script) + " 2>&1").c_str(), "r");
    if (!pipe) throw Fault("bash could not be started to submit " + script);
    std::string line;
    for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) {
        if (c != '\n') {
            line += static_cast<char>(c);
            continue;
        }
        tell(line);
        line.clear();
    }
    if (!line.empty()) tell(line);
    if (::pclose(pipe) != 0)
        throw Fault("The survey was not submitted to Slurm. Its script stays and submits it later: bash " +
                    shell_word(script));
}

}  // namespace anomalis::survey
