#pragma once

#include <optional>

#include <QImage>
#include <QPalette>
#include <QString>

namespace anomalis {
struct ModelBody;
struct Workspace;
}  // namespace anomalis

namespace anomalis::window {

/// Pixels; whole ones at 125 and 150 % too.
inline constexpr QSize sketch_size{260, 196};

/// What a parameter of the body is, drawn for a screen of so many device pixels a pixel, in the colours of
/// tips. A null image for a parameter without a sketch.
QImage sketch_picture(const Workspace& workspace, const ModelBody& body, int param_code,
                      const QPalette& palette, double pixel_ratio);

/// The sketch over the words of a tip, as rich text; the words as they are where there is no sketch.
QString sketch_tip(const Workspace& workspace, const ModelBody* body, int param_code, const QString& words,
                   const QPalette& palette, double pixel_ratio);

}  // namespace anomalis::window
