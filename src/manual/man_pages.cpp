#include <cctype>

#include "core/version.h"
#include "manual/writers.h"

namespace anomalis::manual {

namespace {

/// A word of a command line, whose hyphens are keyed as they stand.
bool is_code(const std::string& word) {
    for (const char sign : word)
        if (sign == '/' || sign == '=' || (std::isdigit(static_cast<unsigned char>(sign)) != 0)) return true;
    const std::size_t letter = word.find_first_not_of("(\"'");
    return letter != std::string::npos && word[letter] == '-';
}

std::string escaped_word(const std::string& word) {
    const bool code = is_code(word);
    std::string text;
    for (const char sign : word) {
        if (sign == '\\')
            text += "\\e";
        else if (sign == '-' && code)
            text += "\\-";
        else if (sign == '\'')
            text += "\\(aq";
        else
            text += sign;
    }
    return text;
}

/// A line of prose.
std::string prose(const std::string& text) {
    std::string out, word;
    for (const char sign : text + " ") {
        if (sign != ' ') {
            word += sign;
            continue;
        }
        out += (out.empty() ? "" : " ") + escaped_word(word);
        word.clear();
    }
    return !out.empty() && out[0] == '.' ? "\\&" + out : out;
}

/// What is keyed, hyphens and all.
std::string code(const std::string& text) {
    std::string out;
    for (const char sign : text) out += sign == '-' ? "\\-" : sign == '\\' ? "\\e" : std::string(1, sign);
    return out;
}

std::string quoted(const std::string& text) {
    return "\"" + text + "\"";
}

std::string section(const std::string& name) {
    return ".SH " + quoted(name) + "\n";
}

std::string entry(const std::string& head, const std::string& text) {
    return ".TP\n" + head + "\n" + prose(text) + "\n";
}

std::string option_head(const Option& option) {
    std::string head = "\\fB" + code(option.long_name) + "\\fR";
    if (!option.short_name.empty()) head = "\\fB" + code(option.short_name) + "\\fR, " + head;
    if (option.value) head += " \\fI" + code(option.value->name) + "\\fR";
    return head;
}

std::string option_entry(const Option& option) {
    std::string text = option.purpose;
    if (option.value && !option.value->choices.empty() && option.value->name.find('|') == std::string::npos &&
        option.value->choices.front().back() != '=') {
        text += ". One of";
        for (const std::string& choice : option.value->choices)
            text += (choice == option.value->choices.front() ? " " : ", ") + choice;
    }
    if (!option.usual.empty()) text += " [" + option.usual + "]";
    if (option.needed) text += ". Needed";
    if (option.repeated) text += ". May be given several times";
    return entry(option_head(option), text + ".");
}

std::string options_section(const std::string& name, const std::vector<Option>& options, bool any_of,
                            bool common) {
    std::string text;
    for (const Option& option : options)
        if (option.any_of == any_of && option.common == common) text += option_entry(option);
    if (text.empty()) return {};
    return section(name) + (any_of ? "At least one of these is needed.\n" : "") + text;
}

std::string named_section(const std::string& name, const std::vector<NamedText>& texts) {
    std::string text;
    for (const NamedText& named : texts) text += entry("\\fB" + code(named.name) + "\\fR", named.text + ".");
    return text.empty() ? "" : section(name) + text;
}

std::string examples_section(const std::vector<Example>& examples) {
    std::string text;
    for (const Example& example : examples)
        text += (text.empty() ? "" : ".PP\n") + prose(example.does) + ":\n.PP\n.RS 4\n.EX\n" +
                code(example.line) + "\n.EE\n.RE\n";
    return text.empty() ? "" : section("EXAMPLES") + text;
}

std::string commands_section(const Sheet& program) {
    std::string text;
    for (const Sheet& command : program.commands)
        text += entry("\\fB" + code(program.name + "-" + command.name) + "\\fR(1)", command.purpose + ".");
    return text.empty() ? "" : section("COMMANDS") + text;
}

std::string see_also_section(const std::vector<std::string>& pages) {
    std::string text;
    // A name that is hyphenated cannot be searched for.
    for (std::size_t i = 0; i < pages.size(); ++i)
        text += ".BR \\%" + code(pages[i]) + " (1)" + (i + 1 < pages.size() ? ",\n" : "\n");
    return text.empty() ? "" : section("SEE ALSO") + text;
}

std::string paragraphs_text(const std::vector<std::string>& paragraphs) {
    std::string text;
    for (const std::string& paragraph : paragraphs) text += ".PP\n" + prose(paragraph) + "\n";
    return text;
}

/// `keyed`: how the command line begins.
Page man_page(const Sheet& sheet, const std::string& page, const std::string& keyed) {
    std::string title;
    for (const char letter : page)
        title += static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    const std::string usage = sheet.commands.empty() ? usage_text(sheet) : "COMMAND [options]";
    std::string text = ".\\\" Written by the program itself: anomalis-batch manual\n";
    text += ".TH " + quoted(code(title)) + " 1 \"\" " +
            quoted("Anomalis " + std::string(application_version())) + " \"User Commands\"\n.nh\n.ad l\n";
    text += section("NAME") + code(page) + " \\- " + prose(sheet.purpose) + "\n";
    text += section("SYNOPSIS") + "\\fB" + code(keyed) + "\\fR " + code(usage) + "\n";
    text += section("DESCRIPTION") + prose(sheet.purpose) + ".\n" + paragraphs_text(sheet.paragraphs);
    std::string arguments;
    for (const Argument& argument : sheet.arguments)
        arguments += entry("\\fI" + code(argument_text(argument)) + "\\fR", argument.purpose + ".");
    if (!arguments.empty()) text += section("ARGUMENTS") + arguments;
    text += commands_section(sheet);
    text += options_section("OUTPUTS", sheet.options, true, false);
    text += options_section("OPTIONS", sheet.options, false, false);
    text += options_section("OPTIONS OF EVERY COMMAND", sheet.options, false, true);
    text += named_section("EXIT STATUS", sheet.statuses) + named_section("ENVIRONMENT", sheet.environment) +
            named_section("FILES", sheet.files);
    text += examples_section(sheet.examples) + see_also_section(sheet.see_also);
    return {"man/man1/" + page + ".1", text};
}

}  // namespace

std::vector<Page> man_pages(const Sheet& program) {
    std::vector<Page> pages{man_page(program, program.name, program.name)};
    for (const Sheet& command : program.commands)
        pages.push_back(
            man_page(command, program.name + "-" + command.name, program.name + " " + command.name));
    return pages;
}

std::vector<Page> shared_pages(const Sheet& program) {
    std::vector<Page> pages = man_pages(program);
    pages.push_back({"bash-completion/completions/" + program.name, bash_completion(program)});
    pages.push_back({"zsh/vendor-completions/_" + program.name, zsh_completion(program)});
    pages.push_back({"fish/vendor_completions.d/" + program.name + ".fish", fish_completion(program)});
    return pages;
}

}  // namespace anomalis::manual
