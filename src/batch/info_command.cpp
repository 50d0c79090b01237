#include "batch/command.h"
#include "batch/commands.h"

namespace anomalis::batch {

namespace {

class InfoCommand : public Command {
  public:
    std::string name() const override { return "info"; }
    std::string purpose() const override { return "Tell what the workspace holds"; }
    std::vector<manual::Example> examples() const override {
        return {{"anomalis-batch info line_1030.axm", "See what line, bodies and fit a workspace holds"}};
    }
    void declare(OptionList& options) override {
        options.file(workspace_form("MODEL"), options_.model, model_file_purpose);
        options.flag("--json", options_.json, "As one JSON object, units in the names");
    }
    CommandFiles files() const override { return {.model = options_.model, .writes = {}}; }
    bool run(BatchSession& batch) const override { return run_info(options_, batch); }

  private:
    InfoOptions options_;
};

}  // namespace

std::unique_ptr<Command> info_command() {
    return std::make_unique<InfoCommand>();
}

}  // namespace anomalis::batch
