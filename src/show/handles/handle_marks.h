#pragma once

#include <string>

#include "chart/top_marks.h"
#include "show/handles/handle.h"

namespace anomalis::chart {
class AX_Grapher;
}  // namespace anomalis::chart

namespace anomalis::show {

/// How near a press must come to a handle (surface units): a mouse, a finger.
inline constexpr double mouse_reach = 8 * handle_pixel;
inline constexpr double finger_reach = 22 * handle_pixel;

/// Where a handle is drawn: surface units, y up.
chart::Point handle_place(const chart::AX_Grapher& chart, const Handle& handle);

/// The handle nearest to a place of the surface within `reach`; null for none.
const Handle* handle_under(const chart::AX_Grapher& chart, const std::vector<Handle>& handles,
                           chart::Point surface, double reach);

/// The handles as marks, the one of kind `hot` filled.
chart::TopMarks handle_marks(const std::vector<Handle>& handles, std::optional<HandleKind> hot);

/// A note of lines beside a handle.
chart::TopNote handle_note(const Handle& handle, std::vector<std::string> lines);

/// What the pointer says over a handle.
chart::PointerShape handle_pointer(const Handle& handle);

}  // namespace anomalis::show
