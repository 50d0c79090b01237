#include "batch/command.h"
#include "batch/option_values.h"
#include "batch/picture_options.h"
#include "batch/survey.h"
#include "core/failure.h"
#include "core/paths.h"
#include "survey/cluster/shards.h"

namespace anomalis::batch {

namespace {

constexpr int most_jobs = 1024, most_lines_a_shard = 1000000;

OptionList::Take take_folder(std::string& folder) {
    return {[&folder](const std::string& text) -> std::string {
                folder = text;
                if (text.empty() || text == "-") return "must be a folder";
                return file_exists(text).empty() ? "" : "must be a folder, and this is a file: " + text;
            },
            manual::folder("FOLDER")};
}

OptionList::Take take_shard(survey::Shard& shard) {
    return {[&shard](const std::string& text) -> std::string {
                try {
                    shard = survey::read_shard(text);
                    return {};
                } catch (const Fault& fault) {
                    return fault.what();
                }
            },
            manual::word("I/N")};
}

class SurveyCommand : public Command {
  public:
    explicit SurveyCommand(PictureWriter* pictures) : pictures_(pictures) {}
    std::string name() const override { return "survey"; }
    std::string purpose() const override {
        return "Do what a plan says with the lines of a survey, on all cores; started again it goes on";
    }
    std::vector<std::string> details() const override {
        return {
            "PLAN names a survey file or workspaces and says what is done with each line. FOLDER gets "
            "lines/NAME with workspace and report of each, and in the end bodies.csv, lines.csv, seconds.csv "
            "and survey.gpkg. A line that fails is a row with its message; the others go on."};
    }
    std::vector<manual::Example> examples() const override {
        return {{"anomalis-batch survey plan.toml -o results --dry-run", "See what a plan would do"},
                {"anomalis-batch survey plan.toml -o results --map map.pdf",
                 "Do it on all cores, and draw a map at the end"},
                {"anomalis-batch survey plan.toml -o results --slurm -j 8",
                 "Hand it to a Slurm cluster, eight cores a part"}};
    }
    void declare(OptionList& options) override;
    CommandFiles files() const override {
        return {.model = "", .writes = {{"--map", options_.map}}, .data = {options_.plan}};
    }
    bool run(BatchSession& batch) const override { return run_survey_command(options_, batch, pictures_); }

  private:
    void declare_parts(OptionList& options);
    std::string parts_refusal() const;
    std::string map_refusal() const;

    SurveyCommandOptions options_;
    PictureWriter* pictures_;
};

void SurveyCommand::declare(OptionList& options) {
    options.file(manual::file("PLAN", {".toml", ".json", ".csv"}), options_.plan,
                 "Plan of the survey: TOML, JSON (.json), or a table (.csv) with one row a workspace");
    options.taken("-o,--output", take_folder(options_.folder),
                  "Folder for the results; made when it is not there. What it holds of this survey is kept",
                  OptionList::Need::must);
    options.taken("-j,--jobs", take_count(options_.jobs, 1, most_jobs), "Lines at a time [as many as cores]");
    options.flag("--again-failed", options_.again_failed, "Try the lines again that failed before");
    options.flag("--dry-run", options_.dry_run, "Tell what would be done, and do nothing");
    options.choice("--log", options_.log, {"text", "json"},
                   "json: every line and the progress as JSON objects on the standard output, one a line");
    options.text("--map", options_.map, picture_form(),
                 "Draw the map of the results at the end: .png, .svg, .pdf or .emf");
    options.at_end("--map", [this] { return map_refusal(); });
    declare_parts(options);
}

std::string SurveyCommand::map_refusal() const {
    if (options_.map.empty()) return {};
    if (options_.shard.count > 1 || options_.slurm || options_.dry_run)
        return "is for a run of the whole survey, or with --merge";
    return options_.map == "-" ? "must be a file" : ending_refusal(options_.map);
}

void SurveyCommand::declare_parts(OptionList& options) {
    options.taken("--shard", take_shard(options_.shard),
                  "I/N: part I of N alone, such as 2/5; the tables are made by --merge");
    options.flag("--merge", options_.merge, "Make the tables of a survey that was done in parts");
    options.several("--from",
                    {[this](const std::string& text) -> std::string {
                         options_.from.push_back(text);
                         return folder_exists(text) ? "" : "must be a folder with results: " + text;
                     },
                     manual::folder("FOLDER")},
                    "With --merge: a folder with other lines of the same plan");
    options.flag("--slurm", options_.slurm,
                 "Write a script for a Slurm cluster, with parts of --lines-a-shard lines on -j cores each, "
                 "and submit it");
    options.taken("--lines-a-shard", take_count(options_.lines_a_shard, 1, most_lines_a_shard),
                  "With --slurm: lines that one part does [200]");
    options.at_end("--shard", [this] { return parts_refusal(); });
    options.at_end("PLAN", [this]() -> std::string {
        return options_.plan == "-" ? "must be a file: what it names is found from its folder" : "";
    });
}

std::string SurveyCommand::parts_refusal() const {
    const int ways = (options_.shard.count > 1 ? 1 : 0) + (options_.merge ? 1 : 0) + (options_.slurm ? 1 : 0);
    if (ways > 1) return "--shard, --merge and --slurm are three things: choose one of them";
    if (!options_.from.empty() && !options_.merge) return "--from is for --merge";
    return options_.dry_run && ways > 0 && options_.shard.count == 1 ? "--dry-run is for a run" : "";
}

}  // namespace

std::unique_ptr<Command> survey_command(PictureWriter* pictures) {
    return std::make_unique<SurveyCommand>(pictures);
}

}  // namespace anomalis::batch
