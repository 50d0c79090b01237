#include "manual/sheet.h"

#include <algorithm>

namespace anomalis::manual {

namespace {

constexpr std::size_t few = 5, name_width = 22;

std::string joined(const std::vector<std::string>& texts, const char* between) {
    std::string all;
    for (const std::string& text : texts) all += (all.empty() ? "" : between) + text;
    return all;
}

/// "  NAME      text"
std::string help_line(const std::string& name, const std::string& text) {
    return "  " + name + std::string(name.size() < name_width ? name_width - name.size() : 1, ' ') + text +
           "\n";
}

}  // namespace

ValueForm one_of(std::vector<std::string> choices, const std::string& many) {
    ValueForm form;
    form.name = choices.size() <= few ? joined(choices, "|") : many;
    form.choices = std::move(choices);
    return form;
}

std::string option_text(const Option& option) {
    std::string text = option.short_name;
    if (!text.empty()) text += ", ";
    text += option.long_name;
    if (option.value) text += " " + option.value->name;
    return text;
}

std::string argument_text(const Argument& argument) {
    const std::string text = argument.form.name + (argument.several ? "..." : "");
    return argument.needed ? text : "[" + text + "]";
}

std::string usage_text(const Sheet& sheet) {
    std::string text;
    const auto add = [&text](const std::string& word) { text += (text.empty() ? "" : " ") + word; };
    for (const Argument& argument : sheet.arguments) add(argument_text(argument));
    for (const Option& option : sheet.options)
        if (option.needed)
            add((option.short_name.empty() ? option.long_name : option.short_name) + " " +
                option.value->name);
    const bool more = std::any_of(sheet.options.begin(), sheet.options.end(),
                                  [](const Option& option) { return !option.needed; });
    if (more) add("[options]");
    return text;
}

std::string first_phrase(const std::string& text) {
    return text.substr(0, std::min(text.find("; "), text.find(". ")));
}

std::string wrapped(const std::string& text, std::size_t width) {
    std::string out, line, word;
    for (const char sign : text + " ") {
        if (sign != ' ') {
            word += sign;
            continue;
        }
        if (!line.empty() && line.size() + 1 + word.size() > width) {
            out += line + "\n";
            line.clear();
        }
        line += (line.empty() ? "" : " ") + word;
        word.clear();
    }
    return out + line + "\n";
}

std::string help_text(const Sheet& program) {
    std::string text = program.purpose + "\n\nUsage: " + program.name + " " + usage_text(program) + "\n\n";
    for (const Argument& argument : program.arguments)
        text += help_line(argument.form.name, argument.purpose);
    for (const Option& option : program.options) text += help_line(option_text(option), option.purpose);
    return text;
}

}  // namespace anomalis::manual
