#include "chart/detail/axis_painter.h"

#include <algorithm>
#include <cmath>

#include "chart/detail/axis_marks.h"

namespace anomalis::chart {

namespace {

constexpr double tick_length = 60.0;
constexpr double minor_tick_length = 30.0;
constexpr Pen tick_pen{black, 1.0, LineStyle::solid};
constexpr double grid_strength = 0.14;  // of the colour of the texts on the ground
constexpr const char* ellipsis = "\xE2\x80\xA6";

enum class Side { low, high };

/// A number where it stands on the surface.
struct PlacedNumber {
    Rect box;
    const AxisNumber* number;
    std::size_t order;  ///< of drawing
};

bool meet(const Rect& a, const Rect& b, double gap) {
    constexpr double rounding = 1e-6;
    return a.x_low - gap < b.x_high && b.x_low < a.x_high + gap && a.y_low + rounding < b.y_high &&
           b.y_low + rounding < a.y_high;
}

Colour mixed(Colour ground, Colour ink, double share) {
    const auto part = [&](int g, int i) { return static_cast<int>(std::lround(g + (i - g) * share)); };
    return colour_of(part(red_of(ground), red_of(ink)), part(green_of(ground), green_of(ink)),
                     part(blue_of(ground), blue_of(ink)));
}

class AxisPainter {
  public:
    AxisPainter(const ChartProperties& properties, const ChartLayout& layout, const AxisRange& x,
                const AxisRange& y, Canvas& canvas)
        : properties_(properties), layout_(layout), plot_(layout.plot), canvas_(canvas) {
        if (!properties.display_axes && !properties.light_grid) return;
        const auto width_of = [this](const std::string& text) {
            return canvas_.measure(text, FontRole::chart).width;
        };
        NumberRoom x_room = x_number_room(properties, layout);
        NumberRoom y_room = y_number_room(properties, layout);
        x_room.width_of = y_room.width_of = width_of;
        x_marks_ = make_marks(x, properties.x.scale, layout.x_scale, plot_.x_low, x_room);
        y_marks_ = make_marks(y, properties.y.scale, layout.y_scale, plot_.y_low, y_room);
    }

    void frame() {
        if (properties_.display_border) canvas_.rectangle(plot_, black, no_colour, 1.0);
        if (!properties_.display_axes) return;
        if (properties_.x.on_high_side()) x_ticks(plot_.y_high, -1.0);
        if (properties_.x.on_low_side()) x_ticks(plot_.y_low, 1.0);
        if (properties_.y.on_low_side()) y_ticks(plot_.x_low, 1.0);
        if (properties_.y.on_high_side()) y_ticks(plot_.x_high, -1.0);
    }

    void words() {
        double top = layout_.height;
        if (layout_.show_title) {
            across_text(top, -1.25, properties_.title);
            top -= 1.5 * layout_.title_height;
        }
        if (!properties_.display_axes) return;
        if (layout_.show_x_label) {
            const AxisProperties& x = properties_.x;
            if (x.on_high_side()) across_text(top, -1.5, x.label);
            if (x.on_low_side()) across_text(0.0, 0.0, x.label);
        }
        upright_labels();
        numbers();
    }

    void light_grid() {
        if (!properties_.light_grid) return;
        const Pen pen{
            mixed(resolved(properties_.back_colour), resolved(properties_.fore_colour), grid_strength), 1.0,
            LineStyle::solid};
        for (const AxisNumber& number : x_marks_.numbers)
            canvas_.line({number.position, plot_.y_low}, {number.position, plot_.y_high}, pen);
        for (const AxisNumber& number : y_marks_.numbers)
            canvas_.line({plot_.x_low, number.position}, {plot_.x_high, number.position}, pen);
    }

  private:
    Colour resolved(Colour colour) const {
        return colour < no_colour ? canvas_.device().system_colour(colour & 0xFF) : colour;
    }

    double title_width(const std::string& words) { return canvas_.measure(words, FontRole::title).width; }

    /// As many of the words as have room, with an ellipsis when they are not all.
    std::string shortened(const std::string& words, double room) {
        const std::string clean = Canvas::clean_text(words);
        if (title_width(clean) <= room) return clean;
        std::size_t kept = 0;
        std::size_t too_many = clean.size();
        while (kept + 1 < too_many) {
            const std::size_t middle = (kept + too_many) / 2;
            (title_width(clean.substr(0, whole_characters(clean, middle)) + ellipsis) <= room ? kept
                                                                                              : too_many) =
                middle;
        }
        std::string shown = clean.substr(0, whole_characters(clean, kept));
        while (!shown.empty() && shown.back() == ' ') shown.pop_back();
        return shown + ellipsis;
    }
    /// At most so many bytes, none of a character that is cut.
    static std::size_t whole_characters(const std::string& text, std::size_t bytes) {
        while (bytes > 0 && (static_cast<unsigned char>(text[bytes]) & 0xC0U) == 0x80U) --bytes;
        return bytes;
    }
    /// The middle of the plot, moved to where a text of this half length is whole.
    static double middle_of(double low, double high, double half, double length) {
        return std::max(std::min((low + high) / 2.0, length - half), std::min(half, length / 2.0));
    }

