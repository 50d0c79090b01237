#include "core/workspace.h"

#include <utility>

#include "core/numbers.h"
#include "core/paths.h"
#include "core/prompts.h"
#include "core/settings.h"

namespace anomalis {

namespace {

constexpr std::int32_t capacity_step = 16;

template <class Store>
void apply_default(const Settings& settings, std::string_view key, Store store) {
    const std::string text = settings.get(settings_section, key);
    if (is_numeric(text)) store(prefix_number(text));
}

void apply_body_defaults(ModelBody& body, const Settings& settings) {
    const auto value_of = [&](std::string_view key, BodyParam& param) {
        apply_default(settings, key, [&](double v) { param.value = to_single(v); });
    };
    apply_default(settings, "Type", [&](double v) { body.type = round_to_even(v); });
    value_of("Dip", body.dip);
    value_of("Thick", body.width);
    value_of("Depth", body.depth_extent);
    value_of("StrikeLength", body.length);
    value_of("Density", body.density);
    value_of("Susc", body.susc);
    apply_default(settings, "Colour", [&](double v) { body.colour = round_to_even(v); });
}

void set_default_values(ModelBody& body) {
    body.strike.value = 0;
    // Chosen before the settings: a `Type` setting does not change the dip.
    body.dip.value = body.type < pipe ? 90.0F : 0.0F;
    body.plunge.value = body.slope.value = body.offset.value = 0;
    body.width.value = 100;
    body.depth_extent.value = body.length.value = 250;
    body.density.value = 2.67F;
    body.susc.value = 50000;
    body.rem_q.value = body.rem_i.value = body.rem_d.value = 0;
    body.end_width_a = body.end_width_b = 0;
    body.shell_thickness = body.end_thickness = 0;
    body.num_sectors = 12;
    body.num_segments = 1;
    body.max_triangle_size = 0;
    body.last_calculated = -1.0F;
    body.colour = 0xFF0000;
}

void set_default_vary(ModelBody& body) {
    for (BodyParam ModelBody::*slot : {&ModelBody::distance, &ModelBody::top, &ModelBody::dip,
                                       &ModelBody::width, &ModelBody::susc, &ModelBody::density})
        (body.*slot).vary = 1;
    for (BodyParam ModelBody::*slot : {&ModelBody::strike, &ModelBody::depth_extent, &ModelBody::rem_q,
                                       &ModelBody::rem_d, &ModelBody::rem_i})
        (body.*slot).vary = 0;
}

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

}  // namespace

void initialise_workspace(Workspace& workspace, Prompts& prompts) {
    report_failure(prompts, "An error occurred while initialising the AXM workspace: ", [&] {
        Workspace fresh;
        fresh.bodies.resize(static_cast<std::size_t>(fresh.body_capacity) + 1);
        keep_fields_without_default(workspace, fresh);
        workspace = std::move(fresh);
    });
}

void initialise_body(Workspace& workspace, int index, const Settings& settings, Prompts& prompts) {
    report_failure(prompts, "An error occurred while initialising the body paremeters: ", [&] {
        ModelBody& body = workspace.body(index);
        body.name = base_name(workspace.definition.data_file) + " Body " + format_number(index, "0");
        body.description.clear();
        body.rock_type.clear();
        set_default_values(body);
        apply_body_defaults(body, settings);
        body.include_demagnetisation = 0;
        body.vary = 1;
        body.turned_off = 0;
        set_default_vary(body);
        for (const ParamSlot& slot : param_slots()) (body.*slot.slot).min = (body.*slot.slot).max = unset;
        body.mag_response_valid = body.grav_response_valid = false;
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
    inputs.definition.data_file_date = 0;
    return inputs;
}

void drop_stations(Workspace& workspace) {
    workspace.station_count = 0;
    workspace.elevations_ready = false;
}

}  // namespace anomalis
