#include "manual/shell_words.h"
#include "manual/writers.h"

namespace anomalis::manual {

namespace {

/// Functions of every completion: words, and files by their endings. bash-completion's own search for files
/// is taken where it is there, since it knows of quotes and tildes.
constexpr const char* helpers = R"sh(
_NAME_words() {
    mapfile -t COMPREPLY < <(compgen -W "$1" -- "$cur")
    [[ ${COMPREPLY[0]-} != *= ]] || compopt -o nospace 2>/dev/null
}

_NAME_files() {
    if declare -F _filedir >/dev/null; then
        _filedir ${1:+"@($1)"}
        return
    fi
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -d -- "$cur"; shopt -s extglob; compgen -f -X "${1:+!*.@($1)}" -- "$cur")
}

_NAME_folders() {
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -d -- "$cur")
}
)sh";

/// With the name of the program's functions in place of "_NAME".
std::string named(std::string text, const std::string& function) {
    const std::string place = "_NAME";
    for (std::size_t at = text.find(place); at != std::string::npos; at = text.find(place, at))
        text.replace(at, place.size(), function);
    return text;
}

/// What completes a value; "" for nothing.
std::string action(const ValueForm& form) {
    if (!form.choices.empty()) return "_NAME_words " + in_quotes(choices_text(form));
    if (form.kind == ValueForm::Kind::folder) return "_NAME_folders";
    if (form.kind != ValueForm::Kind::file) return {};
    std::string endings;
    for (const std::string& ending : form.endings) endings += (endings.empty() ? "" : "|") + ending.substr(1);
    return endings.empty() ? "_NAME_files" : "_NAME_files " + in_quotes(endings);
}

std::string option_names(const std::vector<Option>& options) {
    std::string names;
    for (const Option& option : options) {
        if (!option.short_name.empty()) names += option.short_name + " ";
        names += option.long_name + " ";
    }
    if (!names.empty()) names.pop_back();
    return names;
}

/// Sets `options`, and completes the value of an option or what stands without a name.
std::string sheet_text(const Sheet& sheet, const std::string& indent) {
    std::string text, cases;
    for (const Option& option : sheet.options) {
        if (!option.value) continue;
        const std::string doing = action(*option.value);
        cases += indent + "    " + (option.short_name.empty() ? "" : option.short_name + "|") +
                 option.long_name + ") " + (doing.empty() ? "return ;;\n" : doing + "; return ;;\n");
    }
    if (!cases.empty()) text += indent + "case $prev in\n" + cases + indent + "esac\n";
    text += indent + "options=" + in_quotes(option_names(sheet.options)) + "\n";
    const ValueForm* place = place_form(sheet);
    if (place) text += indent + "[[ $cur == -* ]] || { " + action(*place) + "; return; }\n";
    return text;
}

std::string commands_text(const Sheet& program) {
    std::string names;
    for (const Sheet& command : program.commands) names += (names.empty() ? "" : " ") + command.name;
    std::string text = "    if ((COMP_CWORD == 1)); then\n        [[ $cur == -* ]] || { _NAME_words " +
                       in_quotes(names) +
                       "; return; }\n        options=" + in_quotes(option_names(program.options)) +
                       "\n    fi\n    case ${COMP_WORDS[1]} in\n";
    for (const Sheet& command : program.commands)
        text += "        " + command.name + ")\n" + sheet_text(command, "            ") + "            ;;\n";
    return text + "    esac\n";
}

}  // namespace

std::string bash_completion(const Sheet& program) {
    std::string text = "# Completion of " + program.name +
                       " for bash. Written by the program itself: anomalis-batch manual\n" + helpers;
    text += R"sh(
_NAME() {
    local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD-1]} options=
    COMPREPLY=()
    # "--option=value" comes as three words.
    if [[ $cur == '=' ]]; then
        cur=
    elif [[ $prev == '=' ]]; then
        prev=${COMP_WORDS[COMP_CWORD-2]}
        [[ $prev == -* ]] || return
    fi
)sh";
    text += program.commands.empty() ? sheet_text(program, "    ") : commands_text(program);
    text += "    [[ $cur != -* ]] || _NAME_words \"$options\"\n} && complete -F _NAME " + program.name + "\n";
    return named(text, "_" + function_name(program.name));
}

}  // namespace anomalis::manual
