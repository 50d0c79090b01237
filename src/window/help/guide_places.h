#pragma once

#include <span>

#include <QString>

class QWidget;

namespace anomalis::window {

/// A page or a section of the guide.
struct GuideSpot {
    const char* page;     ///< "reference/fitting#limits"
    const char* heading;  ///< "Limits"
};

/// Where the guide speaks of what is seen.
struct GuidePlace {
    const char* name;  ///< how the object names begin
    GuideSpot spot;
};

/// More special names stand before those that they begin with.
std::span<const GuidePlace> guide_places();

/// The spot for a widget: that of its own name, or of the nearest one around it.
const GuideSpot& guide_spot(const QWidget* widget);

/// What stands in the window without a tip of its own; "" for everything else.
QString explanation_of(const QWidget& widget);

}  // namespace anomalis::window
