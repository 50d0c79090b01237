#include "batch/command.h"
#include "batch/commands.h"

namespace anomalis::batch {

namespace {

constexpr int most_pieces = 1000000;

class ImportCommand : public Command {
  public:
    std::string name() const override { return "import"; }
    std::string purpose() const override {
        return "Make a workspace of a line of a survey file, with a table of its own beside it";
    }
    std::vector<std::string> details() const override {
        return {
            "All files of an import come together or not at all. Nothing depends on the survey file later."};
    }
    std::vector<manual::Example> examples() const override {
        return {{"anomalis-batch import survey.csv --line 5690 --crs EPSG:32754 --date 1990-07-01 -o models",
                 "Make table and workspace of a line"},
                {"anomalis-batch import survey.csv --all -o models", "Make them of every line"}};
    }
    void declare(OptionList& options) override;
    CommandFiles files() const override { return {}; }
    bool run(BatchSession& batch) const override { return run_import(options_, batch); }

  private:
    ImportOptions options_;
};

void ImportCommand::declare(OptionList& options) {
    add_survey_options(options, options_.survey);
    options.text("--line", options_.line, manual::word("NAME"),
                 "Name of the line; not needed for a file of one line");
    options.flag("--all", options_.all, "Every line that can be modelled");
    options.taken("--piece", take_count(options_.piece, 1, most_pieces),
                  "One straight part, from 1, of a line that folds back or bends by more than 20 degrees");
    add_import_choices(options, options_.choices);
    options.text("--name", options_.choices.name, manual::word("NAME"),
                 "Of the survey: the files are NAME_LINE.csv and NAME_LINE.axm; otherwise that of FILE");
    options.taken("-o,--output",
                  {[this](const std::string& text) {
                       options_.folder = text;
                       return text.empty() || text == "-" ? "must be a folder" : "";
                   },
                   manual::folder("FOLDER")},
                  "Folder for tables and workspaces; made when it is not there", OptionList::Need::must);
    options.flag("--force", options_.force, "Replace files that are there with other contents");
    options.flag("--json", options_.json, "Tell what was read and written as JSON");
    options.at_end("--line", [this]() -> std::string {
        if (options_.all && !options_.line.empty()) return "does not go with --all: " + options_.line;
        return options_.all && options_.piece > 0 ? "--piece does not go with --all" : "";
    });
}

}  // namespace

std::unique_ptr<Command> import_command() {
    return std::make_unique<ImportCommand>();
}

}  // namespace anomalis::batch
