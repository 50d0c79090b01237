#include "chart/detail/axis_painter.h"

#include <algorithm>

#include "chart/detail/tick_text.h"
#include "chart/detail/ticks.h"

namespace anomalis::chart {

namespace {

constexpr double tick_length = 60.0;
constexpr Pen tick_pen{black, 1.0, LineStyle::solid};

enum class Side { low, high };

class AxisPainter {
  public:
    AxisPainter(const ChartProperties& properties, const ChartLayout& layout, const AxisRange& x,
                const AxisRange& y, Canvas& canvas)
        : properties_(properties), layout_(layout), plot_(layout.plot), x_(x), y_(y), canvas_(canvas) {}

    void paint() {
        if (properties_.display_border) canvas_.rectangle(plot_, black, no_colour, 1.0);
        const double middle = (plot_.x_low + plot_.x_high) / 2.0;
        double top = layout_.height;
        if (layout_.show_title) {
            title_text({middle, top}, 0.0, -0.5, -1.25, properties_.title);
            top -= 1.5 * layout_.title_height;
        }
        if (!properties_.display_axes) return;
        if (layout_.show_x_label) {
            const AxisProperties& x = properties_.x;
            if (x.on_high_side()) title_text({middle, top}, 0.0, -0.5, -1.5, x.label);
            if (x.on_low_side()) title_text({middle, 0.0}, 0.0, -0.5, 0.0, x.label);
        }
        if (properties_.x.on_high_side()) x_ticks(Side::high);
        if (properties_.x.on_low_side()) x_ticks(Side::low);
        y_titles();
        if (properties_.y.on_low_side()) y_ticks(Side::low, true);
        // Numbers inside stand at the left whichever side is asked; a second pass would only thicken them.
        const bool numbered = properties_.labelling_location != 1 || !properties_.y.on_low_side();
        if (properties_.y.on_high_side()) y_ticks(Side::high, numbered);
    }

  private:
    void title_text(Point at, double angle, double along, double across, const std::string& words) {
        canvas_.text(at, angle, along, across, words, FontRole::title, properties_.fore_colour);
    }

    /// The left title reads upward, the right one downward; beside a low plot they move to where they are
    /// whole.
    void y_titles() {
        if (properties_.y.label.empty()) return;
        const double half = canvas_.measure(properties_.y.label, FontRole::title).width / 2.0;
        const double middle = std::max(std::min((plot_.y_low + plot_.y_high) / 2.0, layout_.height - half),
                                       std::min(half, layout_.height / 2.0));
        if (properties_.y.on_low_side()) title_text({0.0, middle}, 90.0, -0.5, -1.5, properties_.y.label);
        if (properties_.y.on_high_side())
            title_text({layout_.width, middle}, -90.0, -0.5, -1.5, properties_.y.label);
    }

    /// A number at its lower left corner, moved inward where it would leave the surface or `across`.
    void number_text(double left, double bottom, double width, const std::string& words, Interval across) {
        left = std::max(across.low, std::min(left, across.high - width));
        bottom = std::max(0.0, std::min(bottom, layout_.height - layout_.text_height));
        canvas_.text({left, bottom}, 0.0, 0.0, 0.0, words, FontRole::chart, properties_.fore_colour);
    }

    /// Where the numbers of the X axis may stand. Those at the top touch the frame, so at its corners they
    /// end short of a number of the Y axis.
    Interval number_span(Side side) const {
        Interval span{0.0, layout_.width};
        if (side == Side::low || !properties_.numbers_outside()) return span;
        const double m = layout_.text_height;
        const std::vector<Tick> ticks =
            make_ticks(y_.view, y_.view_tick_interval(), layout_.y_scale, plot_.y_low);
        if (ticks.empty() || ticks.back().position <= plot_.y_high - m / 2.0) return span;
        if (properties_.y.on_low_side()) span.low = plot_.x_low - m / 4.0;
        if (properties_.y.on_high_side()) span.high = plot_.x_high + m / 4.0;
        return span;
    }

    void x_ticks(Side side) {
        const double m = layout_.text_height;
        const double interval = x_.view_tick_interval();
        const std::string format = tick_format(interval);
        const double frame = side == Side::high ? plot_.y_high : plot_.y_low;
        const double inward = side == Side::high ? -tick_length : tick_length;
        const bool inside = properties_.labelling_location == 1;
        // Outside, top numbers touch the frame and bottom ones keep half a height; inside it is the reverse.
        const double across = side == Side::high ? (inside ? -1.5 : 0.0) : (inside ? 0.5 : -1.5);
        const Interval across_span = number_span(side);
        LabelRoom room(plot_.x_low);
        for (const Tick& tick : make_ticks(x_.view, interval, layout_.x_scale, plot_.x_low)) {
            canvas_.line({tick.position, frame}, {tick.position, frame + inward}, tick_pen);
            const std::string label = tick_text(tick.value, properties_.x.scale, format);
            const double width = canvas_.measure(label, FontRole::chart).width;
            const double begin = tick.position - width / 2.0;
            const double end = tick.position + width / 2.0;
            if (inside && (begin < plot_.x_low || end > plot_.x_high)) continue;
            if (room.take(begin, end + m)) number_text(begin, frame + across * m, width, label, across_span);
        }
    }

    void y_ticks(Side side, bool numbered) {
        const double m = layout_.text_height;
        const double interval = y_.view_tick_interval();
        const std::string format = tick_format(interval);
        const double frame = side == Side::high ? plot_.x_high : plot_.x_low;
        const double inward = side == Side::high ? -tick_length : tick_length;
        const bool inside = properties_.labelling_location == 1;
        LabelRoom room(plot_.y_low);
        for (const Tick& tick : make_ticks(y_.view, interval, layout_.y_scale, plot_.y_low)) {
            const double pos = tick.position;
            canvas_.line({frame, pos}, {frame + inward, pos}, tick_pen);
            if (!numbered || (inside && (pos < plot_.y_low + m || pos > plot_.y_high - m))) continue;
            if (!room.take(pos, pos + 2.0 * m)) continue;
            const std::string label = tick_text(tick.value, properties_.y.scale, format);
            const double width = canvas_.measure(label, FontRole::chart).width;
            double left = plot_.x_low + m / 2.0;
            if (!inside) left = side == Side::low ? frame - m / 2.0 - width : frame + m / 2.0;
            number_text(left, pos - m / 2.0, width, label, {0.0, layout_.width});
        }
    }

    const ChartProperties& properties_;
    const ChartLayout& layout_;
    const Rect& plot_;
    const AxisRange& x_;
    const AxisRange& y_;
    Canvas& canvas_;
};

}  // namespace

void paint_axes(const ChartProperties& properties, const ChartLayout& layout, const AxisRange& x,
                const AxisRange& y, Canvas& canvas) {
    AxisPainter(properties, layout, x, y, canvas).paint();
}

}  // namespace anomalis::chart
