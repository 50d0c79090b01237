#include "manual/writers.h"

namespace anomalis::manual {

namespace {

constexpr std::size_t line_width = 118;

std::string as_code(const std::string& text) {
    return "`" + text + "`";
}

/// In a cell of a table.
std::string cell(const std::string& text) {
    std::string out;
    for (const char sign : text) out += sign == '|' ? "\\|" : std::string(1, sign);
    return out;
}

/// What is keyed stands as code: options, "NAME=VALUE". A single "-" stays.
std::string with_code(const std::string& text) {
    std::string out, word;
    for (const char sign : text + " ") {
        if (sign != ' ') {
            word += sign;
            continue;
        }
        if (!out.empty()) out += ' ';
        const std::size_t end = word.find_last_not_of(",.;:)") + 1;
        const bool keyed = word.size() > 2 && word.compare(0, 2, "--") == 0;
        out += keyed ? as_code(word.substr(0, end)) + word.substr(end) : word;
        word.clear();
    }
    return out;
}

std::string option_row(const Option& option) {
    std::string text = with_code(option.purpose);
    if (option.value && !option.value->choices.empty() && option.value->name.find('|') == std::string::npos &&
        option.value->choices.front().back() != '=') {
        text += ". One of ";
        for (const std::string& choice : option.value->choices)
            text += (choice == option.value->choices.front() ? "" : ", ") + as_code(choice);
    }
    if (!option.usual.empty()) text += " [" + option.usual + "]";
    if (option.needed) text += ". **Needed**";
    if (option.any_of) text += ". *One of these is needed*";
    if (option.repeated) text += ". As often as needed";
    return "| " + as_code(cell(option_text(option))) + " | " + cell(text) + " |\n";
}

std::string options_table(const std::vector<Option>& options, bool common) {
    std::string rows;
    for (const Option& option : options)
        if (option.common == common) rows += option_row(option);
    return rows.empty() ? "" : "| Option | Meaning |\n|---|---|\n" + rows + "\n";
}

std::string command_text(const std::string& program, const Sheet& command) {
    std::string text =
        "## " + command.name + "\n\n" + wrapped(with_code(command.purpose + "."), line_width) + "\n";
    text += "```text\n" + program + " " + command.name + " " + usage_text(command) + "\n```\n\n";
    for (const std::string& words : command.paragraphs) text += wrapped(with_code(words), line_width) + "\n";
    std::string rows;
    for (const Argument& argument : command.arguments)
        rows += "| " + as_code(cell(argument_text(argument))) + " | " + cell(with_code(argument.purpose)) +
                " |\n";
    if (!rows.empty()) text += "| Argument | Meaning |\n|---|---|\n" + rows + "\n";
    text += options_table(command.options, false);
    for (const Example& example : command.examples)
        text += wrapped(with_code(example.does + ":"), line_width) + "\n```sh\n" + example.line + "\n```\n\n";
    return text;
}

std::string names_table(const std::string& head, const std::vector<NamedText>& texts) {
    std::string rows;
    for (const NamedText& named : texts)
        rows += "| " + as_code(cell(named.name)) + " | " + cell(with_code(named.text)) + " |\n";
    return rows.empty() ? "" : "| " + head + " | Meaning |\n|---|---|\n" + rows + "\n";
}

}  // namespace

std::string markdown_page(const Sheet& program) {
    std::string text = "# Commands of " + program.name + "\n\n";
    text += wrapped("<!-- Written by the program itself: anomalis-batch manual --format markdown -->",
                    line_width) +
            "\n";
    text += wrapped(with_code(program.purpose + "."), line_width) + "\n";
    for (const std::string& words : program.paragraphs) text += wrapped(with_code(words), line_width) + "\n";
    text += "| Command | What it does |\n|---|---|\n";
    for (const Sheet& command : program.commands)
        text += "| [" + command.name + "](#" + command.name + ") | " + cell(command.purpose) + " |\n";
    text += "\nEvery command has these too:\n\n";
    if (!program.commands.empty()) text += options_table(program.commands.front().options, true);
    text += names_table("Exit status", program.statuses) + names_table("Environment", program.environment);
    for (const Sheet& command : program.commands) text += command_text(program.name, command);
    while (text.ends_with("\n\n")) text.pop_back();
    return text;
}

}  // namespace anomalis::manual
