#pragma once

#include <cstdint>

#include <QColor>
#include <QPalette>

class QApplication;
class QWidget;

namespace anomalis::window {

/// The quiet look of the window: Fusion with one accent colour, light or dark as the desktop is.
void apply_look(QApplication& application);

/// The window's own palette for a light or a dark desktop.
QPalette look_palette(bool dark);

/// True when the palette has light text on a dark ground.
bool is_dark(const QPalette& palette);

/// A colour as workspaces and charts keep it: blue, green, red bytes, high to low.
QColor shown_colour(std::int32_t colour);

/// Text that stands back (units, captions) with at least 4.5 : 1 contrast on the window's ground.
QColor quiet_text(const QPalette& palette);

/// The tint of a quantity (0 X to 5 Grav) behind its column in the head of the data file, and a colour of
/// the same hue that can be read as text. The hues differ for colour-blind eyes as well.
QColor column_tint(const QPalette& palette, int quantity);

/// Makes a label one of units and captions.
void make_quiet(QWidget& label);

}  // namespace anomalis::window
