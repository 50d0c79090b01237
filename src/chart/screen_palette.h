#pragma once

#include "chart/drawing_types.h"

namespace anomalis::chart {

/// The colours of a dark desktop, in which a chart is shown on screen. What a host sets stays as it is, and
/// pictures, sheets and captured charts have it so.
struct ScreenPalette {
    Colour ground = black;  ///< stands for white
    Colour ink = white;     ///< stands for black
    bool operator==(const ScreenPalette&) const = default;
};

/// A colour of lines, texts and tints as it is shown. White becomes the ground, black the ink, what lies
/// between lies between them; hues keep their hue and are as well seen as on white, up to 3 : 1.
Colour shown_ink(const ScreenPalette& palette, Colour colour);
/// A colour that fills an outline: it stays, so that a body is known by it, but for paper.
Colour shown_fill(const ScreenPalette& palette, Colour colour);

}  // namespace anomalis::chart
