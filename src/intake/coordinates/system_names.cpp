#include "intake/coordinates/system_names.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <utility>

namespace anomalis::intake {

namespace {

enum class Kind { letter, digit, other };

Kind kind_of(char c) {
    const auto byte = static_cast<unsigned char>(c);
    if (std::isdigit(byte) != 0) return Kind::digit;
    // Bytes of UTF-8 belong to words.
    return std::isalpha(byte) != 0 || byte >= 0x80 ? Kind::letter : Kind::other;
}

/// Letters and digits apart, but for the hemisphere of a zone: "54S" and "54 S" are one word.
std::vector<std::string> split(const std::string& name) {
    std::vector<std::string> words;
    Kind before = Kind::other;
    for (const char c : name) {
        const Kind kind = kind_of(c);
        if (kind != Kind::other) {
            if (kind != before) words.emplace_back();
            words.back() += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        }
        before = kind;
    }
    return words;
}

struct Phrase {
    std::vector<std::string> said, meant;
};

/// Long forms of names that the dataset shortens.
const std::vector<Phrase>& phrases() {
    static const std::vector<Phrase> all{{{"map", "grid", "of", "australia"}, {"mga"}},
                                         {{"australian", "map", "grid"}, {"amg"}},
                                         {{"universal", "transverse", "mercator"}, {"utm"}},
                                         {{"world", "geodetic", "system"}, {"wgs"}},
                                         {{"wgs", "1984"}, {"wgs", "84"}},
                                         {{"gda", "1994"}, {"gda", "94"}},
                                         {{"agd", "1966"}, {"agd", "66"}},
                                         {{"agd", "1984"}, {"agd", "84"}},
                                         {{"nad", "1983"}, {"nad", "83"}},
                                         {{"nad", "1927"}, {"nad", "27"}},
                                         {{"north", "american", "datum"}, {"nad"}},
                                         {{"geocentric", "datum", "of", "australia"}, {"gda"}}};
    return all;
}

void shorten(std::vector<std::string>& words, const Phrase& phrase) {
    const auto found = std::search(words.begin(), words.end(), phrase.said.begin(), phrase.said.end());
    if (found == words.end()) return;
    const auto place = words.erase(found, found + static_cast<std::ptrdiff_t>(phrase.said.size()));
    words.insert(place, phrase.meant.begin(), phrase.meant.end());
}

/// How many of the words stand in the name.
std::size_t shared_words(const std::vector<std::string>& words, const std::vector<std::string>& name) {
    return static_cast<std::size_t>(std::count_if(words.begin(), words.end(), [&](const std::string& word) {
        return std::find(name.begin(), name.end(), word) != name.end();
    }));
}

struct Candidate {
    std::size_t shared = 0, length = 0;
    const SystemName* system = nullptr;

    /// More words in common first, then the shorter name.
    bool operator<(const Candidate& other) const {
        if (shared != other.shared) return shared > other.shared;
        if (length != other.length) return length < other.length;
        return system < other.system;
    }
};

}  // namespace

std::vector<std::string> name_words(const std::string& name) {
    std::vector<std::string> words = split(name);
    for (const Phrase& phrase : phrases()) shorten(words, phrase);
    for (std::size_t i = 1; i < words.size(); ++i) {
        const bool zone = kind_of(words[i - 1].front()) == Kind::digit;
        if (!zone || (words[i] != "s" && words[i] != "n")) continue;
        words[i - 1] += words[i];
        words.erase(words.begin() + static_cast<std::ptrdiff_t>(i));
    }
    return words;
}

NameSearch search_names(const std::string& name, const std::vector<SystemName>& systems, std::size_t most) {
    const std::vector<std::string> words = name_words(name);
    std::vector<Candidate> candidates;
    std::size_t whole = 0;
    for (const SystemName& system : systems) {
        if (system.words == words) return {system, {}};
        const std::size_t shared = shared_words(words, system.words);
        if (shared == words.size()) ++whole;
        if (2 * shared > words.size()) candidates.push_back({shared, system.words.size(), &system});
    }
    std::sort(candidates.begin(), candidates.end());
    NameSearch search;
    if (whole == 1 && words.size() > 1) {
        search.found = *candidates.front().system;
        return search;
    }
    for (std::size_t i = 0; i < std::min(most, candidates.size()); ++i)
        search.near.push_back(*candidates[i].system);
    return search;
}

}  // namespace anomalis::intake
