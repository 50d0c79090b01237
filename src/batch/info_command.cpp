#include "batch/command.h"
#include "batch/commands.h"

namespace anomalis::batch {

namespace {

class InfoCommand : public Command {
  public:
    std::string name() const override { return "info"; }
    std::string purpose() const override { return "Tell what the workspace holds"; }
    void declare(OptionList& options) override { options.file("MODEL", model_, model_file_purpose); }
    CommandFiles files() const override { return {.model = model_, .writes = {}}; }
    bool run(BatchSession& batch) const override { return run_info(model_, batch); }

  private:
    std::string model_;
};

}  // namespace

std::unique_ptr<Command> info_command() {
    return std::make_unique<InfoCommand>();
}

}  // namespace anomalis::batch
