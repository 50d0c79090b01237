#include "edit/model_state.h"

#include <algorithm>
#include <array>
#include <tuple>
#include <type_traits>
#include <unordered_map>
#include <utility>

#include "core/body_fields.h"
#include "core/body_parameters.h"
#include "core/workspace.h"

namespace anomalis::edit {

namespace {

/// How the data are read: another value needs another load.
template <class AnyWorkspace>
auto load_fields(AnyWorkspace& w) {
    auto& d = w.definition;
    return std::tie(d.data_file, d.first_data_line, d.read_increment, d.last_data_line,
                    d.spare_definition_field, d.x_column, d.y_column, d.z_column, d.dtm_column, d.mag_column,
                    d.grav_column, w.station_spacing, w.min_station_spacing, w.transform);
}

template <class AnyWorkspace>
auto setting_fields(AnyWorkspace& w) {
    auto& display = w.display;
    return std::tie(
        w.formulas, w.field.intensity, w.field.inclination, w.field.declination, w.surface_elevation,
        w.sensor_offset, w.drawing.profile_grid_spacing, w.drawing.depth_grid_spacing,
        w.drawing.infinite_body_length, w.drawing.finite_body_left_clip, w.drawing.finite_body_right_clip,
        w.processing.smooth_filter_width, w.processing.smooth_filter_type, w.processing.residual_filter_width,
        w.processing.display_total_gradient, w.processing.vg_filter_width, w.processing.vg_filter_step,
        w.mag.float_base, w.grav.float_base, w.first_station, w.last_station, w.first_distance,
        w.last_distance, display.show_body_label, display.maintain_aspect_ratio, display.tie_pipe_depth_susc,
        display.tie_factor);
}

/// The values behind references.
template <class... Fields>
std::tuple<std::remove_cv_t<Fields>...> values_of(const std::tuple<Fields&...>& fields) {
    return fields;
}

using BodyValues = decltype(values_of(body_field_values(std::declval<ModelBody&>())));
using Parameters = std::array<BodyParam, body_parameter_count>;
using LoadValues = decltype(values_of(load_fields(std::declval<Workspace&>())));
using SettingValues = decltype(values_of(setting_fields(std::declval<Workspace&>())));

}  // namespace

/// What a file holds of a body.
struct BodyRecord {
    BodyValues values;
    Parameters parameters;  ///< in the order of the table
    double east = 0, north = 0;

