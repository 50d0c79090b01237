#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

// How far apart colours are for people with and without all three kinds of cones. Colours are blue, green,
// red bytes, high to low.
namespace anomalis {

struct Linear {
    double red, green, blue;
};

inline double linear(std::int32_t colour, int shift) {
    const double part = (colour >> shift & 0xFF) / 255.0;
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

inline Linear linear(std::int32_t colour) {
    return {linear(colour, 0), linear(colour, 8), linear(colour, 16)};
}

/// What people see who lack the middle (deuteranopia) or the long (protanopia) cones: H. Brettel, F. Vienot
/// and J. Mollon (1997) in the one-plane form of Vienot, Brettel and Mollon (1999), linear light.
inline Linear without_middle(const Linear& c) {
    return {0.29275 * c.red + 0.70725 * c.green, 0.29275 * c.red + 0.70725 * c.green,
            -0.02234 * c.red + 0.02234 * c.green + c.blue};
}
inline Linear without_long(const Linear& c) {
    return {0.11238 * c.red + 0.88762 * c.green, 0.11238 * c.red + 0.88762 * c.green,
            0.00401 * c.red - 0.00401 * c.green + c.blue};
}

/// CIE 1976 L*a*b*, D65.
inline std::array<double, 3> lab(const Linear& c) {
    const auto f = [](double t) { return t > 0.008856 ? std::cbrt(t) : 7.787 * t + 16.0 / 116; };
    const double x = f((0.4124 * c.red + 0.3576 * c.green + 0.1805 * c.blue) / 0.95047);
    const double y = f(0.2126 * c.red + 0.7152 * c.green + 0.0722 * c.blue);
    const double z = f((0.0193 * c.red + 0.1192 * c.green + 0.9505 * c.blue) / 1.08883);
    return {116 * y - 16, 500 * (x - y), 200 * (y - z)};
}

inline double difference(const Linear& left, const Linear& right) {
    const auto a = lab(left), b = lab(right);
    return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

/// For everybody: the least over the three kinds of sight. 2.3 is just seen.
inline double least_difference(std::int32_t left, std::int32_t right) {
    const Linear a = linear(left), b = linear(right);
    return std::min({difference(a, b), difference(without_middle(a), without_middle(b)),
                     difference(without_long(a), without_long(b))});
}

}  // namespace anomalis
