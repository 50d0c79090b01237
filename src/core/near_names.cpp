#include "core/near_names.h"

#include <algorithm>
#include <cctype>
#include <numeric>
#include <utility>

namespace anomalis {

namespace {

constexpr std::size_t longest = 64;  // of a name that is compared letter by letter

/// Its words in lower case, in the order of the alphabet.
std::vector<std::string> words_of(std::string_view name) {
    std::vector<std::string> words(1);
    for (const char letter : lower_case(name.substr(0, longest)))
        if (std::string_view("-_. \t").find(letter) != std::string_view::npos)
            words.emplace_back();
        else
            words.back() += letter;
    std::ranges::sort(words);
    return words;
}

std::string joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) text += (text.empty() ? "" : "-") + word;
    return text;
}

/// From a name to one that is known; a word that it lacks is one change.
std::size_t changes(std::string_view name, std::string_view known) {
    const std::vector<std::string> first = words_of(name), second = words_of(known);
    std::size_t least =
        std::min(letters_apart(lower_case(name.substr(0, longest)), lower_case(known.substr(0, longest))),
                 letters_apart(joined(first), joined(second)));
    if (std::ranges::includes(second, first)) least = std::min(least, second.size() - first.size());
    return least;
}

}  // namespace

std::string lower_case(std::string_view text) {
    std::string lower(text);
    for (char& letter : lower) letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
    return lower;
}

std::size_t letters_apart(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t above = row[j];
            row[j] = std::min({row[j - 1] + 1, above + 1, diagonal + (a[i - 1] == b[j - 1] ? 0U : 1U)});
            diagonal = above;
        }
    }
    return row[b.size()];
}

std::vector<std::string> nearest_names(std::string_view name, std::span<const std::string> known,
                                       std::size_t most) {
    std::vector<std::pair<std::size_t, std::size_t>> order;  // changes, place in `known`
    for (std::size_t i = 0; i < known.size(); ++i) order.emplace_back(changes(name, known[i]), i);
    std::ranges::sort(order);
    std::vector<std::string> names;
    for (const auto& [count, place] : order)
        if (names.size() < most) names.push_back(known[place]);
    return names;
}

}  // namespace anomalis
