#include "manual/shell_words.h"
#include "manual/writers.h"

namespace anomalis::manual {

namespace {

/// In a specification of _arguments: brackets and colons are its own signs.
std::string escaped(const std::string& text) {
    std::string out;
    for (const char sign : text) {
        if (sign == '[' || sign == ']' || sign == ':' || sign == '\\') out += '\\';
        out += sign;
    }
    return out;
}

/// ":MODEL:_files -g "*.axm(-.)""
std::string zsh_action(const ValueForm& form) {
    std::string message = ":" + escaped(form.name) + ":";
    if (goes_on(form)) return message + "{compadd -S \"\" -- " + choices_text(form) + "}";
    if (!form.choices.empty()) return message + "(" + choices_text(form) + ")";
    if (form.kind == ValueForm::Kind::folder) return message + "_files -/";
    if (form.kind != ValueForm::Kind::file) return message;
    if (form.endings.empty()) return message + "_files";
    std::string endings;
    for (const std::string& ending : form.endings) endings += (endings.empty() ? "" : "|") + ending.substr(1);
    return message + "_files -g \"*.(" + endings + ")(-.)\"";
}

/// One option, as one word or, with a short name, two that exclude each other.
std::string option_spec(const Option& option) {
    const std::string words =
        "[" + escaped(first_phrase(option.purpose)) + "]" + (option.value ? zsh_action(*option.value) : "");
    const std::string long_name = option.long_name + (option.value ? "=" : "");
    if (option.long_name == "--help" || option.long_name == "--version") {
        std::string text;
        for (const std::string& name : {option.short_name, option.long_name})
            if (!name.empty())
                text.append(text.empty() ? "" : " ")
                    .append(in_quotes(std::string("(- *)").append(name).append(words)));
        return text;
    }
    if (option.short_name.empty()) return in_quotes((option.repeated ? "*" : "") + long_name + words);
    const std::string others = "(" + option.short_name + " " + option.long_name + ")";
    return in_quotes(others + option.short_name + words) + " " + in_quotes(others + long_name + words);
}

std::string zsh_sheet_text(const Sheet& sheet, const std::string& indent) {
    std::string text = indent + "_arguments";
    for (const Option& option : sheet.options) text += " \\\n" + indent + "    " + option_spec(option);
    for (const Argument& argument : sheet.arguments)
        text += " \\\n" + indent + "    " +
                in_quotes((argument.several  ? "*"
                           : argument.needed ? ""
                                             : ":") +
                          zsh_action(argument.form));
    return text + "\n";
}

std::string zsh_commands_text(const Sheet& program) {
    std::string text =
        "    local curcontext=$curcontext state line\n    typeset -A opt_args\n    _arguments -C";
    for (const Option& option : program.options) text += " \\\n        " + option_spec(option);
    text += " \\\n        '1:command:->command' '*:: :->arguments'\n";
    text += "    case $state in\n    command)\n        local -a commands=(\n";
    for (const Sheet& command : program.commands)
        text += "            " + in_quotes(command.name + ":" + first_phrase(command.purpose)) + "\n";
    text += "        )\n        _describe -t commands command commands\n        ;;\n    arguments)\n";
    text += "        case $words[1] in\n";
    for (const Sheet& command : program.commands)
        text +=
            "        " + command.name + ")\n" + zsh_sheet_text(command, "            ") + "            ;;\n";
    return text + "        esac\n        ;;\n    esac\n";
}

}  // namespace

std::string zsh_completion(const Sheet& program) {
    const std::string function = "_" + function_name(program.name);
    std::string text =
        "#compdef " + program.name + "\n# Written by the program itself: anomalis-batch manual\n\n";
    text += function + "() {\n" +
            (program.commands.empty() ? zsh_sheet_text(program, "    ") : zsh_commands_text(program)) +
            "}\n\n";
    return text + function + " \"$@\"\n";
}

}  // namespace anomalis::manual
