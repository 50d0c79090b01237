#include "edit/colour_ramp.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace anomalis::edit {

namespace {

struct Shade {
    double red, green, blue;
};

/// Every tenth of viridis; between them the channels run straight.
constexpr std::array<Shade, 11> tenths{{{68, 1, 84},
                                        {72, 36, 117},
                                        {65, 68, 135},
                                        {53, 95, 141},
                                        {42, 120, 142},
                                        {33, 145, 140},
                                        {34, 168, 132},
                                        {68, 191, 112},
                                        {122, 209, 81},
                                        {189, 223, 38},
                                        {253, 231, 37}}};

}  // namespace

std::int32_t ramp_colour(double part) {
    const double place = std::clamp(part, 0.0, 1.0) * (tenths.size() - 1);
    const auto below = std::min(static_cast<std::size_t>(place), tenths.size() - 2);
    const double t = place - static_cast<double>(below);
    const auto mixed = [&](double Shade::*channel) {
        const double low = tenths[below].*channel;
        return static_cast<std::int32_t>(std::lround(low + (tenths[below + 1].*channel - low) * t));
    };
    return mixed(&Shade::blue) << 16 | mixed(&Shade::green) << 8 | mixed(&Shade::red);
}

}  // namespace anomalis::edit
