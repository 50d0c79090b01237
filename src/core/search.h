#pragma once

#include <algorithm>
#include <span>

namespace anomalis {

/// Bisection: the position, numbered from 1, of the first entry not below `value`; the count when there
/// is none. So "position - 1" and "position" always bracket a value between entries. Empty gives 0.
template <class T, class Value>
int search_sorted(std::span<T> sorted, Value value) {
    const auto found = std::lower_bound(sorted.begin(), sorted.end(), value);
    const auto position = static_cast<int>(found - sorted.begin()) + 1;
    return std::min(position, static_cast<int>(sorted.size()));
}

}  // namespace anomalis
