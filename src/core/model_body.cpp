#include "core/model_body.h"

#include <algorithm>
#include <utility>

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

const std::array<ParamSlot, 15>& param_slots() {
    static const std::array<ParamSlot, 15> slots{{
        {param_distance, &ModelBody::distance, "distance"},
        {param_top, &ModelBody::top, "top"},
        {param_strike, &ModelBody::strike, "strike"},
        {param_dip, &ModelBody::dip, "dip"},
        {param_plunge, &ModelBody::plunge, "plunge"},
        {param_slope, &ModelBody::slope, "slope"},
        {param_width, &ModelBody::width, "width"},
        {param_depth_extent, &ModelBody::depth_extent, "depth_extent"},
        {param_length, &ModelBody::length, "length"},
        {param_offset, &ModelBody::offset, "offset"},
        {param_susc, &ModelBody::susc, "susc"},
        {param_rem_q, &ModelBody::rem_q, "rem_q"},
        {param_rem_d, &ModelBody::rem_d, "rem_d"},
        {param_rem_i, &ModelBody::rem_i, "rem_i"},
        {param_density, &ModelBody::density, "density"},
    }};
    return slots;
}

namespace {

const ParamSlot& slot_of(int param_code) {
    const auto& slots = param_slots();
    const auto found = std::find_if(slots.begin(), slots.end(),
                                    [&](const ParamSlot& slot) { return slot.code == param_code; });
    if (found == slots.end()) throw Fault(FaultKind::subscript);
    return *found;
}

}  // namespace

std::string_view param_name(int param_code) {
    return slot_of(param_code).name;
}

const BodyParam& body_param(const ModelBody& body, int param_code) {
    return body.*(slot_of(param_code).slot);
}

BodyParam& body_param(ModelBody& body, int param_code) {
    return const_cast<BodyParam&>(body_param(std::as_const(body), param_code));
}

}  // namespace anomalis
