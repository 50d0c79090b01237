#pragma once

#include <optional>

#include "chart/screen_palette.h"

class QPalette;

namespace anomalis::chart {

/// Whether charts on screen follow a dark desktop; true until it is set. As the style and the palette it is
/// the application's; all charts there are and those to come have it at once.
void follow_dark_desktop(bool follow);
bool follows_dark_desktop();

/// The colours of charts on a desktop of this palette; none where they are shown as they are.
std::optional<ScreenPalette> screen_palette(const QPalette& palette);

}  // namespace anomalis::chart
