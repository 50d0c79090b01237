#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace anomalis::intake {

/// A name as words in lower case: "RadAlt" is "rad alt", "GDA94LAT" is "lat", "EASTMGA" is "east". Names of
/// datums and units are left out; numbers stay apart.
struct NameWords {
    explicit NameWords(std::string_view name);

    bool has(std::initializer_list<std::string_view> any) const;
    /// In the words written together.
    bool holds(std::initializer_list<std::string_view> any) const;

    std::vector<std::string> words;
    std::string together;  ///< without numbers
};

}  // namespace anomalis::intake
