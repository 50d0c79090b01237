#include "model/stale.h"

#include <algorithm>

#include "core/workspace.h"

namespace anomalis::model {

namespace {

template <class Record>
struct Row {
    const char* field;
    double (*value)(const Record&);
    Stale makes;
};

template <float ModelBody::*Field>
double number(const ModelBody& body) {
    return body.*Field;
}
template <std::int32_t ModelBody::*Field>
double number(const ModelBody& body) {
    return body.*Field;
}
template <BodyParam ModelBody::*Field>
double number(const ModelBody& body) {
    return (body.*Field).value;
}

using Body = ModelBody;

/// What a file holds of a body besides (name, colour, marks and limits of the fit) makes nothing out of date.
constexpr std::array<Row<ModelBody>, std::tuple_size_v<BodyInputs>> body_rows{{
    {"type", number<&Body::type>, Stale::responses},
    {"turned_off", number<&Body::turned_off>, Stale::responses},
    {"include_demagnetisation", number<&Body::include_demagnetisation>, Stale::mag_response},
    {"distance", number<&Body::distance>, Stale::responses},
    {"top", number<&Body::top>, Stale::responses},
    {"strike", number<&Body::strike>, Stale::responses},
    {"dip", number<&Body::dip>, Stale::responses},
    {"plunge", number<&Body::plunge>, Stale::responses},
    {"slope", number<&Body::slope>, Stale::responses},
    {"width", number<&Body::width>, Stale::responses},
    {"depth_extent", number<&Body::depth_extent>, Stale::responses},
    {"length", number<&Body::length>, Stale::responses},
    {"offset", number<&Body::offset>, Stale::responses},
    {"susc", number<&Body::susc>, Stale::mag_response},
    {"rem_q", number<&Body::rem_q>, Stale::mag_response},
    {"rem_d", number<&Body::rem_d>, Stale::mag_response},
    {"rem_i", number<&Body::rem_i>, Stale::mag_response},
    {"density", number<&Body::density>, Stale::grav_response},
    {"shell_thickness", number<&Body::shell_thickness>, Stale::responses},
    {"end_thickness", number<&Body::end_thickness>, Stale::responses},
    {"num_sectors", number<&Body::num_sectors>, Stale::responses},
    {"num_segments", number<&Body::num_segments>, Stale::responses},
    {"max_triangle_size", number<&Body::max_triangle_size>, Stale::responses},
}};

constexpr Stale heights = Stale::elevations | Stale::responses | Stale::rows;

/// A base level that floats is found anew with the rows, so it is no setting then.
double fixed_base(const Channel& channel) {
    return channel.float_base == 1 ? 0 : channel.base;
}

/// The window of the fit is there because base levels are means over it.
constexpr std::array<Row<Workspace>, std::tuple_size_v<SettingInputs>> setting_rows{{
    {"formulas", [](const Workspace& w) { return static_cast<double>(w.formulas); }, Stale::responses},
    {"field_intensity", [](const Workspace& w) -> double { return w.field.intensity; }, Stale::mag_response},
    {"field_inclination", [](const Workspace& w) -> double { return w.field.inclination; }, Stale::mag_response},
    {"field_declination", [](const Workspace& w) -> double { return w.field.declination; }, Stale::mag_response},
    {"surface_elevation", [](const Workspace& w) -> double { return w.surface_elevation; }, heights},
    {"sensor_offset", [](const Workspace& w) -> double { return w.sensor_offset; }, heights},
    {"smooth_filter_width", [](const Workspace& w) -> double { return w.processing.smooth_filter_width; },
     Stale::rows},
    {"smooth_filter_type", [](const Workspace& w) -> double { return w.processing.smooth_filter_type; },
     Stale::rows},
    {"residual_filter_width", [](const Workspace& w) -> double { return w.processing.residual_filter_width; },
     Stale::rows},
    {"display_total_gradient", [](const Workspace& w) -> double { return w.processing.display_total_gradient; },
     Stale::rows},
    {"vg_filter_width", [](const Workspace& w) -> double { return w.processing.vg_filter_width; }, Stale::rows},
    {"vg_filter_step", [](const Workspace& w) -> double { return w.processing.vg_filter_step; }, Stale::rows},
    {"mag_base", [](const Workspace& w) { return fixed_base(w.mag); }, Stale::mag_rows},
    {"float_mag_base", [](const Workspace& w) -> double { return w.mag.float_base; }, Stale::mag_rows},
    {"grav_base", [](const Workspace& w) { return fixed_base(w.grav); }, Stale::grav_rows},
    {"float_grav_base", [](const Workspace& w) -> double { return w.grav.float_base; }, Stale::grav_rows},
    {"first_station", [](const Workspace& w) -> double { return w.first_station; }, Stale::rows},
    {"last_station", [](const Workspace& w) -> double { return w.last_station; }, Stale::rows},
}};

/// Takes the values over and tells what those that differ make out of date; all of it while none are known.
template <class Record, std::size_t Count>
Stale compare(const Record& record, const std::array<Row<Record>, Count>& rows,
              std::optional<std::array<double, Count>>& known, Stale all) {
    Stale stale = known ? Stale::nothing : all;
    if (!known) known.emplace();
    for (std::size_t i = 0; i < Count; ++i) {
        const double value = rows[i].value(record);
        // Written so that a value that is no number differs from itself and is looked at again.
        if (!((*known)[i] == value)) stale |= rows[i].makes;
        (*known)[i] = value;
    }
    return stale;
}

void mark(Workspace& w, Stale stale) {
    if (includes(stale, Stale::elevations)) w.elevations_ready = false;
    if (includes(stale, Stale::mag_rows)) w.mag.observed_filtered = w.mag.calculated_filtered = false;
    if (includes(stale, Stale::grav_rows)) w.grav.observed_filtered = w.grav.calculated_filtered = false;
}

void mark(ModelBody& body, Stale stale) {
    if (includes(stale, Stale::mag_response)) body.mag_response_valid = false;
    if (includes(stale, Stale::grav_response)) body.grav_response_valid = false;
}

/// A body that came with a step back or forward may have stood on another line.
Stale fit_to_line(const Workspace& w, ModelBody& body) {
    if (w.station_count <= 0 || body.response.rows() == w.station_count) return Stale::nothing;
    body.response.assign(w.station_count);
    return Stale::responses;
}

}  // namespace

void find_stale(Workspace& workspace) {
    if (workspace.station_count > 0 && workspace.read_as && *workspace.read_as != line_inputs(workspace))
        drop_stations(workspace);
    const Stale settings =
        compare(workspace, setting_rows, workspace.known_settings, Stale::elevations | Stale::responses | Stale::rows);
    mark(workspace, settings);
    for (int number = 1; number <= workspace.body_count; ++number) {
        ModelBody& body = workspace.body(number);
        const Stale own = compare(body, body_rows, body.known_inputs, Stale::responses);
        mark(body, settings | own | fit_to_line(workspace, body));
    }
}

void know_fields(Workspace& workspace) {
    compare(workspace, setting_rows, workspace.known_settings, Stale::nothing);
    for (int number = 1; number <= workspace.body_count; ++number) {
        ModelBody& body = workspace.body(number);
        compare(body, body_rows, body.known_inputs, Stale::nothing);
    }
}

}  // namespace anomalis::model
