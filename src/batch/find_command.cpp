#include "batch/command.h"
#include "batch/commands.h"

namespace anomalis::batch {

namespace {

constexpr int most_bodies = 100, most_alternatives = 20;

/// "thin", "thick", or both with a comma between them.
OptionList::Take take_kinds(bool& thin, bool& thick) {
    return {[&thin, &thick](const std::string& text) -> std::string {
                thin = text == "thin" || text == "thin,thick" || text == "thick,thin";
                thick = text == "thick" || text == "thin,thick" || text == "thick,thin";
                return thin || thick ? "" : "must be thin, thick or thin,thick: " + text;
            },
            manual::one_of({"thin", "thick", "thin,thick"}, "")};
}

class FindCommand : public Command {
  public:
    std::string name() const override { return "find"; }
    std::string purpose() const override {
        return "Propose models of the line: sheets with place, depth, dip, width and susceptibility";
    }
    std::vector<std::string> details() const override {
        return {
            "It looks beside the bodies that stand there, which stay as they are unless --free-present is "
            "given. A workspace without a regional lets its degree be found. That nothing stands out of the "
            "noise is an answer: exit status 0, a note, and an alternative without bodies. Ctrl+C ends it "
            "with what was found."};
    }
    std::vector<manual::Example> examples() const override {
        return {{"anomalis-batch find line_1030.axm --most 6 -o best.axm --report found.json",
                 "Look for up to six sheets under a line"},
                {"anomalis-batch find line_1030.axm --kinds thin --window 1000:4000 --report found.json",
                 "Look for thin sheets in a part of the line"}};
    }
    void declare(OptionList& options) override;
    CommandFiles files() const override {
        return {.model = options_.model,
                .writes = {{"--output", options_.output}, {"--report", options_.report}}};
    }
    bool run(BatchSession& batch) const override { return run_find(options_, batch); }

  private:
    void declare_search(OptionList& options);
    void declare_data(OptionList& options);
    void declare_checks(OptionList& options);

    FindCommandOptions options_;
};

void FindCommand::declare(OptionList& options) {
    options.file(workspace_form("MODEL"), options_.model, model_file_purpose);
    declare_search(options);
    declare_data(options);
    options.output("-o,--output", options_.output, workspace_form("FILE"),
                   "Write the workspace with the best model here; not after a failure, unless --keep-going");
    options.output("--report", options_.report, manual::file("FILE", {".json"}),
                   "Write a JSON report of all proposals here");
    declare_checks(options);
}

void FindCommand::declare_search(OptionList& options) {
    options.taken("--most", take_count(options_.most, 1, most_bodies), "Bodies at most [8]");
    options.taken("--bodies", take_count(options_.bodies, 1, most_bodies),
                  "Exactly so many; otherwise as many as the data call for");
    options.taken("--kinds", take_kinds(options_.thin, options_.thick),
                  "Sheets to be tried: thin, thick or thin,thick [thin,thick]");
    options.flag("--free-present", options_.free_present,
                 "Fit the bodies that stand there too; otherwise they stay as they are");
    options.taken("--alternatives", take_count(options_.alternatives, 1, most_alternatives),
                  "Proposals at most, the best first [3]");
}

void FindCommand::declare_data(OptionList& options) {
    options.choice("--channel", options_.channel, {"mag", "grav", "joint"},
                   "mag, grav, or joint for the same bodies in both; otherwise what the line has, magnetics "
                   "first");
    options.taken("--window", take_window(options_.window),
                  "A:B, the part of the line that is looked at, m along the profile; otherwise that of the "
                  "workspace");
    options.taken("--noise", take_noise(options_.noise, "nT (gravity: mGal)"),
                  "Standard deviation of a reading of the channel that is looked at, nT or mGal; otherwise "
                  "that of the workspace, or estimated");
    add_fit_choice(options, options_.fit);
}

void FindCommand::declare_checks(OptionList& options) {
    options.at_end("--bodies", [this]() -> std::string {
        const bool more = options_.bodies && options_.most && *options_.bodies > *options_.most;
        return more ? "asks for more than --most allows" : "";
    });
    options.at_end("--noise", [this]() -> std::string {
        if (!options_.noise) return {};
        if (options_.channel == "joint") return "two channels have two: name --noise-mag and --noise-grav";
        const bool twice = options_.fit.mag_noise || options_.fit.grav_noise;
        return twice ? "is said twice: --noise-mag and --noise-grav name the channel" : "";
    });
}

}  // namespace

std::unique_ptr<Command> find_command() {
    return std::make_unique<FindCommand>();
}

}  // namespace anomalis::batch
