#include "manual/shell_words.h"

#include <algorithm>

namespace anomalis::manual {

std::string in_quotes(const std::string& text) {
    std::string out = "'";
    for (const char sign : text) out += sign == '\'' ? std::string("'\\''") : std::string(1, sign);
    return out + "'";
}

std::string function_name(const std::string& program) {
    std::string name = program;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

bool goes_on(const ValueForm& form) {
    return !form.choices.empty() && form.choices.front().back() == '=';
}

const ValueForm* place_form(const Sheet& sheet) {
    return sheet.arguments.empty() ? nullptr : &sheet.arguments.front().form;
}

std::string choices_text(const ValueForm& form) {
    std::string text;
    for (const std::string& choice : form.choices) text += (text.empty() ? "" : " ") + choice;
    return text;
}

}  // namespace anomalis::manual
