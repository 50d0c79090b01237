#include "intake/formats/name_words.h"

#include <algorithm>
#include <array>
#include <utility>

namespace anomalis::intake {

namespace {

constexpr std::array<std::string_view, 14> datums{"mga", "amg", "utm",  "gda",  "wgs", "agd",  "itrf",
                                                  "grs", "nad", "nzgd", "nztm", "ed",  "etrs", "aagd"};
constexpr std::array<std::string_view, 18> units{"m",    "metre", "metres", "meter", "meters", "ft",
                                                 "feet", "nt",    "gammas", "gamma", "deg",    "degrees",
                                                 "mgal", "mgals", "gu",     "dd",    "ums",    "nanotesla"};
/// Units that are written behind a name without a gap.
constexpr std::array<std::string_view, 2> glued_units{"mgal", "gu"};

enum class Letter { lower, upper, digit, other };

Letter letter_of(char c) {
    if (c >= 'a' && c <= 'z') return Letter::lower;
    if (c >= 'A' && c <= 'Z') return Letter::upper;
    return c >= '0' && c <= '9' ? Letter::digit : Letter::other;
}

/// Whether a word begins at `at`: behind other characters, between letters and digits, at a capital within.
bool begins_word(std::string_view name, std::size_t at) {
    const Letter here = letter_of(name[at]), before = letter_of(name[at - 1]);
    if (here == Letter::other || before == Letter::other) return true;
    if ((here == Letter::digit) != (before == Letter::digit)) return true;
    if (here == Letter::upper && before == Letter::lower) return true;
    return here == Letter::upper && before == Letter::upper && at + 1 < name.size() &&
           letter_of(name[at + 1]) == Letter::lower;
}

template <std::size_t size>
bool is_one_of(const std::array<std::string_view, size>& list, std::string_view word) {
    return std::find(list.begin(), list.end(), word) != list.end();
}

void strip_datum(std::string& word) {
    for (const std::string_view datum : datums) {
        if (word.size() <= datum.size() + 2 || datum.size() < 3) continue;
        if (word.starts_with(datum)) word.erase(0, datum.size());
        if (word.ends_with(datum)) word.erase(word.size() - datum.size());
    }
}

void strip_unit(std::string& word) {
    for (const std::string_view unit : glued_units)
        if (word.size() > unit.size() + 2 && word.ends_with(unit)) word.erase(word.size() - unit.size());
}

}  // namespace

NameWords::NameWords(std::string_view name) {
    std::string word;
    const auto end_word = [&] {
        strip_datum(word);
        strip_unit(word);
        if (!word.empty() && !is_one_of(datums, word)) words.push_back(word);
        word.clear();
    };
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (i > 0 && begins_word(name, i)) end_word();
        if (letter_of(name[i]) != Letter::other)
            word += letter_of(name[i]) == Letter::upper ? static_cast<char>(name[i] | 0x20) : name[i];
    }
    end_word();
    // A unit alone is a name, at the end of one it is none.
    while (words.size() > 1 && is_one_of(units, words.back())) words.pop_back();
    for (const std::string& one : words)
        if (letter_of(one.front()) != Letter::digit) together += one;
}

bool NameWords::has(std::initializer_list<std::string_view> any) const {
    return std::any_of(words.begin(), words.end(), [any](const std::string& word) {
        return std::find(any.begin(), any.end(), word) != any.end();
    });
}

bool NameWords::holds(std::initializer_list<std::string_view> any) const {
    return std::any_of(any.begin(), any.end(),
                       [this](std::string_view part) { return together.find(part) != std::string::npos; });
}

}  // namespace anomalis::intake
