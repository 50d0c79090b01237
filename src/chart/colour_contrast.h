#pragma once

#include "chart/drawing_types.h"

namespace anomalis::chart {

/// What a line or a sign needs against its ground to be seen (WCAG 2.1, success criterion 1.4.11).
inline constexpr double least_contrast = 3.0;

/// The relative luminance of a colour, 0 black to 1 white (WCAG 2.1, sRGB).
double luminance(Colour colour);
/// The contrast of two colours, 1 to 21 (WCAG 2.1), whichever comes first.
double contrast(Colour a, Colour b);
/// `share` (0 to 1) of `b` in `a`, byte by byte.
Colour mixed(Colour a, Colour b, double share);
/// The colour itself where its contrast with the ground is `least`, else with as much of `towards` in it as
/// that takes; `towards` itself where nothing less will do.
Colour seen_on(Colour ground, Colour colour, Colour towards, double least = least_contrast);

}  // namespace anomalis::chart
