#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "manual/value_form.h"

// What a program says of itself. Man pages, completions and the pages of the guide are written from it.
namespace anomalis::manual {

struct Argument {
    ValueForm form;
    std::string purpose;
    bool needed = true;
    bool several = false;  ///< one or more of them
};

struct Option {
    std::string short_name;          ///< "-o"; "" for none
    std::string long_name;           ///< "--output"
    std::optional<ValueForm> value;  ///< none: a flag
    std::string purpose;
    std::string usual{};  ///< what holds without the option; "" where the purpose tells it or nothing does
    bool needed = false;
    bool repeated = false;  ///< may be given any number of times
    bool any_of = false;    ///< at least one of those that are marked so is needed
    bool common = false;    ///< every command has it
};

struct Example {
    std::string line;  ///< as it is keyed
    std::string does;
};

struct NamedText {
    std::string name, text;
};

/// A program, or one of its commands.
struct Sheet {
    std::string name;     ///< "anomalis-batch", of a command "find"
    std::string purpose;  ///< one phrase
    std::vector<std::string> paragraphs{};
    std::vector<Argument> arguments{};
    std::vector<Option> options{};
    std::vector<Example> examples{};
    std::vector<NamedText> statuses{}, environment{}, files{};
    std::vector<std::string> see_also{};  ///< names of pages
    std::vector<Sheet> commands{};
};

/// "--channel mag|grav|joint", "-o, --output FILE".
std::string option_text(const Option& option);
/// "MODEL", "NEXT..."
std::string argument_text(const Argument& argument);
/// What is keyed behind the name of the program or command: arguments, needed options, "[options]".
std::string usage_text(const Sheet& sheet);
/// "Folder for the results" of "Folder for the results; made when it is not there".
std::string first_phrase(const std::string& text);

/// Broken at blanks into lines of at most `width` signs, the last one ended too.
std::string wrapped(const std::string& text, std::size_t width);

/// The help of a program without commands, for a terminal.
std::string help_text(const Sheet& program);

}  // namespace anomalis::manual
