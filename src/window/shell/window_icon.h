#pragma once

#include <QIcon>

namespace anomalis::window {

/// The name of the desktop entry, by which Wayland and docks know whose a window is.
inline constexpr char desktop_entry[] = "org.anomalis.Anomalis";

/// The icon of the program in all sizes from 16 to 256 pixels, drawn from what the program brings: it needs
/// no theme and no installation. Up to 24 pixels a simpler drawing.
QIcon window_icon();

}  // namespace anomalis::window
