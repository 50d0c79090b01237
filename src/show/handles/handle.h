#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "chart/drawing_types.h"
#include "edit/body_drag.h"

// Handles: the marks of a body by which a hand changes it in the section and in the plan.
namespace anomalis::show {

enum class HandleKind {
    place,        ///< the body as a whole; in the plan along the line
    near_corner,  ///< of the top edge, at the reference point: the far side stays
    far_corner,   ///< of the top edge: the near side stays
    bottom,       ///< depth extent
    near_foot,    ///< of the bottom edge: depth extent and dip
    far_foot,
    dip,
    rim,     ///< diameter
    strike,  ///< in the plan, as the rest
    near_end,
    far_end,
    offset
};

/// One handle. A drag puts `at` to where the hand wants it.
struct Handle {
    HandleKind kind;
    chart::Point at;     ///< m along the profile and up, or east and north
    chart::Point shift;  ///< drawn so far from there (surface units): small bodies need room
    std::optional<chart::Point> pivot = {};  ///< what it turns about
    double rise = 0;  ///< of a handle with a direction: that of the line it moves on, screen degrees
};

/// What of the model is in view, and how large.
struct HandleView {
    chart::Rect shown;                ///< m
    double x_scale = 0, y_scale = 0;  ///< surface units a metre
    double bottom = 0;                ///< a body without a depth extent runs down to here, m
    double profile_end = 0;           ///< where edges and steps end, m
};

/// Parameters as a drag wants them: inside what a person may give, the others as they are.
using HandleValues = std::vector<edit::ParameterValue>;

/// The smallest size (m) a hand can give.
inline constexpr double least_size = 0.01;
/// A hand turns a sheet no flatter than this (degrees): below it the section draws it no flatter.
inline constexpr double flattest_dip = 0.6;

inline constexpr double handle_pixel = 15;  ///< surface units

/// The name of the step that a drag of the handle is: "width", "dip".
const char* handle_step(HandleKind kind, std::int32_t type);
/// The parameters that a drag of the handle may change, in the order in which they are told.
std::span<const ParamCode> handle_parameters(HandleKind kind);

}  // namespace anomalis::show
