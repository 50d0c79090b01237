#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// What a name that is not known was meant to be.
namespace anomalis {

/// ASCII letters in lower case.
std::string lower_case(std::string_view text);

/// How many letters must be put in, taken out or changed (Levenshtein 1966).
std::size_t letters_apart(std::string_view a, std::string_view b);

/// Those of `known` that are most like `name`, best first, at most `most`. Case, and the order of words that
/// "-", "_", "." or blanks part ("mag_noise", "noise-mag"), count for nothing, a word that is left out for
/// one letter.
std::vector<std::string> nearest_names(std::string_view name, std::span<const std::string> known,
                                       std::size_t most = 1);

}  // namespace anomalis
