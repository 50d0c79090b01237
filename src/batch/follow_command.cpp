#include <filesystem>

#include "batch/command.h"
#include "batch/commands.h"

namespace anomalis::batch {

namespace {

namespace fs = std::filesystem;

constexpr int most_iterations = 2147483647, most_starts = 10000;

class FollowCommand : public Command {
  public:
    std::string name() const override { return "follow"; }
    std::string purpose() const override {
        return "Carry the model of one line to its neighbours, fit it there, and find its strikes from all "
               "of them";
    }
    std::vector<std::string> details() const override {
        return {
            "A body starts where the strike line through its reference point crosses the next line, as deep "
            "below the ground as on the first one. With two lines or more the places of a body tell its "
            "strike."};
    }
    std::vector<manual::Example> examples() const override {
        return {{"anomalis-batch follow line_1.axm line_2.axm line_3.axm -o followed --report strikes.json",
                 "Follow the bodies of a line over two neighbours"}};
    }
    void declare(OptionList& options) override;
    CommandFiles files() const override;
    bool run(BatchSession& batch) const override { return run_follow(options_, batch); }

  private:
    FollowCommandOptions options_;
};

void FollowCommand::declare(OptionList& options) {
    options.file(workspace_form("FIRST"), options_.first,
                 "Workspace file of the line whose model is followed (.axm)");
    options.files(workspace_form("NEXT"), options_.next,
                  "Workspace files of the lines that it is followed to");
    options.choice("--channel", options_.channel, {"mag", "grav", "joint"},
                   "mag, grav, or joint for both; otherwise that of the fit of FIRST, or what it has");
    add_fit_choice(options, options_.fit);
    options.taken("--iterations", take_count(options_.iterations, 1, most_iterations),
                  "Most iterations of a fit, at least 1 [25]");
    options.taken("--starts", take_count(options_.starts, 0, most_starts),
                  "Fits from other starts that may find a better answer [4]");
    options.output("-o,--output", options_.output, workspace_form("FILE"),
                   "Write the fitted workspace here; for several lines a folder that is there, which gets a "
                   "file of the name of each. Not after a failure, unless --keep-going");
    options.output("--report", options_.report, manual::file("FILE", {".json"}), "Write a JSON report here");
    options.at_end("--output", [this]() -> std::string {
        const bool folder_needed = options_.next.size() > 1 && !options_.output.empty();
        std::error_code ignored;
        return folder_needed && !fs::is_directory(options_.output, ignored)
                   ? "must be a folder that is there, for several lines are followed: " + options_.output
                   : "";
    });
}

CommandFiles FollowCommand::files() const {
    CommandFiles files{.model = options_.first, .writes = {}, .others = options_.next};
    for (const std::string& output : follow_outputs(options_)) files.writes.push_back({"--output", output});
    files.writes.push_back({"--report", options_.report});
    return files;
}

}  // namespace

std::vector<std::string> follow_outputs(const FollowCommandOptions& options) {
    std::vector<std::string> outputs;
    if (options.output.empty()) return outputs;
    std::error_code ignored;
    const bool folder = fs::is_directory(options.output, ignored);
    for (const std::string& next : options.next)
        outputs.push_back(folder ? (fs::path(options.output) / fs::path(next).filename()).string()
                                 : options.output);
    return outputs;
}

std::unique_ptr<Command> follow_command() {
    return std::make_unique<FollowCommand>();
}

}  // namespace anomalis::batch
