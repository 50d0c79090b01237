#include "manual/shell_words.h"
#include "manual/writers.h"

namespace anomalis::manual {

namespace {

/// fish escapes within quotes.
std::string in_fish_quotes(const std::string& text) {
    std::string out = "'";
    for (const char sign : text) {
        if (sign == '\'' || sign == '\\') out += '\\';
        out += sign;
    }
    return out + "'";
}

/// How a value is completed: nothing else is offered, but for any file.
std::string fish_action(const ValueForm& form) {
    if (!form.choices.empty()) return " -x -a " + in_fish_quotes(choices_text(form));
    if (form.kind == ValueForm::Kind::folder) return " -x -a '(__fish_complete_directories)'";
    if (form.kind != ValueForm::Kind::file) return " -x";
    if (form.endings.empty()) return " -r -F";
    std::string files;
    for (const std::string& ending : form.endings)
        files += (files.empty() ? "" : "; ") + ("__fish_complete_suffix " + ending);
    return " -k -x -a '(" + files + ")'";
}

/// `scope`: when it is offered.
std::string option_line(const Option& option, const std::string& scope) {
    std::string line = scope;
    if (!option.short_name.empty()) line += " -s " + option.short_name.substr(1);
    line += " -l " + option.long_name.substr(2) + " -d " + in_fish_quotes(first_phrase(option.purpose));
    return line + (option.value ? fish_action(*option.value) : "") + "\n";
}

std::string fish_sheet_text(const Sheet& sheet, const std::string& scope) {
    std::string text;
    for (const Option& option : sheet.options) text += option_line(option, scope);
    const ValueForm* place = place_form(sheet);
    if (place) text += scope + fish_action(*place) + "\n";
    return text;
}

std::string fish_commands_text(const Sheet& program, const std::string& start) {
    const std::string is = "__" + function_name(program.name) + "_is";
    std::string text = "function " + is +
                       "\n    set -l words (commandline -opc)\n    test (count $words) -gt 1\n"
                       "    and contains -- $words[2] $argv\nend\n\n";
    const std::string first = start + " -n 'test (count (commandline -opc)) -eq 1'";
    for (const Option& option : program.options) text += option_line(option, first);
    for (const Sheet& command : program.commands)
        text += first + " -a " + command.name + " -d " + in_fish_quotes(first_phrase(command.purpose)) + "\n";
    for (const Sheet& command : program.commands) {
        std::string scope = start;
        scope.append(" -n '").append(is).append(" ").append(command.name).append("'");
        text += "\n" + fish_sheet_text(command, scope);
    }
    return text;
}

}  // namespace

std::string fish_completion(const Sheet& program) {
    const std::string start = "complete -c " + program.name;
    std::string text = "# Written by the program itself: anomalis-batch manual\n" + start + " -f\n";
    return text +
           (program.commands.empty() ? fish_sheet_text(program, start) : fish_commands_text(program, start));
}

}  // namespace anomalis::manual
