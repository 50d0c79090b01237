#include "edit/model_state.h"

#include <algorithm>
#include <array>
#include <tuple>
#include <type_traits>
#include <unordered_map>
#include <utility>

#include "core/body_fields.h"
#include "core/body_parameters.h"
#include "core/setting_fields.h"
#include "core/workspace.h"

namespace anomalis::edit {

namespace {

/// References to all settings.
template <class AnyWorkspace>
auto setting_values(AnyWorkspace& w) {
    return std::apply([&](const auto&... row) { return std::tie(row.get(w)...); }, setting_fields);
}

/// The values behind references.
template <class... Fields>
std::tuple<std::remove_cv_t<Fields>...> values_of(const std::tuple<Fields&...>& fields) {
    return fields;
}

using BodyValues = decltype(values_of(body_field_values(std::declval<ModelBody&>())));
using Parameters = std::array<BodyParam, body_parameter_count>;
using SettingValues = decltype(values_of(setting_values(std::declval<Workspace&>())));

}  // namespace

/// What a file holds of a body.
struct BodyRecord {
    BodyValues values;
    Parameters parameters;  ///< in the order of the table
    double east = 0, north = 0;

    std::int32_t type() const { return std::get<0>(values); }
};

struct SettingsRecord {
    LineInputs line;
    SettingValues values;
    Date data_file_date = 0;
};

namespace {

/// A sphere takes its strike from the line when it is calculated.
bool agrees(const BodyParameter& row, const ModelBody& body, BodyParam value) {
    if (row.code == param_strike && body.type == sphere) value.value = body.strike.value;
    return body.*row.slot == value;
}

/// The map position follows from the distance.
bool describes(const BodyRecord& record, const ModelBody& body) {
    const auto table = body_parameters();
    return body_field_values(body) == record.values &&
           std::equal(
               table.begin(), table.end(), record.parameters.begin(),
               [&](const BodyParameter& row, const BodyParam& value) { return agrees(row, body, value); });
}

BodyRecord record_of(const ModelBody& body) {
    BodyRecord record{values_of(body_field_values(body)), {}, body.east, body.north};
    auto parameter = record.parameters.begin();
    for (const BodyParameter& row : body_parameters()) *parameter++ = body.*row.slot;
    return record;
}

template <std::size_t... Index>
bool settings_agree(const SettingValues& values, const Workspace& w, std::index_sequence<Index...>) {
    const auto agrees = [&](const auto& row, const auto& value) {
        return !row.counts(w) || row.get(w) == value;
    };
    return (agrees(std::get<Index>(setting_fields), std::get<Index>(values)) && ...);
}

bool describes(const SettingsRecord& record, const Workspace& w) {
    constexpr auto all = std::make_index_sequence<std::tuple_size_v<SettingValues>>();
    return settings_agree(record.values, w, all) && line_inputs(w) == record.line;
}

void fill_body(ModelBody& body, const BodyRecord& record) {
    body_field_values(body) = record.values;
    auto parameter = record.parameters.begin();
    for (const BodyParameter& row : body_parameters()) body.*row.slot = *parameter++;
    // The record may have been made before a calculation found the place: it is to be found again.
    if (body.east != record.east || body.north != record.north) body.known_inputs.reset();
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
            records.push_back(std::make_shared<const BodyRecord>(record_of(body)));
        }
    }
    if (same) return before.bodies;
    return std::make_shared<const std::vector<ModelState::Body>>(std::move(records));
}

void restore_settings(Workspace& w, const SettingsRecord& record) {
    const bool same_file = w.definition.data_file == record.line.definition.data_file;
    set_line_inputs(w, record.line);
    setting_values(w) = record.values;
    if (!same_file) w.definition.data_file_date = record.data_file_date;
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
                         : std::make_shared<const SettingsRecord>(SettingsRecord{
                               line_inputs(w), values_of(setting_values(w)), w.definition.data_file_date});
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
    copy.fit = workspace.fit;
    copy.model_file = workspace.model_file;
    copy.model_file_date = workspace.model_file_date;
    return copy;
}

}  // namespace anomalis::edit
