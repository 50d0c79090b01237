#include "chart/detail/failure_notes.h"

#include <algorithm>
#include <utility>

namespace anomalis::chart {

void FailureNotes::add(const std::string& text) {
    if (std::find(texts_.begin(), texts_.end(), text) == texts_.end()) texts_.push_back(text);
}

std::vector<std::string> FailureNotes::take() {
    return std::exchange(texts_, {});
}

}  // namespace anomalis::chart
