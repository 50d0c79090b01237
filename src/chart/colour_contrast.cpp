#include "chart/colour_contrast.h"

#include <algorithm>
#include <cmath>

namespace anomalis::chart {

namespace {

constexpr double most_of_byte = 255.0;

/// From an sRGB byte to linear light.
double linear(int byte) {
    const double v = byte / most_of_byte;
    return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
}

int between(int a, int b, double share) {
    return static_cast<int>(std::lround(a + (b - a) * share));
}

}  // namespace

double luminance(Colour colour) {
    return 0.2126 * linear(red_of(colour)) + 0.7152 * linear(green_of(colour)) +
           0.0722 * linear(blue_of(colour));
}

double contrast(Colour a, Colour b) {
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

Colour mixed(Colour a, Colour b, double share) {
    return colour_of(between(red_of(a), red_of(b), share), between(green_of(a), green_of(b), share),
                     between(blue_of(a), blue_of(b), share));
}

Colour seen_on(Colour ground, Colour colour, Colour towards, double least) {
    constexpr int steps = 32;
    for (int i = 0; i < steps; ++i) {
        const Colour tried = mixed(colour, towards, static_cast<double>(i) / steps);
        if (contrast(tried, ground) >= least) return tried;
    }
    return towards;
}

}  // namespace anomalis::chart
