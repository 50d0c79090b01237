#pragma once

#include <string>
#include <utility>
#include <vector>

namespace anomalis::manual {

/// What stands behind an option or in the place of an argument, for whoever reads help or completes a line.
struct ValueForm {
    enum class Kind { word, file, folder };
    std::string name = "TEXT";  ///< "A:B", "FILE"
    Kind kind = Kind::word;
    std::vector<std::string> endings{};  ///< of the files that are meant, such as ".axm"; none: any file
    std::vector<std::string> choices{};  ///< words that are offered; one that ends with "=" goes on
};

inline ValueForm word(std::string name) {
    return {.name = std::move(name)};
}
inline ValueForm file(std::string name, std::vector<std::string> endings = {}) {
    return {.name = std::move(name), .kind = ValueForm::Kind::file, .endings = std::move(endings)};
}
inline ValueForm folder(std::string name) {
    return {.name = std::move(name), .kind = ValueForm::Kind::folder};
}
/// "a|b|c" where they are few, else `many`.
ValueForm one_of(std::vector<std::string> choices, const std::string& many);

}  // namespace anomalis::manual
