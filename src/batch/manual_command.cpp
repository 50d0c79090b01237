#include "batch/command.h"
#include "batch/commands.h"
#include "batch/option_names.h"

namespace anomalis::batch {

namespace {

class ManualCommand : public Command {
  public:
    std::string name() const override { return "manual"; }
    std::string purpose() const override {
        return "Write man pages, completions for shells, and this reference";
    }
    std::vector<std::string> details() const override {
        return {
            "All of it is made from what the commands declare, as --help is. With --into ~/.local/share the "
            "man "
            "pages and the completions for bash and fish are found by a person's own shell; zsh looks where "
            "its "
            "fpath says."};
    }
    std::vector<manual::Example> examples() const override {
        return {{"anomalis-batch manual --into ~/.local/share",
                 "Have man pages and completions without a package"},
                {"anomalis-batch manual --format man --page anomalis-batch-find | man -l -",
                 "Read a man page that is not installed"},
                {"source <(anomalis-batch manual --format bash)", "Complete in this bash alone"}};
    }
    void declare(OptionList& options) override;
    CommandFiles files() const override { return {.model = "", .writes = {{"--output", options_.output}}}; }
    bool run(BatchSession& batch) const override { return run_manual(options_, batch); }

  private:
    ManualOptions options_;
};

void ManualCommand::declare(OptionList& options) {
    options.choice(
        "--format", options_.format, {"markdown", "man", "bash", "zsh", "fish"},
        "What is written: all commands as a page of Markdown, a man page, or the completion of a shell");
    options.choice("--page", options_.page, manual_page_names(),
                   "With man: the page; with a shell, anomalis for the completion of the workbench");
    options.output("-o,--output", options_.output, manual::file("FILE"),
                   "Write it here; otherwise to the standard output");
    options.taken(
        "--into",
        {[this](const std::string& text) {
             options_.into = text;
             return std::string(text.empty() || text == "-" ? "must be a folder" : "");
         },
         manual::folder("FOLDER")},
        "Write all man pages and completions, of the workbench too, below this folder where man and the "
        "shells look for them, as below /usr/share; made when it is not there");
    options.at_end("--page", [this]() -> std::string {
        const bool of_command = options_.page != program_name && options_.page != "anomalis";
        if (of_command && options_.format != "man") return "a command alone is for --format man";
        return options_.format == "markdown" && options_.page == "anomalis" ? "the workbench has no such page"
                                                                            : "";
    });
    options.at_end("--into", [this]() -> std::string {
        return !options_.into.empty() && !options_.output.empty() ? "does not go with --output" : "";
    });
}

}  // namespace

std::unique_ptr<Command> manual_command() {
    return std::make_unique<ManualCommand>();
}

}  // namespace anomalis::batch
