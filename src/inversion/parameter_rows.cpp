#include "inversion/parameter_rows.h"

#include <array>

namespace anomalis::inversion {

namespace {

using Body = const ModelBody&;

constexpr float no_limit = 1e32F;

bool always(Body, const Workspace&) {
    return true;
}
bool is_sheet(Body body, const Workspace&) {
    return body.type < pipe;
}
bool has_remanence_direction(Body body, const Workspace& workspace) {
    return body.rem_q.value > 0 && is_sheet(body, workspace);
}
/// With the exact formulas thin sheets end along strike as thick ones do.
bool may_end_along_strike(Body body, const Workspace& workspace) {
    return body.type == thick_sheet || (body.type == thin_sheet && workspace.formulas == Formulas::exact);
}

template <int Milli>
float fixed(Body) {
    return static_cast<float>(Milli / 1000.0);
}
/// One step for a pipe, which is small and shallow, another for everything else.
template <int PipeMilli, int Milli>
float by_type(Body body) {
    return static_cast<float>((body.type == pipe ? PipeMilli : Milli) / 1000.0);
}
template <int Milli>
float limit(Body, const Workspace&) {
    return static_cast<float>(Milli / 1000.0);
}
float none_below(Body, const Workspace&) {
    return -no_limit;
}
float none_above(Body, const Workspace&) {
    return no_limit;
}

float highest_top(Body, const Workspace& workspace) {
    return static_cast<float>(static_cast<double>(workspace.z_max) - 1.0);
}
float least_width(Body body, const Workspace&) {
    return body.type == pipe ? 0.1F : 1.0F;
}
float extent_step(Body body) {
    return body.depth_extent.value > 100 ? 5.0F : 1.0F;
}

float susceptibility_step(Body body) {
    const float v = body.susc.value;
    if (v < 1000) return 10;
    if (v < 10000) return 25;
    if (v < 100000) return 250;
    if (v < 1000000) return 2500;
    return static_cast<float>(0.01 * static_cast<double>(v));
}
/// An unlimited susceptibility may rise to 1.1 times its value at the start of the run and no further.
float highest_susceptibility(Body body, const Workspace&) {
    return static_cast<float>(1.1 * static_cast<double>(body.susc.value));
}

constexpr std::array<ParameterRow, 10> geometry{{
    {param_distance, &ModelBody::distance, always, by_type<500, 10000>, none_below, none_above},
    {param_top, &ModelBody::top, always, by_type<100, 5000>, none_below, highest_top},
    {param_strike, &ModelBody::strike, always, fixed<2500>, limit<-360000>, limit<360000>},
    {param_dip, &ModelBody::dip, always, by_type<500, 2500>, limit<-175000>, limit<175000>},
    {param_plunge, &ModelBody::plunge, is_sheet, fixed<2500>, limit<-45000>, limit<45000>},
    {param_slope, &ModelBody::slope, is_sheet, fixed<2500>, limit<-80000>, limit<80000>},
    {param_width, &ModelBody::width, [](Body body, const Workspace&) { return body.type < wire; },
     by_type<50, 2500>, least_width, none_above},
    {param_depth_extent, &ModelBody::depth_extent,
     [](Body body, const Workspace& workspace) {
         return body.depth_extent.value > 0 && is_sheet(body, workspace);
     },
     extent_step, limit<100>, none_above},
    {param_length, &ModelBody::length,
     [](Body body, const Workspace& workspace) {
         return body.length.value > 0 && may_end_along_strike(body, workspace);
     },
     fixed<5000>, limit<10000>, none_above},
    {param_offset, &ModelBody::offset,
     [](Body body, const Workspace& workspace) {
         return body.offset.value > 0 && may_end_along_strike(body, workspace);
     },
     fixed<2500>, none_below, none_above},
}};

/// Susceptibility and remanence ratio scale the same response, so only one of them may be free.
constexpr std::array<ParameterRow, 4> magnetic{{
    {param_susc, &ModelBody::susc, always, susceptibility_step, limit<100000>, highest_susceptibility},
    {param_rem_q, &ModelBody::rem_q, [](Body body, const Workspace&) { return body.susc.vary != 1.0F; },
     fixed<100>, limit<1>, limit<100000>},
    {param_rem_i, &ModelBody::rem_i, has_remanence_direction, fixed<2500>, limit<-90000>, limit<90000>},
    {param_rem_d, &ModelBody::rem_d, has_remanence_direction, fixed<2500>, limit<-360000>, limit<360000>},
}};

constexpr std::array<ParameterRow, 1> gravity{{
    {param_density, &ModelBody::density, always, fixed<25>, limit<-100000>, limit<100000>},
}};

}  // namespace

std::span<const ParameterRow> geometry_rows() {
    return geometry;
}

std::span<const ParameterRow> magnetic_rows() {
    return magnetic;
}

std::span<const ParameterRow> gravity_rows() {
    return gravity;
}

}  // namespace anomalis::inversion
