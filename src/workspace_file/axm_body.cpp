#include "workspace_file/axm_body.h"

#include <algorithm>

#include "core/angles.h"
#include "core/body_defaults.h"
#include "core/body_parameters.h"
#include "core/numbers.h"
#include "core/text.h"
#include "core/workspace.h"
#include "workspace_file/axm_lines.h"
#include "workspace_file/axm_text.h"

namespace anomalis::workspace_file {

namespace {

void read_limits(LineItems& items, BodyParam& param) {
    param.vary = items.single();
    param.min = items.single();
    param.max = items.single();
}

void read_param(LineItems& items, BodyParam& param) {
    param.value = items.single();
    read_limits(items, param);
}

float numeric_or(LineItems& items, float fallback) {
    const std::string_view token = items.token();
    double value = 0;
    if (parse_number(token, value)) return to_single(value);
    items.note_unreadable(token, shortest_text(fallback));
    return fallback;
}

/// The name behind the "turned off" mark. Not taken as a token: that would drop a comma or an apostrophe that
/// the name begins with.
std::string_view behind_mark(std::string_view text) {
    const std::size_t end = std::min(text.find_first_of(" \t,;'"), text.size());
    const bool separator = end < text.size() && text[end] != ' ' && text[end] != '\t';
    return trim_blanks(text.substr(end + (separator ? 1 : 0)));
}

/// What follows the type: flags, colour and name. The token before the name is the "turned off" mark; it is
/// never restored, a body comes back switched on. In files from before that mark a name that starts with
/// those digits loses its first word.
void read_heading(LineItems& items, ModelBody& body) {
    body.include_demagnetisation = items.integer();
    body.vary = items.integer();
    if (!items.left()) return;
    body.colour = items.integer();
    const std::string_view rest = trim_blanks(items.rest());
    body.name = rest.starts_with('0') || rest.starts_with('1') ? behind_mark(rest) : rest;
}

void read_position(LineItems items, std::int32_t version, ModelBody& body) {
    body.distance.value = items.single();
    body.east = items.number();
    body.north = items.number();
    body.top.value = items.single();
    if (version <= 0) return;
    read_limits(items, body.distance);
    read_limits(items, body.top);
    if (version < 6) return;
    items.if_left(body.end_width_a);
    items.if_left(body.end_width_b);
    items.if_left(body.shell_thickness);
    items.if_left(body.end_thickness);
    items.if_left(body.num_sectors);
    items.if_left(body.num_segments);
    items.if_left(body.max_triangle_size);
    items.end();
}

void read_shape(LineItems items, std::int32_t version, ModelBody& body) {
    for (const ParamCode code : shape_line) body_param(body, code).value = items.single();
    if (version <= 0) return;
    for (const ParamCode code : shape_line) read_limits(items, body_param(body, code));
    items.end();
}

/// A line of one parameter.
void read_one(LineItems items, BodyParam& param) {
    read_param(items, param);
    items.end();
}

void read_tilts(LineItems items, ModelBody& body) {
    read_param(items, body.plunge);
    if (items.left()) read_param(items, body.slope);
    items.end();
}

void read_properties(LineItems items, std::int32_t version, ModelBody& body) {
    for (const ParamCode code : magnetic_line)
        body_param(body, code).value =
            code == param_susc ? numeric_or(items, default_susceptibility) : items.single();
    if (version > 0) {
        for (const ParamCode code : magnetic_line) read_limits(items, body_param(body, code));
    }
    if (!items.left()) return;
    body.density.value = numeric_or(items, default_density);
    if (version <= 0) return;
    read_limits(items, body.density);
    items.end();
}

/// Files up to format 2 held susceptibilities in cgs units and half the density, files up to format 6 the
/// remanence of a sheet as a magnetisation.
void convert_old_units(std::int32_t version, float field_intensity, ModelBody& body) {
    if (version <= 2) {
        body.susc.value = to_single(body.susc.value * (4 * pi));
        body.density.value = to_single(body.density.value * 2.0);
    }
    if (version <= 6 && !is_round(body.type)) {
        const double induced = double{body.susc.value} * field_intensity;
        const bool usable = body.susc.value > 0 && field_intensity > 0;
        body.rem_q.value = usable ? to_single(body.rem_q.value / induced) : 0.0F;
    }
    if (!is_round(body.type) && body.dip.value < 0) body.dip.value = -body.dip.value;
}

}  // namespace

void read_body(AxmLines& lines, std::int32_t& version, Workspace& workspace, int number,
               const Settings& settings, Prompts& prompts) {
    LineItems heading = lines.items();
    ModelBody& body = workspace.body(number);
    body = ModelBody{};
    const std::int32_t type = heading.integer();
    body.type = type;
    initialise_body(workspace, number, settings, prompts);
    body.type = type;  // the file stands above a default type of the settings
    if (version == 0 && heading.left()) version = 1;
    if (version > 0) read_heading(heading, body);
    if (version >= 2) {
        body.description = lines.next();
        body.rock_type = lines.next();
    }
    read_position(lines.items(), version, body);
    read_shape(lines.items(), version, body);
    if (version >= 3) {
        read_one(lines.items(), body.length);
        read_one(lines.items(), body.offset);
    }
    if (version >= 4) read_tilts(lines.items(), body);
    read_properties(lines.items(), version, body);
    convert_old_units(version, workspace.field.intensity, body);
}

}  // namespace anomalis::workspace_file
