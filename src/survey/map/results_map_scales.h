#pragma once

#include <string>
#include <vector>

#include "chart/drawing_types.h"

// The colours and sizes of bodies on the map of results.
namespace anomalis::survey {

/// The depths that the colours run over, m.
struct DepthScale {
    double low = 0, high = 1;  ///< ends of the key
    bool logarithmic = false;
    bool under = false, over = false;  ///< there are depths beyond the ends, which have the ends' colours
    std::vector<double> ticks;         ///< from the low end to the high one
    /// Where a depth stands between the ends, held to 0 and 1.
    double part(double depth) const;
};

/// Round ends about all depths; of many, from the second to the ninety-eighth part in a hundred. Logarithmic
/// where these are more than 20 times apart. What is not finite is left out; 0 to 1 m where nothing is.
DepthScale depth_scale(std::vector<double> depths);

inline constexpr int depth_shades = 64;  ///< that are told apart
/// Bright for what is shallow, darker with depth as on charts of the sea; grey for a depth that nobody knows.
chart::Colour depth_colour(double depth, const DepthScale& scale);
chart::Colour depth_shade(int shade);

/// Susceptibilities or density contrasts as sizes: equal factors are equal steps of the radius.
struct SizeScale {
    double low = 1, high = 10;
    bool under = false, over = false;
    std::vector<double> samples;  ///< for the key, rising
    /// 0.4 at the low end and below to 1 at the high one and above, in steps that can be told apart; 0.4 for
    /// what is not known.
    double part(double value) const;
};
/// Of magnitudes; the ends as of depths, round. 1 to 10 where nothing is above 0.
SizeScale size_scale(std::vector<double> values);

/// "200", "1.5": as short as the number allows.
std::string scale_number(double value);

}  // namespace anomalis::survey