    void title_text(Point at, double angle, double across, const std::string& words) {
        canvas_.text(at, angle, -0.5, across, words, FontRole::title, properties_.fore_colour);
    }
    void across_text(double y, double across, const std::string& words) {
        const std::string shown = shortened(words, layout_.width);
        const double half = title_width(shown) / 2.0;
        title_text({middle_of(plot_.x_low, plot_.x_high, half, layout_.width), y}, 0.0, across, shown);
    }
    /// The left label reads upward, the right one downward.
    void upright_labels() {
        if (properties_.y.label.empty()) return;
        const std::string shown = shortened(properties_.y.label, layout_.height);
        const double half = title_width(shown) / 2.0;
        const double middle = middle_of(plot_.y_low, plot_.y_high, half, layout_.height);
        if (properties_.y.on_low_side()) title_text({0.0, middle}, 90.0, -1.5, shown);
        if (properties_.y.on_high_side()) title_text({layout_.width, middle}, -90.0, -1.5, shown);
    }

    void x_ticks(double frame, double inward) {
        for (const double at : x_marks_.ticks)
            canvas_.line({at, frame}, {at, frame + inward * tick_length}, tick_pen);
        for (const double at : x_marks_.minor_ticks)
            canvas_.line({at, frame}, {at, frame + inward * minor_tick_length}, tick_pen);
    }
    void y_ticks(double frame, double inward) {
        for (const double at : y_marks_.ticks)
            canvas_.line({frame, at}, {frame + inward * tick_length, at}, tick_pen);
        for (const double at : y_marks_.minor_ticks)
            canvas_.line({frame, at}, {frame + inward * minor_tick_length, at}, tick_pen);
    }

    /// Numbers of two axes that would meet at a corner: a zero stays, then what is at the bottom or the
    /// sides.
    void numbers() {
        std::vector<PlacedNumber> wanted;
        if (properties_.x.on_low_side()) x_numbers(Side::low, wanted);
        if (properties_.y.on_low_side()) y_numbers(Side::low, wanted);
        // Numbers inside stand at the left whichever side is asked; a second pass would only thicken them.
        const bool inside = properties_.labelling_location == 1;
        if (properties_.y.on_high_side() && !(inside && properties_.y.on_low_side()))
            y_numbers(Side::high, wanted);
        if (properties_.x.on_high_side()) x_numbers(Side::high, wanted);
        const double gap = layout_.text_height / 4.0;
        std::vector<PlacedNumber> drawn;
        const auto has_room = [&](const PlacedNumber& placed) {
            return std::none_of(drawn.begin(), drawn.end(),
                                [&](const PlacedNumber& other) { return meet(placed.box, other.box, gap); });
        };
        for (const bool zeros : {true, false})
            for (const PlacedNumber& placed : wanted)
                if (placed.number->zero == zeros && has_room(placed)) drawn.push_back(placed);
        std::sort(drawn.begin(), drawn.end(),
                  [](const PlacedNumber& a, const PlacedNumber& b) { return a.order < b.order; });
        for (const PlacedNumber& placed : drawn)
            canvas_.text({placed.box.x_low, placed.box.y_low}, 0.0, 0.0, 0.0, placed.number->text,
                         FontRole::chart, properties_.fore_colour);
    }

    /// A number that would leave the surface is left out.
    void place(double left, double bottom, const AxisNumber& number,
               std::vector<PlacedNumber>& placed) const {
        constexpr double rounding = 1e-6;
        const Rect box{left, left + number.width, bottom, bottom + layout_.text_height};
        if (box.x_low < -rounding || box.x_high > layout_.width + rounding || box.y_low < -rounding ||
            box.y_high > layout_.height + rounding)
            return;
        placed.push_back({box, &number, placed.size()});
    }
    void x_numbers(Side side, std::vector<PlacedNumber>& placed) const {
        const double m = layout_.text_height;
        const bool inside = properties_.labelling_location == 1;
        const double frame = side == Side::high ? plot_.y_high : plot_.y_low;
        // Outside, top numbers touch the frame and bottom ones keep half a height; inside it is the reverse.
        const double across = side == Side::high ? (inside ? -1.5 : 0.0) : (inside ? 0.5 : -1.5);
        for (const AxisNumber& number : x_marks_.numbers)
            place(number.position - number.width / 2.0, frame + across * m, number, placed);
    }
    void y_numbers(Side side, std::vector<PlacedNumber>& placed) const {
        const double m = layout_.text_height;
        const bool inside = properties_.labelling_location == 1;
        for (const AxisNumber& number : y_marks_.numbers) {
            double left = plot_.x_low + m / 2.0;
            if (!inside)
                left = side == Side::low ? plot_.x_low - m / 2.0 - number.width : plot_.x_high + m / 2.0;
            place(left, number.position - m / 2.0, number, placed);
        }
    }

    const ChartProperties& properties_;
    const ChartLayout& layout_;
    const Rect& plot_;
    Canvas& canvas_;
    AxisMarks x_marks_;
    AxisMarks y_marks_;
};

}  // namespace

void paint_axes(const ChartProperties& properties, const ChartLayout& layout, const AxisRange& x,
                const AxisRange& y, Canvas& canvas) {
    AxisPainter painter(properties, layout, x, y, canvas);
    painter.frame();
    painter.words();
}

void paint_frame(const ChartProperties& properties, const ChartLayout& layout, const AxisRange& x,
                 const AxisRange& y, Canvas& canvas) {
    AxisPainter(properties, layout, x, y, canvas).frame();
}

void paint_light_grid(const ChartProperties& properties, const ChartLayout& layout, const AxisRange& x,
                      const AxisRange& y, Canvas& canvas) {
    if (properties.light_grid) AxisPainter(properties, layout, x, y, canvas).light_grid();
}

}  // namespace anomalis::chart
