#pragma once

#include <Eigen/Core>
#include <cstddef>
#include <span>

namespace anomalis::inversion {

/// The values of a vector or a column; of a matrix one column after the other.
template <class Vector>
auto span_of(Vector&& v) {
    return std::span(v.data(), static_cast<std::size_t>(v.size()));
}

/// A count or a place as Eigen numbers it.
inline Eigen::Index index_of(std::size_t i) {
    return static_cast<Eigen::Index>(i);
}

/// Whether all values are finite, asked of several at a time: of what is not, the difference from itself is
/// no number.
template <class Values>
bool all_finite(const Values& values) {
    return (values.array() - values.array()).sum() == 0;
}

}  // namespace anomalis::inversion
