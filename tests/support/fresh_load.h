#pragma once

#include <cstring>
#include <span>
#include <string>
#include <utility>

#include "core/session.h"
#include "edit/model_state.h"
#include "intake/load.h"
#include "model/misfit.h"
#include "model/refresh_model.h"
#include "support/response_values.h"
#include "support/scripted_prompts.h"

// The law of a step back or forward: what is on show afterwards is what a fresh load of the same state gives,
// bit for bit.
namespace anomalis {

namespace fresh_load_detail {

/// Compares one thing after the other and keeps the name of the first that differs.
class Comparison {
  public:
    const std::string& first_difference() const { return difference_; }

    template <class T>
    void values(const std::string& name, std::span<const T> have, std::span<const T> wanted) {
        if (!difference_.empty()) return;
        if (have.size() != wanted.size()) {
            difference_ = name + ": " + std::to_string(have.size()) + " values, a fresh load has " +
                          std::to_string(wanted.size());
            return;
        }
        for (std::size_t i = 0; i < have.size(); ++i)
            if (std::memcmp(&have[i], &wanted[i], sizeof(T)) != 0)
                return note(name + "[" + std::to_string(i + 1) + "]", have[i], wanted[i]);
    }
    template <class T>
    void value(const std::string& name, const T& have, const T& wanted) {
        if (difference_.empty() && std::memcmp(&have, &wanted, sizeof(T)) != 0) note(name, have, wanted);
    }

  private:
    template <class T>
    void note(const std::string& name, const T& have, const T& wanted) {
        difference_ = name + ": " + std::to_string(have) + ", a fresh load gives " + std::to_string(wanted);
    }
    std::string difference_;
};

inline void compare_lines(const LineGeometry& have, const LineGeometry& wanted, Comparison& compare) {
    compare.value("station_count", have.station_count, wanted.station_count);
    compare.values("stations", have.stations.span(), wanted.stations.span());
    compare.values("distances", have.distances.span(), wanted.distances.span());
    compare.value("first_station", have.first_station, wanted.first_station);
    compare.value("last_station", have.last_station, wanted.last_station);
    for (double LineGeometry::*field :
         {&LineGeometry::first_distance, &LineGeometry::last_distance, &LineGeometry::x_min,
          &LineGeometry::x_max, &LineGeometry::y_min, &LineGeometry::y_max, &LineGeometry::direction_x,
          &LineGeometry::direction_y, &LineGeometry::line_constant, &LineGeometry::origin_east,
          &LineGeometry::origin_north})
        compare.value("line", have.*field, wanted.*field);
    for (float LineGeometry::*field : {&LineGeometry::z_min, &LineGeometry::z_max, &LineGeometry::dtm_min,
                                       &LineGeometry::dtm_max, &LineGeometry::azimuth})
        compare.value("elevations", have.*field, wanted.*field);
}

inline void compare_levels(const std::string& name, const Channel& have, const Channel& wanted,
                           Comparison& compare) {
    using Level = std::pair<const char*, float Channel::*>;
    for (const auto& [level, field] :
         {Level{"min", &Channel::min}, Level{"max", &Channel::max}, Level{"base", &Channel::base},
          Level{"mean", &Channel::mean}, Level{"calculated base", &Channel::calc_base},
          Level{"calculated mean", &Channel::calc_mean}})
        compare.value(name + " " + level, have.*field, wanted.*field);
}

inline void compare_rows(const std::string& name, const Channel& have, const Channel& wanted,
                         Comparison& compare) {
    for (const Stage stage : {stage_observed, stage_calculated})
        for (int row = row_raw; row <= row_total_gradient; ++row)
            compare.values(name + " row " + std::to_string(row) + " stage " + std::to_string(stage),
                           have.data.row(row, stage), wanted.data.row(row, stage));
}

inline void compare_bodies(const Workspace& have, const Workspace& wanted, Comparison& compare) {
    compare.value("body_count", have.body_count, wanted.body_count);
    for (int number = 1; number <= have.body_count && compare.first_difference().empty(); ++number) {
        const ModelBody& body = have.body(number);
        const ModelBody& fresh = wanted.body(number);
        const std::string name = "body " + std::to_string(number);
        compare.value(name + " burial depth", body.top_elevation, fresh.top_elevation);
        compare.value(name + " east", body.east, fresh.east);
        compare.value(name + " north", body.north, fresh.north);
        compare.value(name + " strike", body.strike.value, fresh.strike.value);
        compare.values<float>(name + " response", all_values(body.response), all_values(fresh.response));
    }
}

inline void compare_misfits(const Workspace& have, const Workspace& wanted, Comparison& compare) {
    for (const int channel : {channel_mag, channel_grav}) {
        Faults faults;
        const MisfitPair scale = model::misfit_scale_of(channel);
        const MisfitPair mine = model::channel_misfit(have, have.channel(channel).data, scale, faults);
        const MisfitPair fresh = model::channel_misfit(wanted, wanted.channel(channel).data, scale, faults);
        compare.values<float>("misfit of channel " + std::to_string(channel), mine, fresh);
    }
}

}  // namespace fresh_load_detail

/// How a workspace that was brought up to date (twice, where there are spheres) differs from the same state
/// loaded and calculated in a session of its own; "" when nothing does. Without stations nothing is compared.
/// Also for programs without a test framework.
inline std::string difference_from_fresh_load(const Workspace& workspace) {
    if (workspace.station_count <= 0) return {};
    ScriptedPrompts prompts;
    Session session(prompts, Settings{});
    Workspace& fresh = session.workspace;
    fresh = edit::copy_of_model(workspace);
    if (intake::load_locations(fresh, prompts) < 0)
        return "a fresh load fails: " + (prompts.messages.empty() ? "" : prompts.messages.front());
    model::finish_load(session);
    model::refresh_model(session);
    model::refresh_model(session);
    fresh_load_detail::Comparison compare;
    fresh_load_detail::compare_lines(workspace, fresh, compare);
    // Without a column a channel has no levels.
    if (workspace.has_mag()) fresh_load_detail::compare_levels("magnetic", workspace.mag, fresh.mag, compare);
    if (workspace.has_grav())
        fresh_load_detail::compare_levels("gravity", workspace.grav, fresh.grav, compare);
    fresh_load_detail::compare_rows("magnetic", workspace.mag, fresh.mag, compare);
    fresh_load_detail::compare_rows("gravity", workspace.grav, fresh.grav, compare);
    fresh_load_detail::compare_bodies(workspace, fresh, compare);
    if (compare.first_difference().empty()) fresh_load_detail::compare_misfits(workspace, fresh, compare);
    return compare.first_difference();
}

}  // namespace anomalis
