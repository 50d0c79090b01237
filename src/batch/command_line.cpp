#include "batch/command_line.h"

#include <CLI/CLI.hpp>
#include <ostream>
#include <sstream>

#include "batch/option_names.h"
#include "batch/option_values.h"
#include "core/shown_text.h"
#include "core/version.h"

namespace anomalis::batch {

namespace {

constexpr std::size_t help_width = 100;

/// The options of one command, as the library knows them.
class ReadOptions : public OptionList {
  public:
    explicit ReadOptions(CLI::App& command) : command_(command), place_(&command) {
        command.parse_complete_callback([this] {
            for (const auto& [option, check] : checks_)
                if (const std::string why = check(); !why.empty()) throw CLI::ValidationError(option, why);
        });
    }

    void file(const manual::ValueForm& form, std::string& value, const std::string& purpose) override {
        command_.add_option(form.name, value, purpose)->required()->type_name("");
        may_be_input_.push_back([&value](StreamChoice& chosen) {
            if (value == "-") chosen.inputs.push_back(&value);
        });
    }
    void files(const manual::ValueForm& form, std::vector<std::string>& values,
               const std::string& purpose) override {
        command_.add_option(form.name, values, purpose)->required()->type_name("");
        may_be_input_.push_back([&values](StreamChoice& chosen) {
            for (std::string& value : values)
                if (value == "-") chosen.inputs.push_back(&value);
        });
    }
    void output(const std::string& names, std::string& path, const manual::ValueForm& form,
                const std::string& purpose, Need need, const std::string& ending) override {
        place_->add_option(names, path, purpose)->required(need == Need::must)->type_name(form.name);
        outputs_.push_back({&path, ending});
    }
    void text(const std::string& names, std::string& value, const manual::ValueForm& form,
              const std::string& purpose) override {
        place_->add_option(names, value, purpose)->type_name(form.name);
    }
    void taken(const std::string& names, const Take& take, const std::string& purpose, Need need) override {
        place_
            ->add_option_function<std::string>(
                names,
                [take, names](const std::string& text) {
                    if (const std::string why = take.read(text); !why.empty())
                        throw CLI::ValidationError(long_name(names), why);
                },
                purpose)
            ->required(need == Need::must)
            ->type_name(take.form.name);
    }
    void several(const std::string& names, const Take& take, const std::string& purpose) override {
        place_
            ->add_option_function<std::vector<std::string>>(
                names,
                [take, names](const std::vector<std::string>& texts) {
                    for (const std::string& text : texts)
                        if (const std::string why = take.read(text); !why.empty())
                            throw CLI::ValidationError(long_name(names), why);
                },
                purpose)
            ->type_name(take.form.name)
            ->allow_extra_args(false);  // what follows the text may be the file
    }
    void choice(const std::string& names, std::string& value, const std::vector<std::string>& choices,
                const std::string& purpose) override {
        place_->add_option(names, value, purpose)
            ->check(CLI::IsMember(choices).description(""))
            ->type_name(manual::one_of(choices, value_name(names)).name)
            ->capture_default_str();
    }
    void flag(const std::string& names, bool& value, const std::string& purpose) override {
        place_->add_flag(names, value, purpose);
    }
    void any_of(const std::string& name) override {
        CLI::Option_group* group = command_.add_option_group(name, "At least one is needed");
        group->require_option(1, 0);
        place_ = group;
    }
    void at_end(const std::string& option, const std::function<std::string()>& check) override {
        checks_.emplace_back(option, check);
    }

    /// Those that are "-".
    StreamChoice streams() const {
        StreamChoice chosen;
        for (const auto& look : may_be_input_) look(chosen);
        for (const StreamChoice::Output& output : outputs_)
            if (*output.path == "-") chosen.outputs.push_back(output);
        return chosen;
    }

  private:
    CLI::App& command_;
    CLI::App* place_;  ///< of the options that come next: the command, or a group
    std::vector<std::pair<std::string, std::function<std::string()>>> checks_;
    std::vector<std::function<void(StreamChoice&)>> may_be_input_;
    std::vector<StreamChoice::Output> outputs_;
};

/// What the help of a command says behind its options.
std::string footer(const Command& command) {
    std::string text;
    for (const std::string& paragraph : command.details()) text += manual::wrapped(paragraph, help_width);
    for (const manual::Example& example : command.examples())
        text += example.does + ":\n  " + example.line + "\n";
    return text;
}

}  // namespace

CommandLine read_command_line(int argc, char** argv, const Commands& commands, std::ostream& out,
                              std::ostream& err) {
    CLI::App app(program_purpose, "anomalis-batch");
    app.set_version_flag("--version", "anomalis-batch " + std::string(application_version()));
    app.require_subcommand(1);
    CommandLine line;
    std::vector<std::unique_ptr<ReadOptions>> options;
    for (const std::unique_ptr<Command>& command : commands) {
        CLI::App* sub = app.add_subcommand(command->name(), command->purpose());
        sub->footer(footer(*command));
        options.push_back(std::make_unique<ReadOptions>(*sub));
        add_common_options(*options.back(), line.common);
        command->declare(*options.back());
        sub->callback([&line, chosen = command.get(), read = options.back().get()] {
            line.command = chosen;
            line.streams = read->streams();
        });
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        std::ostringstream words;  // a refused argument may be the name of a file
        line.wrong = app.exit(error, out, words) != 0;
        line.command = nullptr;
        err << shown_lines(words.str());
    }
    return line;
}

}  // namespace anomalis::batch
