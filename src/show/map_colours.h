#pragma once

#include <string>

#include "chart/drawing_types.h"

namespace anomalis::intake {
struct SurveyIndex;
}  // namespace anomalis::intake

namespace anomalis::show {

/// The values that the colours of a map run over.
struct MapColours {
    double low = 0, high = 1;
    std::string unit;  ///< "nT", "mGal"; "" where no place has a value
    bool cut = false;  ///< there are values beyond the ends
};

/// From the second to the ninety-eighth part in a hundred of all values, lest a few spikes take the whole
/// ramp; the ends themselves where these are one value.
MapColours map_colours(const intake::SurveyIndex& index);

inline constexpr int ramp_shades = 64;                    ///< that are told apart
inline constexpr chart::Colour no_value_grey = 0xB4B4B4;  ///< a place without a reading
/// The colour of a shade, 0 the lowest.
chart::Colour ramp_shade(int shade);
/// The colour of a value in the unit of the map; NaN for none.
chart::Colour map_colour(float value, const MapColours& colours);

}  // namespace anomalis::show
