#pragma once

#include <string>

#include "chart/detail/axis_marks.h"
#include "chart/detail/chart_properties.h"
#include "chart/detail/view_state.h"
#include "chart/drawing_device.h"

namespace anomalis::chart {

/// Where everything of a chart stands. Surface units.
struct ChartLayout {
    double width = 0.0;
    double height = 0.0;
    double left = 0.0;
    double right = 0.0;
    double top = 0.0;
    double bottom = 0.0;
    Rect plot;
    double x_scale = 0.0;  ///< surface units a transformed unit
    double y_scale = 0.0;
    double text_height = 0.0;   ///< of numbers
    double title_height = 0.0;  ///< of title and axis labels
    bool show_title = false;
    bool show_x_label = false;
    bool valid = false;  ///< false when there is no room for a plot of 2 pixels, no finite scale, or a
                         ///< surface longer than `largest_surface`

    bool operator==(const ChartLayout&) const = default;
    /// From transformed units to the surface and back.
    Point to_surface(const AxisRange& x, const AxisRange& y, Point transformed) const {
        return {(transformed.x - x.view.low) * x_scale + plot.x_low,
                (transformed.y - y.view.low) * y_scale + plot.y_low};
    }
    Point to_world(const AxisRange& x, const AxisRange& y, Point surface) const {
        return {(surface.x - plot.x_low) / x_scale + x.view.low,
                (surface.y - plot.y_low) / y_scale + y.view.low};
    }
};

/// The numbers of each axis may stand anywhere on the surface, inside the frame they keep clear of it.
NumberRoom x_number_room(const ChartProperties& properties, const ChartLayout& layout);
NumberRoom y_number_room(const ChartProperties& properties, const ChartLayout& layout);

/// Margins, plot and scales. The room of the Y numbers is measured over those of the full range and of the
/// view, whichever are wider, and is never below the `number_room` of the properties, so that the plot does
/// not move sideways during a pan. When there is no room the X label is dropped first, then the title. The
/// plot is cut at the surface.
ChartLayout lay_out(const ChartProperties& properties, const AxisRange& x, const AxisRange& y, double width,
                    double height, const DrawingDevice& measure);

/// As wide as a number of the Y axis can become at any zoom of this range. Surface units.
double widest_number_at_any_zoom(const ChartProperties& properties, const AxisRange& y,
                                 const DrawingDevice& measure);

/// The scales of a layout for other views on the same plot.
void take_scales(ChartLayout& layout, const AxisRange& x, const AxisRange& y);

}  // namespace anomalis::chart
