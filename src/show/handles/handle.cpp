#include "show/handles/handle.h"

#include <array>

namespace anomalis::show {

namespace {

constexpr std::array place{param_distance, param_top};
constexpr std::array corner{param_distance, param_top, param_width};
constexpr std::array bottom{param_depth_extent};
constexpr std::array foot{param_depth_extent, param_dip};
constexpr std::array dip{param_dip};
constexpr std::array rim{param_width};
constexpr std::array strike{param_strike};
constexpr std::array end{param_length, param_offset};
constexpr std::array offset{param_offset};

}  // namespace

const char* handle_step(HandleKind kind, std::int32_t type) {
    switch (kind) {
        case HandleKind::place:
            return "place";
        case HandleKind::near_corner:
        case HandleKind::far_corner:
            return "width";
        case HandleKind::bottom:
        case HandleKind::near_foot:
        case HandleKind::far_foot:
            return "depth extent";
        case HandleKind::dip:
            return "dip";
        case HandleKind::rim:
            return is_round(type) ? "diameter" : "width";
        case HandleKind::strike:
            return "strike";
        case HandleKind::near_end:
        case HandleKind::far_end:
            return "length";
        case HandleKind::offset:
            return "offset";
    }
    return "";
}

std::span<const ParamCode> handle_parameters(HandleKind kind) {
    switch (kind) {
        case HandleKind::place:
            return place;
        case HandleKind::near_corner:
        case HandleKind::far_corner:
            return corner;
        case HandleKind::bottom:
            return bottom;
        case HandleKind::near_foot:
        case HandleKind::far_foot:
            return foot;
        case HandleKind::dip:
            return dip;
        case HandleKind::rim:
            return rim;
        case HandleKind::strike:
            return strike;
        case HandleKind::near_end:
        case HandleKind::far_end:
            return end;
        case HandleKind::offset:
            return offset;
    }
    return {};
}

}  // namespace anomalis::show
