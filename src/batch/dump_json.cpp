#include "batch/dump_json.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "batch/batch_prompts.h"
#include "batch/json_stream.h"
#include "batch/workspace_json.h"
#include "core/body_parameters.h"
#include "core/model_mark.h"
#include "report/fit_json.h"
#include "report/json_units.h"

namespace anomalis::batch {

namespace {

using Json = nlohmann::ordered_json;
using JsonStream = JsonStreamOf<Json>;

Json derived_json(const ModelBody& b) {
    return {{"cos_dip", b.cos_dip},
            {"sin_dip", b.sin_dip},
            {"cos_strike", b.cos_strike},
            {"sin_strike", b.sin_strike},
            {"last_calculated", b.last_calculated},
            {"field_north", b.field_north},
            {"field_east", b.field_east},
            {"field_down", b.field_down},
            {"mag_north", b.mag_north},
            {"mag_east", b.mag_east},
            {"mag_down", b.mag_down},
            {"coef_a", b.coef_a},
            {"coef_b", b.coef_b},
            {"coef_c", b.coef_c},
            {"moment_x", b.moment_x},
            {"moment_y", b.moment_y},
            {"moment_z", b.moment_z},
            {"mag_response_valid", b.mag_response_valid},
            {"grav_response_valid", b.grav_response_valid},
            {"solid_point_count", b.solid.points.size()},
            {"solid_facet_count", b.solid.facets.size()},
            {"transformed_point_count", b.solid.transformed_points.size()}};
}

Json params_json(const ModelBody& body) {
    Json params = Json::object();
    for (const BodyParameter& row : body_parameters()) {
        const BodyParam& param = body.*row.slot;
        params[std::string(row.name)] = {
            {"value", param.value}, {"vary", param.vary}, {"min", param.min}, {"max", param.max}};
    }
    return params;
}

/// About the length of a number with all its digits.
constexpr double number_bytes = 16;

/// An array of rows, each the columns `first_column` to `last_column` of a table.
template <class Table>
void put_table(const Table& table, int rows, int first_column, int last_column, JsonStream& out) {
    const int columns = last_column - first_column + 1;
    out.array(rows, columns * number_bytes, [&](int row) {
        Json one = Json::array();
        one.get_ref<Json::array_t&>().reserve(static_cast<std::size_t>(columns));
        for (int column = first_column; column <= last_column; ++column) one.push_back(table(row, column));
        return one;
    });
}

void put_channel(const Workspace& workspace, const ChannelTable& data, JsonStream& out) {
    const std::pair<const char*, int> rows[] = {{"raw", workspace.raw_row},
                                                {"smoothed", workspace.smoothed_row},
                                                {"residual", workspace.residual_row},
                                                {"gradient", workspace.gradient_row},
                                                {"horizontal", workspace.horizontal_row},
                                                {"total_gradient", workspace.total_gradient_row}};
    out.begin_object();
    for (const auto& [stage_name, stage] :
         {std::pair{"observed", stage_observed}, {"calculated", stage_calculated}}) {
        out.name(stage_name);
        out.begin_object();
        for (const auto& [row_name, row] : rows) {
            const std::span<const float> values = data.row(row, stage);
            out.name(row_name);
            out.array(static_cast<int>(values.size()), number_bytes, [values](int station) {
                const float value = values[static_cast<std::size_t>(station - 1)];
                return value <= missing_limit ? Json(nullptr) : Json(value);
            });
        }
        out.end_object();
    }
    out.end_object();
}

/// A channel without a column or without stations is null.
void put_channel_if(bool there, const Workspace& workspace, const ChannelTable& data, JsonStream& out) {
    there ? put_channel(workspace, data, out) : out.value(nullptr);
}

/// A body without its response.
Json body_json(const ModelBody& body) {
    Json json = {{"type", body.type},
                 {"east", body.east},
                 {"north", body.north},
                 {"top_elevation", body.top_elevation},
                 {"colour", body.colour},
                 {"name", body.name},
                 {"description", body.description},
                 {"rock_type", body.rock_type},
                 {"include_demagnetisation", body.include_demagnetisation},
                 {"vary", body.vary},
                 {"turned_off", body.turned_off},
                 {"end_width_a", body.end_width_a},
                 {"end_width_b", body.end_width_b},
                 {"shell_thickness", body.shell_thickness},
                 {"end_thickness", body.end_thickness},
                 {"num_sectors", body.num_sectors},
                 {"num_segments", body.num_segments},
                 {"max_triangle_size", body.max_triangle_size}};
    json.update(derived_json(body));
    json["params"] = params_json(body);
    return json;
}

void put_body(const Workspace& workspace, const ModelBody& body, JsonStream& out) {
    constexpr int response_columns = 5;
    out.begin_object();
    out.members(body_json(body));
    out.name("response");
    put_table(body.response, std::min(workspace.station_count, body.response.rows()), 1, response_columns,
              out);
    out.end_object();
}

/// Bodies with few stations are formed several at a time, each whole; of others each by itself in pieces.
void put_bodies(const Workspace& workspace, JsonStream& out) {
    constexpr double record_bytes = 3000, many_bytes = 1 << 18;
    const double bytes = record_bytes + 5 * number_bytes * workspace.station_count;
    out.begin_array();
    if (bytes > many_bytes) {
        for (int number = 1; number <= workspace.body_count; ++number)
            put_body(workspace, workspace.body(number), out);
    } else {
        out.elements(workspace.body_count, bytes, [&](int first, int last, JsonStream& some) {
            for (int number = first; number <= last; ++number)
                put_body(workspace, workspace.body(number), some);
        });
    }
    out.end_array();
}

/// The regional in force with its value at each station, nT or mGal.
void put_regional(const Workspace& workspace, const Regional& regional, JsonStream& out) {
    const Json json = report::regional_json<Json>(regional);
    if (json.is_null()) return out.value(json);
    out.begin_object();
    out.members(json);
    out.name("values");
    out.array(workspace.station_count, number_bytes,
              [&](int station) { return Json(regional.at(workspace.distances[station])); });
    out.end_object();
}

/// The record of the last fit; `as_fitted` tells whether it speaks of this model.
Json last_fit_json(const Workspace& workspace) {
    if (!workspace.fit) return nullptr;
    Json json = report::fit_json<Json>(*workspace.fit);
    json["as_fitted"] = as_fitted(workspace);
    return json;
}

Json misfit_json(const std::optional<MisfitPair>& misfit) {
    return misfit ? Json(*misfit) : Json(nullptr);
}

}  // namespace

void put_dump(const Workspace& workspace, const DumpedMisfit& misfit, const BatchPrompts& told,
              const TextSink& put) {
    const bool loaded = workspace.station_count > 0;
    JsonStream out(put);
    out.begin_object();
    out.member("workspace", workspace_json<Json>(workspace));
    out.name("stations");
    put_table(workspace.stations, workspace.station_count, column_line, column_ground, out);
    out.name("distances");
    out.array(loaded ? workspace.distances.count() : 0, number_bytes,
              [&](int station) { return Json(workspace.distances[station]); });
    out.name("mag_data");
    put_channel_if(loaded && workspace.has_mag(), workspace, workspace.mag.data, out);
    out.name("grav_data");
    put_channel_if(loaded && workspace.has_grav(), workspace, workspace.grav.data, out);
    out.name("mag_regional");
    put_regional(workspace, workspace.mag.regional, out);
    out.name("grav_regional");
    put_regional(workspace, workspace.grav.regional, out);
    out.name("bodies");
    put_bodies(workspace, out);
    out.member("misfit", {{"mag", misfit_json(misfit.mag)}, {"grav", misfit_json(misfit.grav)}});
    out.member("last_fit", last_fit_json(workspace));
    out.member(report::units_name, report::dump_units_json<Json>(workspace));
    Json words;
    report::add_told(words, told);
    out.members(words);
    out.end_object();
    out.end();
}

}  // namespace anomalis::batch
