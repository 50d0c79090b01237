#include "chart/screen_palette.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "chart/colour_contrast.h"

namespace anomalis::chart {

namespace {

constexpr double white_byte = 255.0;

}  // namespace

/// Every colour is a pure hue with some black and some white in it; both are put in anew as ink and ground.
Colour shown_ink(const ScreenPalette& palette, Colour colour) {
    if (colour < 0) return colour;
    const std::array<int, 3> bytes{red_of(colour), green_of(colour), blue_of(colour)};
    const int least = std::ranges::min(bytes), most = std::ranges::max(bytes);
    const double paper = least / white_byte;
    const double pure = (most - least) / white_byte;
    const auto hue = [&](int byte) {
        return most == least ? 0
                             : static_cast<int>(std::lround(white_byte * (byte - least) / (most - least)));
    };
    const double inked = std::max(1.0 - paper, 1e-9);
    const Colour strong =
        mixed(palette.ink, colour_of(hue(bytes[0]), hue(bytes[1]), hue(bytes[2])), pure / inked);
    const Colour mapped = mixed(palette.ground, strong, 1.0 - paper);
    return seen_on(palette.ground, mapped, palette.ink, std::min(least_contrast, contrast(colour, white)));
}

Colour shown_fill(const ScreenPalette& palette, Colour colour) {
    return colour == white ? palette.ground : colour;
}

}  // namespace anomalis::chart
