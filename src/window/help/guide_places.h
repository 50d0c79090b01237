#pragma once

#include <span>

#include <QString>

class QWidget;

namespace anomalis::window {

/// Where the guide speaks of what is seen: `heading` is that of a chapter or section of docs/guide.md.
struct GuidePlace {
    const char* name;  ///< how the object names begin
    const char* heading;
};

/// More special names stand before those that they begin with.
std::span<const GuidePlace> guide_places();

/// The heading for a widget: that of its own name, or of the nearest one around it; never empty.
QString guide_heading(const QWidget* widget);

/// What stands in the window without a tip of its own; "" for everything else.
QString explanation_of(const QWidget& widget);

}  // namespace anomalis::window
