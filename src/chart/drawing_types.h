#pragma once

#include <algorithm>
#include <cstdint>
#include <string>

// The small values that pass between the chart and its devices. Lengths are surface units (15 a screen
// pixel, 1440 an inch) with the origin at the lower left corner and y upward, unless said otherwise.
namespace anomalis::chart {

/// The longest side of a surface, the thickest pen (screen pixels), the largest marker (surface units) and
/// the largest font (points) that are drawn. Nobody sees more; a host that asks for more, or for no number,
/// would else have ticks and pixels reckoned by the billion.
inline constexpr double largest_surface = 983040.0;  // 65,536 screen pixels
inline constexpr double widest_pen = 500.0;
inline constexpr double largest_marker = 1500.0;
inline constexpr double largest_font = 500.0;

/// A colour with blue in the high byte (0xBBGGRR); -1 where "none" is meant. A colour with its top bit set
/// names an entry of the desktop's palette: 0x0F the button face, 0x12 the button text.
using Colour = std::int32_t;

inline constexpr Colour no_colour = -1;
inline constexpr Colour black = 0;
inline constexpr Colour white = 0xFFFFFF;
inline constexpr Colour button_face = static_cast<Colour>(0x8000000F);
inline constexpr Colour button_text = static_cast<Colour>(0x80000012);

constexpr int red_of(Colour colour) {
    return colour & 0xFF;
}
constexpr int green_of(Colour colour) {
    return (colour >> 8) & 0xFF;
}
constexpr int blue_of(Colour colour) {
    return (colour >> 16) & 0xFF;
}
constexpr Colour colour_of(int red, int green, int blue) {
    return red | (green << 8) | (blue << 16);
}

struct Point {
    double x = 0.0;
    double y = 0.0;
    bool operator==(const Point&) const = default;
};

/// Four numbers in the order X low, X high, Y low, Y high.
struct Rect {
    double x_low = 0.0;
    double x_high = 0.0;
    double y_low = 0.0;
    double y_high = 0.0;

    double width() const { return x_high - x_low; }
    double height() const { return y_high - y_low; }
    /// True inside and on the edge, opened by `tolerance` on each side; false for NaN.
    bool contains(Point p, double tolerance = 0.0) const {
        return p.x >= x_low - tolerance && p.x <= x_high + tolerance && p.y >= y_low - tolerance &&
               p.y <= y_high + tolerance;
    }
    bool operator==(const Rect&) const = default;
};

enum class LineStyle : int { solid = 0, dash = 1, dot = 2, dash_dot = 3, dash_dot_dot = 4 };

/// A pen's width as it is drawn.
inline double drawn_width(double width) {
    return width > 1.0 ? std::min(width, widest_pen) : 1.0;
}

/// `width` is in screen pixels, whatever the target: a device multiplies it by the pen factor of its mapping.
struct Pen {
    Colour colour = black;
    double width = 1.0;
    LineStyle style = LineStyle::solid;
    bool operator==(const Pen&) const = default;
};

/// `size` is in points; one point is 20 surface units.
struct Font {
    std::string name = "Sans Serif";
    double size = 8.0;
    bool bold = true;
    bool italic = false;
    /// As it is drawn. A size that is no number becomes the smallest.
    double drawn_size() const { return size > 1.0 ? std::min(size, largest_font) : 1.0; }
    bool operator==(const Font&) const = default;
};

/// The box of a text in surface units.
struct TextExtent {
    double width = 0.0;
    double ascent = 0.0;
    double descent = 0.0;
    double height() const { return ascent + descent; }
};

}  // namespace anomalis::chart
