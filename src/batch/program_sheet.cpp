#include "batch/program_sheet.h"

#include <algorithm>
#include <cctype>

#include "batch/exit_status.h"
#include "batch/option_names.h"
#include "batch/option_values.h"

namespace anomalis::batch {

std::string value_name(const std::string& names) {
    std::string name = long_name(names).substr(2);
    std::transform(name.begin(), name.end(), name.begin(), [](unsigned char sign) {
        return static_cast<char>(sign == '-' ? '_' : std::toupper(sign));
    });
    return name;
}

namespace {

/// Writes down what a command declares.
class SheetWriter : public OptionList {
  public:
    explicit SheetWriter(manual::Sheet& sheet) : sheet_(sheet) {}

    void file(const manual::ValueForm& form, std::string&, const std::string& purpose) override {
        sheet_.arguments.push_back({form, purpose});
    }
    void files(const manual::ValueForm& form, std::vector<std::string>&,
               const std::string& purpose) override {
        sheet_.arguments.push_back({.form = form, .purpose = purpose, .several = true});
    }
    void output(const std::string& names, std::string&, const manual::ValueForm& form,
                const std::string& purpose, Need need, const std::string&) override {
        add(names, form, purpose).needed = need == Need::must;
    }
    void text(const std::string& names, std::string&, const manual::ValueForm& form,
              const std::string& purpose) override {
        add(names, form, purpose);
    }
    void taken(const std::string& names, const Take& take, const std::string& purpose, Need need) override {
        add(names, take.form, purpose).needed = need == Need::must;
    }
    void several(const std::string& names, const Take& take, const std::string& purpose) override {
        add(names, take.form, purpose).repeated = true;
    }
    void choice(const std::string& names, std::string& value, const std::vector<std::string>& choices,
                const std::string& purpose) override {
        add(names, manual::one_of(choices, value_name(names)), purpose).usual = value;
    }
    void flag(const std::string& names, bool&, const std::string& purpose) override {
        add(names, std::nullopt, purpose);
    }
    void any_of(const std::string&) override { any_of_ = true; }
    void at_end(const std::string&, const std::function<std::string()>&) override {}

  private:
    manual::Option& add(const std::string& names, const std::optional<manual::ValueForm>& value,
                        const std::string& purpose) {
        manual::Option option;
        option.long_name = long_name(names);
        if (option.long_name.size() < names.size()) option.short_name = names.substr(0, names.find(','));
        option.value = value;
        option.purpose = purpose;
        option.any_of = any_of_;
        sheet_.options.push_back(option);
        return sheet_.options.back();
    }

    manual::Sheet& sheet_;
    bool any_of_ = false;
};

manual::Option help_option() {
    return {"-h", "--help", {}, "Show the help and leave"};
}

void add_common(manual::Sheet& sheet) {
    const std::size_t own = sheet.options.size();
    SheetWriter writer(sheet);
    CommonOptions ignored;
    add_common_options(writer, ignored);
    sheet.options.push_back(help_option());
    for (std::size_t i = own; i < sheet.options.size(); ++i) sheet.options[i].common = true;
}

manual::Sheet command_sheet(Command& command) {
    manual::Sheet sheet;
    sheet.name = command.name();
    sheet.purpose = command.purpose();
    sheet.paragraphs = command.details();
    sheet.examples = command.examples();
    SheetWriter writer(sheet);
    command.declare(writer);
    add_common(sheet);
    sheet.statuses = exit_status_words(sheet.name == "survey");
    sheet.see_also = {program_name, "anomalis"};
    return sheet;
}

std::vector<std::string> program_details() {
    return {
        "A \"-\" in place of a file is the standard input or the standard output, one of each in a command; "
        "messages "
        "go to the standard error. What comes in is kept in a temporary file meanwhile; a workspace that "
        "comes in "
        "finds its data file from the current folder.",
        "Nothing is written over the model, its data file or another output of the same command; only invert "
        "--in-place replaces its own model. Every file is written beside its place and renamed over it: it "
        "is the "
        "old one or the new one, never half of one.",
        "No settings are read, so the same input gives the same output on any machine. Nothing opens the "
        "network."};
}

}  // namespace

manual::Sheet program_sheet(const Commands& commands) {
    manual::Sheet sheet;
    sheet.name = program_name;
    sheet.purpose = program_purpose;
    sheet.paragraphs = program_details();
    sheet.options = {help_option(), {"", "--version", {}, "Show the version and leave"}};
    for (const std::unique_ptr<Command>& command : commands) {
        sheet.commands.push_back(command_sheet(*command));
        sheet.see_also.push_back(sheet.name + "-" + command->name());
    }
    sheet.see_also.insert(sheet.see_also.begin(), "anomalis");
    sheet.examples = {{"anomalis-batch find line_1030.axm -o - | anomalis-batch render - -o found.png",
                       "Look for bodies, and draw what was found"}};
    sheet.statuses = exit_status_words(true);
    sheet.environment = {{"TMPDIR", "Folder for temporary files, otherwise /tmp"},
                         {"PATH", "Where survey --slurm finds sbatch"}};
    return sheet;
}

}  // namespace anomalis::batch
