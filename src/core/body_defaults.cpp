#include "core/body_defaults.h"

#include "core/body_parameters.h"
#include "core/numbers.h"
#include "core/paths.h"
#include "core/prompts.h"
#include "core/settings.h"
#include "core/workspace.h"

namespace anomalis {

namespace {

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
    body.dip.value = is_round(body.type) ? 0.0F : 90.0F;
    body.plunge.value = body.slope.value = body.offset.value = 0;
    body.width.value = 100;
    body.depth_extent.value = body.length.value = 250;
    body.density.value = default_density;
    body.susc.value = default_susceptibility;
    body.rem_q.value = body.rem_i.value = body.rem_d.value = 0;
    body.end_width_a = body.end_width_b = 0;
    body.shell_thickness = body.end_thickness = 0;
    body.num_sectors = 12;
    body.num_segments = 1;
    body.max_triangle_size = 0;
    body.last_calculated = -1.0F;
    body.colour = default_body_colour;
}

void set_default_vary(ModelBody& body) {
    for (const ParamCode code :
         {param_distance, param_top, param_dip, param_width, param_susc, param_density})
        body_param(body, code).vary = 1;
    for (const ParamCode code : {param_strike, param_depth_extent, param_rem_q, param_rem_d, param_rem_i})
        body_param(body, code).vary = 0;
}

}  // namespace

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
        for (const BodyParameter& row : body_parameters())
            (body.*row.slot).min = (body.*row.slot).max = unset;
        body.mag_response_valid = body.grav_response_valid = false;
    });
}

}  // namespace anomalis
