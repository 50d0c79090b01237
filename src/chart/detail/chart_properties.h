#pragma once

#include <cmath>
#include <string>

#include "chart/detail/axis_transform.h"
#include "chart/drawing_types.h"

namespace anomalis::chart {

/// The properties of one axis. The low margin is at the left or bottom, the high one at the right or top.
struct AxisProperties {
    double min = unset_limit;
    double max = unset_limit;
    double tick_interval = 1.0;
    AxisTransform scale;
    int position = 2;  ///< 0 the low side, 1 the high side, 2 both
    std::string label;
    float low_margin = 0.0F;
    float high_margin = 0.0F;

    bool operator==(const AxisProperties&) const = default;
    /// A margin that is no number is none.
    double drawn_low_margin() const { return std::isfinite(low_margin) ? low_margin : 0.0; }
    double drawn_high_margin() const { return std::isfinite(high_margin) ? high_margin : 0.0; }
    bool on_low_side() const { return position == 0 || position == 2; }
    bool on_high_side() const { return position == 1 || position == 2; }
};

struct ChartProperties {
    Colour back_colour = button_face;
    Colour fore_colour = button_text;
    bool enabled = true;
    Font font;
    Font title_font;
    int back_style = 1;
    int border_style = 1;
    int chart_type = 1;
    bool display_legend = false;
    bool display_axes = true;
    bool display_border = true;
    bool zoom_enabled = true;
    bool plot_points = false;
    int labelling_location = 0;
    std::string title;
    AxisProperties x;
    AxisProperties y;
    double data_null = -999.0;
    int marker_size = 35;
    // Of the chart on show, never persisted.
    bool light_grid = false;
    double number_room = 0.0;  ///< that the numbers of the Y axis have at least, surface units

    bool operator==(const ChartProperties&) const = default;
    bool numbers_outside() const { return labelling_location == 0 && display_axes; }
};

}  // namespace anomalis::chart
