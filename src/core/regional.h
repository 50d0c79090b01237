#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace anomalis {

/// Degrees of a regional: none, level, slope, bend, cubic.
inline constexpr std::int32_t no_regional = -1;
inline constexpr std::int32_t most_regional_degree = 3;

constexpr bool is_regional_degree(std::int32_t degree) {
    return degree >= no_regional && degree <= most_regional_degree;
}

/// A polynomial along the line, nT or mGal: the sum of coefficients[k] t^k with t the distance, centred and
/// scaled so that the fit window is -1 to 1.
struct Regional {
    std::int32_t degree = no_regional;
    double centre = 0;      ///< m along the profile
    double half_width = 1;  ///< m, above 0
    std::array<double, most_regional_degree + 1> coefficients{};

    double scaled(double distance) const { return (distance - centre) / half_width; }
    /// The value at a distance along the profile (m); 0 for no regional.
    double at(double distance) const {
        const double t = scaled(distance);
        double sum = 0;
        for (std::size_t k = coefficients.size(); k-- > 0;) sum = sum * t + coefficients[k];
        return degree == no_regional ? 0 : sum;
    }
    bool operator==(const Regional&) const = default;
};

}  // namespace anomalis
