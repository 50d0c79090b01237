#include "batch/command.h"
#include "batch/commands.h"
#include "batch/option_values.h"

namespace anomalis::batch {

namespace {

class ForwardCommand : public Command {
  public:
    std::string name() const override { return "forward"; }
    std::string purpose() const override { return "Calculate and write the profile data table"; }
    std::vector<manual::Example> examples() const override {
        return {{"anomalis-batch forward line_1030.axm -o profile.csv",
                 "Calculate the model and write one row a station"},
                {"anomalis-batch forward --formulas classic line_1030.axm | head",
                 "Look at the first rows by the classic formulas"}};
    }
    void declare(OptionList& options) override {
        options.file(workspace_form("MODEL"), options_.model, model_file_purpose);
        options.taken("-o,--output", take_stream(options_.output, ".csv"), stream_purpose);
    }
    CommandFiles files() const override {
        return {.model = options_.model, .writes = {{"--output", options_.output}}};
    }
    bool run(BatchSession& batch) const override { return run_forward(options_, batch); }

  private:
    ForwardOptions options_;
};

}  // namespace

std::unique_ptr<Command> forward_command() {
    return std::make_unique<ForwardCommand>();
}

}  // namespace anomalis::batch
