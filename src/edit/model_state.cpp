#include "edit/model_state.h"

#include <algorithm>
#include <tuple>
#include <type_traits>
#include <unordered_map>
#include <utility>

#include "core/workspace.h"

namespace anomalis::edit {

namespace {

/// The fields of a body that a file holds, but for its map position.
template <class AnyBody>
auto body_fields(AnyBody& b) {
    return std::tie(b.type, b.colour, b.name, b.description, b.rock_type, b.include_demagnetisation, b.vary,
                    b.turned_off, b.distance, b.top, b.strike, b.dip, b.plunge, b.slope, b.width,
                    b.depth_extent, b.length, b.offset, b.susc, b.rem_q, b.rem_d, b.rem_i, b.density,
                    b.end_width_a, b.end_width_b, b.shell_thickness, b.end_thickness, b.num_sectors,
                    b.num_segments, b.max_triangle_size);
}

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

using BodyValues = decltype(values_of(body_fields(std::declval<ModelBody&>())));
using LoadValues = decltype(values_of(load_fields(std::declval<Workspace&>())));
using SettingValues = decltype(values_of(setting_fields(std::declval<Workspace&>())));

}  // namespace

struct BodyRecord {
    BodyValues values;
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

bool describes(const BodyRecord& record, const ModelBody& body) {
    return body_fields(body) == record.values;
}

/// A base level that floats follows the data.
bool describes(const SettingsRecord& record, const Workspace& w) {
    return setting_fields(w) == record.values && load_fields(w) == record.load &&
           (w.mag.float_base == 1 || w.mag.base == record.mag_base) &&
           (w.grav.float_base == 1 || w.grav.base == record.grav_base);
}

void fill_body(ModelBody& body, const BodyRecord& record) {
    body_fields(body) = record.values;
    body.east = record.east;
    body.north = record.north;
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
            records.push_back(std::make_shared<const BodyRecord>(
                BodyRecord{values_of(body_fields(body)), body.east, body.north}));
        }
    }
    if (same) return before.bodies;
    return std::make_shared<const std::vector<ModelState::Body>>(std::move(records));
}

void restore_settings(Workspace& w, const SettingsRecord& record) {
    load_fields(w) = record.load;
    setting_fields(w) = record.values;
    w.definition.data_file_date = record.data_file_date;
    w.mag.base = record.mag_base;
    w.grav.base = record.grav_base;
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
