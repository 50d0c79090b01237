#pragma once

#include <optional>

#include "chart/detail/axis_transform.h"
#include "chart/detail/chart_properties.h"

namespace anomalis::chart {

struct Interval {
    double low = 0.0;
    double high = 0.0;
    double span() const { return high - low; }
    bool operator==(const Interval&) const = default;
};

/// The deepest zoom of an axis: beyond it the anchor of a step is lost in rounding.
inline constexpr double deepest_zoom = 1e4;
/// One step of the wheel or of a drag changes the span by this factor.
inline constexpr double zoom_step_factor = 1.1;

/// The window of one axis: limits in user units, the rest in transformed units.
struct AxisRange {
    Interval limits{unset_limit, unset_limit};
    Interval full{unset_limit, unset_limit};
    Interval view{unset_limit, unset_limit};
    double zoom = 1.0;    ///< full span over view span
    double centre = 0.5;  ///< of the view, as a fraction of the full range
    double tick_interval = 1.0;

    /// Takes new limits into the full range: unset, reversed or unusable ones become those of the data
    /// (`data`, transformed; none: 0 to 1). An active zoom keeps its window as far as the new range allows.
    void update(const AxisProperties& axis, const std::optional<Interval>& data, bool zoom_enabled);
    /// Puts the view at `middle` with its span times `span_factor`, moved and cut to stay in the full range.
    void place(double span_factor, double middle);
    /// The view that has this zoom and centre.
    void set_zoom(double new_zoom, double new_centre);
    void clear_zoom();
    bool zoomed() const { return zoom != 1.0; }
    bool operator==(const AxisRange&) const = default;
    /// The interval between ticks: the property's, or on a zoomed view a finer one that suits it.
    double view_tick_interval() const;

  private:
    void keep_inside(Interval window);
};

}  // namespace anomalis::chart
