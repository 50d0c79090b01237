#include "output/failure_note.h"

#include <algorithm>

#include "core/text.h"

namespace anomalis::output {

std::string failure_note(const std::vector<std::string>& failures) {
    constexpr std::size_t most_told = 5;
    if (failures.empty()) return {};
    const std::size_t told = std::min(failures.size(), most_told);
    std::string text;
    for (std::size_t i = 0; i < told; ++i) text += (i == 0 ? "" : "; ") + single_line(failures[i]);
    std::replace(text.begin(), text.end(), ',', ';');
    if (told < failures.size()) text += "; and " + std::to_string(failures.size() - told) + " more";
    return " [WITH FAILURES: " + text + "]";
}

}  // namespace anomalis::output
