#include "batch/command.h"
#include "batch/commands.h"
#include "core/numbers.h"

namespace anomalis::batch {

namespace {

constexpr int most_samples = 1000000, most_seed = 2147483647;
constexpr double most_degrees = 90;

OptionList::Take take_degrees(double& degrees) {
    return {[&degrees](const std::string& text) -> std::string {
                double number = 0;
                if (!parse_number(text, number) || number < 0 || number > most_degrees)
                    return "must be a number of degrees from 0 to 90: " + text;
                degrees = number;
                return {};
            },
            manual::word("DEGREES")};
}

class UncertaintyCommand : public Command {
  public:
    std::string name() const override { return "uncertainty"; }
    std::string purpose() const override {
        return "Fit the model, then others that explain the data as well: how sure it is";
    }
    std::vector<std::string> details() const override {
        return {
            "Models are drawn, fitted and kept where they explain the data as well. Ctrl+C ends it with the "
            "models that there are."};
    }
    std::vector<manual::Example> examples() const override {
        return {
            {"anomalis-batch uncertainty line_1030.axm --regional 1 --samples 300 --report how_sure.json "
             "--table models.csv",
             "Learn how sure the depths of a model are"}};
    }
    void declare(OptionList& options) override;
    CommandFiles files() const override {
        return {
            .model = options_.model,
            .writes = {
                {"--output", options_.output}, {"--report", options_.report}, {"--table", options_.table}}};
    }
    bool run(BatchSession& batch) const override { return run_uncertainty(options_, batch); }

  private:
    UncertaintyCommandOptions options_;
};

void UncertaintyCommand::declare(OptionList& options) {
    options.file(workspace_form("MODEL"), options_.model, model_file_purpose);
    options.taken("--samples", take_count(options_.samples, 1, most_samples), "Models to be drawn [300]");
    options.taken("--seed", take_count(options_.seed, 0, most_seed),
                  "The same seed gives the same models, on any number of cores [1]");
    options.choice("--channel", options_.channel, {"mag", "grav", "joint"}, "mag, grav, or joint for both");
    options.choice("--target", options_.target, {"data", "gradient"}, "data or gradient");
    add_fit_choice(options, options_.fit);
    options.taken("--window", take_window(options_.window), "Stations from A to B m along the profile alone");
    options.taken("--strike-within", take_degrees(options_.strike_within),
                  "Strikes are not known better than so many degrees to each side [0]");
    options.flag("--vary-bodies", options_.vary_bodies,
                 "Models with a body less take part where they explain the data as well");
    options.flag("--same-regional", options_.same_regional,
                 "Every model has a regional of the same degree; otherwise others that explain the data as "
                 "well take part");
    options.output("--report", options_.report, manual::file("FILE", {".json"}),
                   "Write a JSON report here: values, bands, profile intervals, words, models, fan");
    options.output("--table", options_.table, manual::file("FILE", {".csv"}),
                   "Write the models here as a CSV table, one row a model");
    options.output("-o,--output", options_.output, workspace_form("FILE"),
                   "Write the fitted workspace here; not after a failure, unless --keep-going");
}

}  // namespace

std::unique_ptr<Command> uncertainty_command() {
    return std::make_unique<UncertaintyCommand>();
}

}  // namespace anomalis::batch
