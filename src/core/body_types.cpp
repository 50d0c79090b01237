#include "core/body_types.h"

namespace anomalis {

std::string_view body_type_name(std::int32_t type) {
    switch (type) {
        case thin_sheet:
            return "Thin Sheet";
        case thick_sheet:
            return "Thick Sheet";
        case edge:
            return "Edge";
        case sloping_step:
            return "Sloping step";
        case polygon:
            return "Polygon";
        case sphere:
            return "Sphere";
        case pipe:
            return "Cylinder/pipe";
        case wire:
            return "Wire";
        default:
            return "";
    }
}

bool is_named(std::int32_t type) {
    return !body_type_name(type).empty();
}

bool has_plan_outline(std::int32_t type) {
    return is_named(type) && (is_tabular(type) || is_round(type));
}

}  // namespace anomalis
