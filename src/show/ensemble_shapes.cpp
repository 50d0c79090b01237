#include "show/ensemble_shapes.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "chart/ax_grapher.h"
#include "core/body_fields.h"
#include "core/body_parameters.h"
#include "core/ensemble.h"
#include "core/faults.h"
#include "core/workspace.h"
#include "edit/view_state.h"
#include "forward/shape/plan_outline.h"
#include "forward/shape/reference_point.h"
#include "show/broken_line.h"
#include "show/section_chart.h"
#include "show/section_shapes.h"

namespace anomalis::show {

namespace {

/// What a body is drawn by; responses of thousands of stations stay behind.
ModelBody drawn_copy(const ModelBody& body) {
    ModelBody copy;
    body_field_values(copy) = body_field_values(body);
    for (const BodyParameter& row : body_parameters()) copy.*row.slot = body.*row.slot;
    copy.east = body.east;
    copy.north = body.north;
    return copy;
}

/// Which values of a sample are those of a body.
std::vector<std::size_t> places_of(const Ensemble& ensemble, int body) {
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < ensemble.parameters.size(); ++i)
        if (ensemble.parameters[i].body == body) places.push_back(i);
    return places;
}

bool has_body(const EnsembleSample& sample, const std::vector<std::size_t>& places) {
    return std::ranges::all_of(
        places, [&](std::size_t i) { return i < sample.values.size() && std::isfinite(sample.values[i]); });
}

void record_outline(chart::AX_Grapher& chart, std::span<const double> xs, std::span<const double> ys) {
    for (std::size_t i = 0; i + 1 < xs.size(); ++i)
        chart.DrawLine(xs[i], ys[i], xs[i + 1], ys[i + 1], ghost_grey, 1);
}

}  // namespace

std::vector<ModelBody> ghosts_of(const Workspace& workspace, const Ensemble& ensemble, int body) {
    const std::vector<std::size_t> places = places_of(ensemble, body);
    std::vector<const EnsembleSample*> models;
    for (const EnsembleSample& sample : ensemble.samples)
        if (has_body(sample, places)) models.push_back(&sample);
    std::vector<ModelBody> ghosts;
    if (places.empty()) return ghosts;
    const std::size_t count = std::min<std::size_t>(models.size(), most_ghosts);
    const ModelBody plain = drawn_copy(workspace.body(body));
    for (std::size_t k = 0; k < count; ++k) {
        ModelBody& ghost = ghosts.emplace_back(plain);
        for (const std::size_t i : places)
            body_param(ghost, ensemble.parameters[i].param_code).value =
                models[k * models.size() / count]->values[i];
        forward::update_body_reference_point(workspace, static_cast<double>(ghost.distance.value), ghost.east,
                                             ghost.north);
    }
    return ghosts;
}

void record_section_ghosts(chart::AX_Grapher& chart, const Workspace& workspace, const edit::ViewState& view,
                           const Ensemble& ensemble) {
    const SectionWindow window{chart.YAxisMin(), view.profile_window_max};
    for (int number = 1; number <= workspace.body_count; ++number)
        for (const ModelBody& ghost : ghosts_of(workspace, ensemble, number)) {
            const SectionShape shape = section_shape(workspace, ghost, window);
            if (!shape.visible) continue;
            record_outline(chart, shape.xs, shape.ys);
            if (shape.xs.empty())
                chart.DrawMarker(shape.distance, shape.top, reference_marker, ghost_grey, 1);
        }
}

void record_plan_ghosts(chart::AX_Grapher& chart, const Workspace& workspace, const Ensemble& ensemble) {
    const chart::Rect shown = chart.FullRange();
    const forward::ClipBox box{shown.x_low, shown.x_high, shown.y_low, shown.y_high};
    Faults told_of_the_bodies;
    for (int number = 1; number <= workspace.body_count; ++number)
        for (const ModelBody& ghost : ghosts_of(workspace, ensemble, number)) {
            forward::PlanOutline outline;
            if (forward::calculate_plan_outline(workspace, box, ghost, outline, told_of_the_bodies) > 0)
                record_outline(chart, outline.east, outline.north);
        }
}

FanBands fan_bands(const Workspace& workspace, const Ensemble& ensemble, int chart) {
    if (chart != edit::chart_mag && chart != edit::chart_grav) return {};
    const std::int32_t channel = chart == edit::chart_mag ? channel_mag : channel_grav;
    FanBands drawn;
    for (const EnsembleFan& fan : ensemble.fans) {
        if (fan.channel != channel || fan.first_station < 1) continue;
        const auto from = static_cast<std::size_t>(fan.first_station - 1);
        const auto stations = workspace.distances.span();
        const std::size_t count = std::min(fan.lower.size(), fan.upper.size());
        if (from + count > stations.size() || count == 0) continue;
        const auto last = fan.first_station + static_cast<std::int32_t>(count) - 1;
        const BrokenLine line = BrokenLine::of_channel(workspace, channel, fan.first_station, last);
        if (line.whole()) {
            drawn.bands.push_back({stations.subspan(from, count), std::span(fan.lower).first(count),
                                   std::span(fan.upper).first(count), fan_green});
            continue;
        }
        drawn.distances.assign(line.distances().begin(), line.distances().end());
        drawn.lower = line.curve(std::span<const float>(fan.lower), fan.first_station);
        drawn.upper = line.curve(std::span<const float>(fan.upper), fan.first_station);
        drawn.bands.push_back({std::span<const double>(drawn.distances), std::span<const float>(drawn.lower),
                               std::span<const float>(drawn.upper), fan_green});
        break;  // a channel has one fan
    }
    return drawn;
}

}  // namespace anomalis::show
