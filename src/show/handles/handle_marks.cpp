#include "show/handles/handle_marks.h"

#include <cmath>

#include "chart/ax_grapher.h"

namespace anomalis::show {

namespace {

// The light shades of the window: the charts are white on a dark desktop as well.
constexpr chart::Colour ink = chart::colour_of(0x1C, 0x26, 0x30);
constexpr chart::Colour accent = chart::colour_of(0x1F, 0x66, 0xB0);
constexpr chart::Colour quiet = chart::colour_of(0x55, 0x60, 0x6B);
constexpr chart::Colour line = chart::colour_of(0xB4, 0xBE, 0xC8);

constexpr double square_radius = 3.5 * handle_pixel;
constexpr double diamond_radius = 6 * handle_pixel;
constexpr double circle_radius = 4.5 * handle_pixel;
constexpr double hot_growth = 1 * handle_pixel;
constexpr double note_gap = 16 * handle_pixel;

chart::TopMark mark_of(const Handle& handle, bool hot) {
    chart::TopMark mark{
        {handle.at, handle.shift}, chart::MarkShape::square, square_radius, ink, chart::white, 1};
    if (handle.kind == HandleKind::place) {
        mark.shape = chart::MarkShape::diamond;
        mark.radius = diamond_radius;
    } else if (handle.pivot) {
        mark.shape = chart::MarkShape::circle;
        mark.radius = circle_radius;
    }
    if (hot) {
        mark.fill = mark.pen = accent;
        mark.radius += hot_growth;
    }
    return mark;
}

/// Of lines that rise so: 0 level, 90 upright.
chart::PointerShape pointer_along(double rise) {
    const double turned = std::remainder(rise, 180);
    constexpr double level = 22.5, steep = 67.5;
    if (std::abs(turned) <= level) return chart::PointerShape::across;
    if (std::abs(turned) >= steep) return chart::PointerShape::upright;
    return turned > 0 ? chart::PointerShape::rising : chart::PointerShape::falling;
}

}  // namespace

chart::Point handle_place(const chart::AX_Grapher& chart, const Handle& handle) {
    const chart::Point at = chart.UserToSurface(handle.at);
    return {at.x + handle.shift.x, at.y + handle.shift.y};
}

const Handle* handle_under(const chart::AX_Grapher& chart, const std::vector<Handle>& handles,
                           chart::Point surface, double reach) {
    const Handle* nearest = nullptr;
    double least = reach;
    for (const Handle& handle : handles) {
        const chart::Point at = handle_place(chart, handle);
        const double away = std::hypot(at.x - surface.x, at.y - surface.y);
        if (!(away < least)) continue;
        least = away;
        nearest = &handle;
    }
    return nearest;
}

chart::TopMarks handle_marks(const std::vector<Handle>& handles, std::optional<HandleKind> hot) {
    chart::TopMarks top;
    for (const Handle& handle : handles) {
        const bool is_hot = hot == handle.kind;
        if (handle.pivot)
            top.lines.push_back({{*handle.pivot, handle.shift},
                                 {handle.at, handle.shift},
                                 {is_hot ? accent : quiet, 1, chart::LineStyle::dot}});
        top.marks.push_back(mark_of(handle, is_hot));
    }
    return top;
}

chart::TopNote handle_note(const Handle& handle, std::vector<std::string> lines) {
    return {{handle.at, handle.shift}, note_gap, std::move(lines), line, chart::white, ink};
}

chart::PointerShape handle_pointer(const Handle& handle) {
    if (handle.kind == HandleKind::place) return chart::PointerShape::move;
    return handle.pivot ? chart::PointerShape::turn : pointer_along(handle.rise);
}

}  // namespace anomalis::show
