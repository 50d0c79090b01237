#include "batch/command.h"
#include "batch/commands.h"

namespace anomalis::batch {

namespace {

class LinesCommand : public Command {
  public:
    std::string name() const override { return "lines"; }
    std::string purpose() const override { return "List the lines of a survey file"; }
    std::vector<manual::Example> examples() const override {
        return {{"anomalis-batch lines survey.csv", "See which lines a survey file holds"},
                {"anomalis-batch lines survey.xyz.gz --role mag=tmi --null tmi=-99999 --json",
                 "Correct what was recognised, and have it as JSON"}};
    }
    void declare(OptionList& options) override {
        add_survey_options(options, options_.survey);
        options.flag("--json", options_.json, "Write them as JSON");
    }
    CommandFiles files() const override { return {}; }
    bool run(BatchSession& batch) const override { return run_lines(options_, batch); }

  private:
    LinesOptions options_;
};

}  // namespace

std::unique_ptr<Command> lines_command() {
    return std::make_unique<LinesCommand>();
}

}  // namespace anomalis::batch
