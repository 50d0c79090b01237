#include "batch/command.h"
#include "batch/commands.h"

namespace anomalis::batch {

namespace {

class NewCommand : public Command {
  public:
    std::string name() const override { return "new"; }
    std::string purpose() const override { return "Make a workspace for a table of one line"; }
    std::vector<manual::Example> examples() const override {
        return {{"anomalis-batch new line.xyz -o line.axm", "Make a workspace for a table"}};
    }
    void declare(OptionList& options) override;
    CommandFiles files() const override {
        return {.model = "", .writes = {{"--output", options_.output}}, .data = {options_.survey.file}};
    }
    bool run(BatchSession& batch) const override { return run_new(options_, batch); }

  private:
    NewOptions options_;
};

void NewCommand::declare(OptionList& options) {
    add_survey_options(options, options_.survey);
    add_import_choices(options, options_.choices);
    options.output(
        "-o,--output", options_.output, workspace_form("FILE"),
        "The workspace file (.axm). A table that needs no change is its data file; otherwise a table is "
        "made beside it. - is the standard output, for a table that needs no change",
        OptionList::Need::must, "");
    options.at_end("--output",
                   [this] { return std::string(options_.output.empty() ? "must be a file" : ""); });
    options.flag("--force", options_.force, "Replace files that are there with other contents");
}

}  // namespace

std::unique_ptr<Command> new_command() {
    return std::make_unique<NewCommand>();
}

}  // namespace anomalis::batch