    std::int32_t type() const { return std::get<0>(values); }
};

struct SettingsRecord {
    LoadValues load;
    SettingValues values;
    Date data_file_date = 0;
    float mag_base = 0, grav_base = 0;
};

namespace {

/// The map position follows from the distance.
bool describes(const BodyRecord& record, const ModelBody& body) {
    const auto table = body_parameters();
    return body_field_values(body) == record.values &&
           std::equal(
               table.begin(), table.end(), record.parameters.begin(),
               [&](const BodyParameter& row, const BodyParam& value) { return body.*row.slot == value; });
}

BodyRecord record_of(const ModelBody& body) {
    BodyRecord record{values_of(body_field_values(body)), {}, body.east, body.north};
    auto parameter = record.parameters.begin();
    for (const BodyParameter& row : body_parameters()) *parameter++ = body.*row.slot;
    return record;
}

/// A base level that floats follows the data.
bool describes(const SettingsRecord& record, const Workspace& w) {
    return setting_fields(w) == record.values && load_fields(w) == record.load &&
           (w.mag.float_base == 1 || w.mag.base == record.mag_base) &&
           (w.grav.float_base == 1 || w.grav.base == record.grav_base);
}

void fill_body(ModelBody& body, const BodyRecord& record) {
    body_field_values(body) = record.values;
    auto parameter = record.parameters.begin();
    for (const BodyParameter& row : body_parameters()) body.*row.slot = *parameter++;
    body.east = record.east;
    body.north = record.north;
    invalidate_body(body);
}

/// The same body may have moved when others before it came or went, so it is looked for from both ends.
const ModelState::Body* find_record(const ModelBody& body, std::size_t index, std::size_t count,
                                    const std::vector<ModelState::Body>& before) {
    if (index < before.size() && describes(*before[index], body)) return &before[index];
    const std::size_t from_end = count - index;
    if (from_end > before.size() || before.size() == count) return nullptr;
    const ModelState::Body& record = before[before.size() - from_end];
    return describes(*record, body) ? &record : nullptr;
}

std::shared_ptr<const std::vector<ModelState::Body>> capture_bodies(const Workspace& w,
                                                                    const ModelState& before) {
    static const std::vector<ModelState::Body> none;
    const auto& old = before.bodies ? *before.bodies : none;
    const auto count = static_cast<std::size_t>(std::max(w.body_count, 0));
    bool same = before.bodies && old.size() == count;
    std::vector<ModelState::Body> records;
    records.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const ModelBody& body = w.bodies[i + 1];
        if (const ModelState::Body* record = find_record(body, i, count, old)) {
            same = same && *record == old[i];
            records.push_back(*record);
        } else {
            same = false;
            records.push_back(std::make_shared<const BodyRecord>(record_of(body)));
        }
    }
    if (same) return before.bodies;
    return std::make_shared<const std::vector<ModelState::Body>>(std::move(records));
}

/// True when the stations had to be dropped.
bool restore_settings(Workspace& w, const SettingsRecord& record) {
    const bool reload = load_fields(w) != record.load;
    load_fields(w) = record.load;
    setting_fields(w) = record.values;
    w.definition.data_file_date = record.data_file_date;
    w.mag.base = record.mag_base;
    w.grav.base = record.grav_base;
    if (reload) drop_stations(w);
    w.elevations_ready = false;
    w.graph_ranges_ready = false;
    invalidate_filtered_data(0, w);
    return reload;
}

/// Bodies that `from` holds too move to their new places; the others take what slots are left.
void rearrange_bodies(Workspace& w, const std::vector<ModelState::Body>& from,
                      const std::vector<ModelState::Body>& to) {
    std::unordered_map<const BodyRecord*, std::size_t> places;
    const auto standing = std::min(from.size(), static_cast<std::size_t>(std::max(w.body_count, 0)));
    for (std::size_t i = 0; i < standing; ++i) places.emplace(from[i].get(), i + 1);
    const std::size_t slots = std::max(w.bodies.size(), to.size() + 1);
    std::vector<ModelBody> bodies(slots);
    std::vector<bool> taken(w.bodies.size()), placed(slots);
    for (std::size_t i = 0; i < to.size(); ++i) {
        const auto place = places.find(to[i].get());
        if (place == places.end() || taken[place->second]) continue;
        taken[place->second] = placed[i + 1] = true;
        bodies[i + 1] = std::move(w.bodies[place->second]);
    }
    std::size_t spare = 0;
    for (std::size_t i = 1; i < slots; ++i) {
        if (placed[i]) continue;
        while (spare < taken.size() && taken[spare]) ++spare;
        if (spare < taken.size()) bodies[i] = std::move(w.bodies[spare++]);
        if (i <= to.size()) fill_body(bodies[i], *to[i - 1]);
    }
    w.bodies = std::move(bodies);
    w.body_capacity = static_cast<std::int32_t>(slots) - 1;
    w.body_count = static_cast<std::int32_t>(to.size());
}

void restore_bodies(Workspace& w, const std::vector<ModelState::Body>& from,
                    const std::vector<ModelState::Body>& to) {
    if (from.size() != to.size() || static_cast<std::size_t>(w.body_count) != to.size()) {
        rearrange_bodies(w, from, to);
    } else {
        for (std::size_t i = 0; i < to.size(); ++i)
            if (from[i] != to[i]) fill_body(w.bodies[i + 1], *to[i]);
    }
    for (ModelBody& body : w.bodies)
        if (w.station_count > 0 && body.response.rows() != w.station_count) {
            body.response.assign(w.station_count);
            invalidate_body(body);
        }
    invalidate_filtered_data(1, w);
}

}  // namespace

ModelState capture_state(const Workspace& w, const ModelState& before) {
    ModelState state;
    state.settings = before.settings && describes(*before.settings, w)
                         ? before.settings
                         : std::make_shared<const SettingsRecord>(
                               SettingsRecord{values_of(load_fields(w)), values_of(setting_fields(w)),
                                              w.definition.data_file_date, w.mag.base, w.grav.base});
    state.bodies = capture_bodies(w, before);
    return state;
}

StateDifference compare_states(const ModelState& from, const ModelState& to, int current_body) {
    StateDifference difference;
    difference.settings = from.settings != to.settings;
    if (from.bodies == to.bodies) return difference;
    const auto& a = *from.bodies;
    const auto& b = *to.bodies;
    difference.list = a.size() != b.size();
    for (std::size_t i = 0; i < b.size(); ++i) {
        if (i < a.size() && a[i] == b[i]) continue;
        const int number = static_cast<int>(i) + 1;
        if (difference.first_changed == 0) difference.first_changed = number;
        if (number == current_body) difference.current_changed = true;
        if (i < a.size() && a[i]->type() != b[i]->type()) difference.list = true;
    }
    if (difference.first_changed == 0) difference.first_changed = static_cast<int>(b.size());
    return difference;
}

void restore_state(Workspace& w, const ModelState& from, const ModelState& to) {
    restore_bodies(w, *from.bodies, *to.bodies);
    if (from.settings == to.settings) return;
    restore_settings(w, *to.settings);
    for (ModelBody& body : w.bodies) invalidate_body(body);
}

Workspace copy_of_model(const Workspace& workspace) {
    Workspace copy;
    copy.bodies.resize(1);
    copy.body_capacity = 0;
    copy.display = workspace.display;
    const ModelState state = capture_state(workspace);
    restore_bodies(copy, {}, *state.bodies);
    restore_settings(copy, *state.settings);
    copy.definition.data_file_date = workspace.definition.data_file_date;
    copy.model_file = workspace.model_file;
    copy.model_file_date = workspace.model_file_date;
    return copy;
}

}  // namespace anomalis::edit
