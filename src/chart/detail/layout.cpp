#include "chart/detail/layout.h"

#include <algorithm>
#include <cmath>

#include "chart/detail/tick_text.h"
#include "chart/tick_rule.h"

namespace anomalis::chart {

namespace {

constexpr double smallest_plot = 2.0 * units_per_screen_pixel;

bool has_surface(double width, double height) {
    return width >= smallest_plot && width <= largest_surface && height >= smallest_plot &&
           height <= largest_surface;
}

/// The plot has no part beyond the surface, whatever margins below 0 a host asks for.
Interval cut_to_surface(double low_room, double high_room, double size) {
    return {std::max(low_room, 0.0), size - std::max(high_room, 0.0)};
}

double widest_number(const ChartProperties& properties, const AxisRange& range, const ChartLayout& layout,
                     const DrawingDevice& measure) {
    NumberRoom room = y_number_room(properties, layout);
    room.width_of = [&](const std::string& text) { return measure.measure(text, properties.font).width; };
    const double scale = layout.plot.height() / range.view.span();
    double widest = 0.0;
    for (const AxisNumber& number :
         make_marks(range, properties.y.scale, scale, layout.plot.y_low, room).numbers)
        widest = std::max(widest, number.width);
    return widest;
}

void lay_out_vertically(ChartLayout& layout, const ChartProperties& properties) {
    const AxisProperties& x = properties.x;
    const double m = layout.text_height;
    const double label = layout.show_x_label ? 1.5 * layout.title_height : 0.0;
    const double numbers = properties.numbers_outside() ? 0.5 * m + 1.5 * m : 0.0;
    layout.top = properties.y.drawn_high_margin() + (layout.show_title ? 1.5 * layout.title_height : 0.0);
    layout.bottom = properties.y.drawn_low_margin();
    if (x.on_high_side()) layout.top += label + numbers;
    if (x.on_low_side()) layout.bottom += label + numbers;
    const Interval rows = cut_to_surface(layout.bottom, layout.top, layout.height);
    layout.plot.y_low = rows.low;
    layout.plot.y_high = rows.high;
}

void lay_out_horizontally(ChartLayout& layout, const ChartProperties& properties, const AxisRange& range,
                          const DrawingDevice& measure) {
    const AxisProperties& y = properties.y;
    double side = 0.0;
    if (properties.display_axes && !y.label.empty()) side += 1.5 * layout.title_height;
    if (properties.numbers_outside()) {
        AxisRange whole = range;
        whole.clear_zoom();
        side += std::max({widest_number(properties, range, layout, measure),
                          widest_number(properties, whole, layout, measure), properties.number_room}) +
                layout.text_height;
    }
    layout.left = properties.x.drawn_low_margin() + (y.on_low_side() ? side : 0.0);
    layout.right = properties.x.drawn_high_margin() + (y.on_high_side() ? side : 0.0);
    const Interval columns = cut_to_surface(layout.left, layout.right, layout.width);
    layout.plot.x_low = columns.low;
    layout.plot.x_high = columns.high;
}

/// The text with every digit in place of the widest one.
std::string with_widest_digits(std::string text, const ChartProperties& properties,
                               const DrawingDevice& measure) {
    char widest = '0';
    double width = 0.0;
    for (char digit = '0'; digit <= '9'; ++digit) {
        const double own = measure.measure(std::string(1, digit), properties.font).width;
        if (own > width) widest = digit;
        width = std::max(width, own);
    }
    for (char& c : text)
        if (c >= '0' && c <= '9') c = widest;
    return text;
}

}  // namespace

NumberRoom x_number_room(const ChartProperties& properties, const ChartLayout& layout) {
    NumberRoom room;
    room.height = layout.text_height;
    room.sideways = true;
    room.along = {0.0, layout.width};
    if (properties.labelling_location == 1) room.along = {layout.plot.x_low, layout.plot.x_high};
    return room;
}

NumberRoom y_number_room(const ChartProperties& properties, const ChartLayout& layout) {
    const double m = layout.text_height;
    NumberRoom room;
    room.height = m;
    room.along = {0.0, layout.height};
    if (properties.labelling_location == 1)
        room.along = {layout.plot.y_low + m / 2.0, layout.plot.y_high - m / 2.0};
    return room;
}

double widest_number_at_any_zoom(const ChartProperties& properties, const AxisRange& y,
                                 const DrawingDevice& measure) {
    const AxisTransform& scale = properties.y.scale;
    const double deepest = properties.zoom_enabled ? deepest_zoom : 1.0;
    const double finest = std::min(y.tick_interval, tick_interval(0.0, y.full.span() / deepest));
    double widest = 0.0;
    for (const double end : {y.full.low, y.full.high}) {
        const double value = std::round(end / finest) * finest;
        const std::string text =
            scale.logarithmic() ? tick_text(value, scale, "0") : interval_text(value, finest);
        widest = std::max(
            widest, measure.measure(with_widest_digits(text, properties, measure), properties.font).width);
    }
    return widest;
}

ChartLayout lay_out(const ChartProperties& properties, const AxisRange& x, const AxisRange& y, double width,
                    double height, const DrawingDevice& measure) {
    ChartLayout layout;
    layout.width = width;
    layout.height = height;
    if (!has_surface(width, height)) return layout;
    layout.text_height = measure.measure("M", properties.font).height();
    layout.title_height = measure.measure("M", properties.title_font).height();
    layout.show_title = !properties.title.empty();
    layout.show_x_label = properties.display_axes && !properties.x.label.empty();

    lay_out_vertically(layout, properties);
    if (layout.plot.height() < smallest_plot && layout.show_x_label) {
        layout.show_x_label = false;
        lay_out_vertically(layout, properties);
    }
    if (layout.plot.height() < smallest_plot && layout.show_title) {
        layout.show_title = false;
        lay_out_vertically(layout, properties);
    }
    if (!(layout.plot.height() >= smallest_plot)) return layout;
    lay_out_horizontally(layout, properties, y, measure);
    if (!(layout.plot.width() >= smallest_plot)) return layout;

    take_scales(layout, x, y);
    return layout;
}

void take_scales(ChartLayout& layout, const AxisRange& x, const AxisRange& y) {
    layout.x_scale = layout.plot.width() / x.view.span();
    layout.y_scale = layout.plot.height() / y.view.span();
    layout.valid = std::isfinite(layout.x_scale) && std::isfinite(layout.y_scale) && layout.x_scale > 0.0 &&
                   layout.y_scale > 0.0;
}

}  // namespace anomalis::chart
