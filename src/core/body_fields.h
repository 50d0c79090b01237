#pragma once

#include <string_view>
#include <tuple>

#include "core/model_body.h"
#include "core/stale.h"

// The fields of a body that are no parameters; those stand in core/body_parameters.h.
namespace anomalis {

template <class Value>
struct BodyField {
    std::string_view name;
    Value ModelBody::*member;
    Stale stale;
};
// Said for compilers that find no guide for an aggregate by themselves.
template <class Value>
BodyField(std::string_view, Value ModelBody::*, Stale) -> BodyField<Value>;

/// What a file holds of a body beside its parameters, and what a change of each makes stale. The map position
/// follows from the distance and is not among them; the widths of the ends are written with a file and read
/// by nothing.
inline constexpr std::tuple body_fields{
    BodyField{"type", &ModelBody::type, Stale{.mag = true, .grav = true, .burial_depth = true}},
    BodyField{"colour", &ModelBody::colour, Stale{}},
    BodyField{"name", &ModelBody::name, Stale{}},
    BodyField{"description", &ModelBody::description, Stale{}},
    BodyField{"rock_type", &ModelBody::rock_type, Stale{}},
    BodyField{"include_demagnetisation", &ModelBody::include_demagnetisation, Stale{.mag = true}},
    BodyField{"vary", &ModelBody::vary, Stale{}},
    BodyField{"turned_off", &ModelBody::turned_off, Stale{.mag = true, .grav = true}},
    BodyField{"end_width_a", &ModelBody::end_width_a, Stale{}},
    BodyField{"end_width_b", &ModelBody::end_width_b, Stale{}},
    BodyField{"shell_thickness", &ModelBody::shell_thickness, Stale{.mag = true, .grav = true}},
    BodyField{"end_thickness", &ModelBody::end_thickness, Stale{.mag = true, .grav = true}},
    BodyField{"num_sectors", &ModelBody::num_sectors, Stale{.mag = true, .grav = true}},
    BodyField{"num_segments", &ModelBody::num_segments, Stale{.mag = true, .grav = true}},
    BodyField{"max_triangle_size", &ModelBody::max_triangle_size, Stale{.mag = true, .grav = true}},
};

/// References to all of them, in that order.
template <class AnyBody>
auto body_field_values(AnyBody& body) {
    return std::apply([&](const auto&... field) { return std::tie(body.*field.member...); }, body_fields);
}

}  // namespace anomalis
