#include "core/workspace.h"

#include <string>
#include <utility>

#include "core/prompts.h"
#include "core/setting_fields.h"

namespace anomalis {

namespace {

constexpr std::int32_t capacity_step = 16;

template <class... Field>  // members of a workspace
void keep(Workspace& old, Workspace& fresh, Field... fields) {
    ((fresh.*fields = std::move(old.*fields)), ...);
}

void keep_fields_without_default(Workspace& old, Workspace& fresh) {
    using W = Workspace;
    fresh.definition.data_file_date = old.definition.data_file_date;
    fresh.definition.spare_definition_field = old.definition.spare_definition_field;
    keep(old, fresh, &W::model_file_date, &W::display);
    keep(old, fresh, &W::direction_x, &W::direction_y, &W::line_constant, &W::origin_east, &W::origin_north,
         &W::azimuth, &W::dtm_min, &W::dtm_max);
    keep(old, fresh, &W::allocated_stations, &W::stations, &W::station_spare, &W::distances);
    const float infinite_body_length = fresh.drawing.infinite_body_length;
    fresh.drawing = old.drawing;
    fresh.drawing.infinite_body_length = infinite_body_length;
    fresh.mag.mean = old.mag.mean;
    for (float Channel::*field :
         {&Channel::min, &Channel::max, &Channel::mean, &Channel::range_min, &Channel::range_max})
        fresh.grav.*field = old.grav.*field;
    for (Channel W::*channel : {&W::mag, &W::grav}) {
        (fresh.*channel).data = std::move((old.*channel).data);
        (fresh.*channel).work = std::move((old.*channel).work);
    }
}

/// Place and date only count where they are used.
std::string igrf_change_text(const LineSource& source) {
    if (source.igrf_change == igrf_kept) return {};
    return std::to_string(source.igrf_change) + " " + source.coordinate_system + " " + source.date;
}

}  // namespace

void initialise_workspace(Workspace& workspace, Prompts& prompts) {
    report_failure(prompts, "An error occurred while initialising the AXM workspace: ", [&] {
        Workspace fresh;
        fresh.bodies.resize(static_cast<std::size_t>(fresh.body_capacity) + 1);
        keep_fields_without_default(workspace, fresh);
        workspace = std::move(fresh);
    });
}

void reserve_next_body(Workspace& workspace) {
    if (workspace.body_count + 1 <= workspace.body_capacity) return;
    const auto old_size = workspace.bodies.size();
    workspace.body_capacity = workspace.body_count + capacity_step;
    workspace.bodies.resize(static_cast<std::size_t>(workspace.body_capacity) + 1);
    for (auto i = old_size; i < workspace.bodies.size(); ++i)
        workspace.bodies[i].response.assign(workspace.station_count);
}

void reset_calculated_data(Workspace& workspace, Prompts& prompts) {
    report_failure(prompts, "An error occurred while resetting the calculated data: ", [&] {
        invalidate_filtered_data(1, workspace);
        for (ModelBody& body : workspace.bodies) {
            body.last_calculated = -1.0F;
            body.mag_response_valid = body.grav_response_valid = false;
        }
    });
}

void invalidate_filtered_data(int mode, Workspace& workspace) {
    workspace.mag.calculated_filtered = workspace.grav.calculated_filtered = false;
    if (mode != 0) return;
    workspace.mag.observed_filtered = workspace.grav.observed_filtered = false;
}

LineInputs line_inputs(const Workspace& workspace) {
    LineInputs inputs{workspace.definition, workspace.station_spacing, workspace.min_station_spacing,
                      workspace.transform};
    if (workspace.station_spacing > 0 || workspace.min_station_spacing > 0)
        inputs.gap_distance = workspace.gap_distance;
    inputs.igrf_change = igrf_change_text(workspace.source);
    inputs.definition.data_file_date = 0;
    return inputs;
}

void set_line_inputs(Workspace& workspace, const LineInputs& inputs) {
    const Date date = workspace.definition.data_file_date;
    workspace.definition = inputs.definition;
    workspace.definition.data_file_date = date;
    workspace.station_spacing = inputs.station_spacing;
    workspace.min_station_spacing = inputs.min_station_spacing;
    workspace.transform = inputs.transform;
}

void forget_field(Workspace& workspace) {
    workspace.field = {.intensity = 0, .inclination = 0, .declination = 0};
    workspace.source.field_origin.clear();
    workspace.source.field_missing = true;
}

void copy_definitions(const Workspace& from, Workspace& to) {
    set_line_inputs(to, line_inputs(from));
    to.definition.data_file_date = from.definition.data_file_date;
    for_each_setting([&](const auto& row) { row.get(to) = row.get(from); });
    to.display = from.display;
    to.fit = from.fit;
}

void settle_station_window(LineGeometry& line) {
    if (line.station_count <= 0) return;
    if (line.first_station < 1 || line.first_station > line.station_count) {
        line.first_station = 1;
        line.first_distance = 0;
    }
    if (line.last_station <= line.first_station || line.last_station > line.station_count) {
        line.last_station = line.station_count;
        line.last_distance = line.distances[line.station_count];
    }
}

void drop_stations(Workspace& workspace) {
    workspace.station_count = 0;
    workspace.elevations_ready = false;
}

}  // namespace anomalis
