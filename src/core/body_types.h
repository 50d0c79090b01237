#pragma once

#include <array>
#include <cstdint>
#include <string_view>

// The kinds of bodies and what tells them apart. A code comes from a file as any number: the questions have
// an answer for every one.
namespace anomalis {

/// Codes 7 to 15 have no name; 16 and above are round.
enum BodyType : std::int32_t {
    thin_sheet = 1,
    thick_sheet = 2,
    edge = 3,
    sloping_step = 4,
    polygon = 5,
    sphere = 6,
    pipe = 16,
    wire = 17
};

/// The types that a person can choose; the others come from files only.
inline constexpr std::array<BodyType, 4> offered_body_types{thin_sheet, thick_sheet, pipe, wire};

/// The name that the body table shows; "" for a code without one.
std::string_view body_type_name(std::int32_t type);

/// One of the eight types that have a name.
bool is_named(std::int32_t type);

/// Thin or thick sheet.
constexpr bool is_sheet(std::int32_t type) {
    return type == thin_sheet || type == thick_sheet;
}

/// A sheet that goes on to one side without end: an edge or a sloping step.
constexpr bool is_step(std::int32_t type) {
    return type == edge || type == sloping_step;
}

/// Sheets, edges, steps and the codes below them: a section shows a slab with flat sides.
constexpr bool is_tabular(std::int32_t type) {
    return type < polygon;
}

/// Pipe, wire and the codes above them: round about an axis along the strike. The axis lies level at a dip of
/// 0, and there is no plunge, no slope and no depth extent.
constexpr bool is_round(std::int32_t type) {
    return type >= pipe;
}

/// A wire has a current where the others have a susceptibility.
constexpr bool carries_current(std::int32_t type) {
    return type == wire;
}

/// The classic formulas have a gravity for sheets and pipes alone.
constexpr bool has_classic_gravity(std::int32_t type) {
    return is_sheet(type) || type == pipe;
}

/// The plan shows it as an area.
bool has_plan_outline(std::int32_t type);

}  // namespace anomalis
