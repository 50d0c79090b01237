#include "batch/command.h"
#include "batch/commands.h"
#include "batch/option_values.h"

namespace anomalis::batch {

namespace {

class DumpCommand : public Command {
  public:
    std::string name() const override { return "dump"; }
    std::string purpose() const override { return "Print everything as one JSON object"; }
    std::vector<std::string> details() const override {
        return {
            "Everything that the workspace holds and everything that follows from it, all numbers in full: "
            "definition, field, stations, observed and calculated rows, bodies with their depths, misfits, "
            "failures."};
    }
    std::vector<manual::Example> examples() const override {
        return {{"anomalis-batch dump line_1030.axm -o everything.json",
                 "Take all numbers of a workspace to another program"}};
    }
    void declare(OptionList& options) override {
        options.file(workspace_form("MODEL"), options_.model, model_file_purpose);
        options.taken("-o,--output", take_stream(options_.output, ".json"), stream_purpose);
    }
    CommandFiles files() const override {
        return {.model = options_.model, .writes = {{"--output", options_.output}}};
    }
    bool run(BatchSession& batch) const override { return run_dump(options_, batch); }

  private:
    DumpOptions options_;
};

}  // namespace

std::unique_ptr<Command> dump_command() {
    return std::make_unique<DumpCommand>();
}

}  // namespace anomalis::batch
