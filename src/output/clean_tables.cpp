#include "output/clean_tables.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <utility>
#include <vector>

#include "core/body_parameters.h"
#include "core/failure.h"
#include "core/gaps.h"
#include "core/told_write.h"
#include "core/workspace.h"
#include "filter/gradient_unit.h"
#include "model/burial_depth.h"
#include "output/body_place.h"
#include "output/csv_text.h"
#include "output/interval_columns.h"
#include "output/tables.h"

namespace anomalis::output {

namespace {

struct Channel {
    std::string_view name, unit;
    const ChannelTable& data;
    const Regional& regional;

    bool has_regional() const { return regional.degree != no_regional; }
};

std::vector<Channel> channels_of(const Workspace& workspace) {
    std::vector<Channel> channels;
    if (workspace.has_mag()) channels.push_back({"mag", "_nT", workspace.mag.data, workspace.mag.regional});
    if (workspace.has_grav())
        channels.push_back({"grav", "_mGal", workspace.grav.data, workspace.grav.regional});
    return channels;
}

/// The filter rows of a channel that the tables hold. A gradient is per step of its filter.
struct Row {
    int number;
    std::string name, unit_end;
};

std::string per_taps(std::int32_t tap_step) {
    std::string unit = filter::gradient_unit("", tap_step);
    std::ranges::replace(unit, ' ', '_');
    return unit;
}

std::array<Row, 4> rows_of(const Workspace& w) {
    const bool total = w.processing.display_total_gradient == 1;
    return {{{w.raw_row, "", ""},
             {w.smoothed_row, "_smoothed", ""},
             {w.residual_row, "_residual", ""},
             {total ? w.total_gradient_row : w.gradient_row, total ? "_total_gradient" : "_vertical_gradient",
              per_taps(w.processing.vg_filter_step)}}};
}

constexpr std::array<std::pair<int, std::string_view>, 2> stages{
    {{stage_observed, "_observed"}, {stage_calculated, "_model"}}};

/// The end of a row: a reader of the table alone shall see that its numbers are not sound.
void end_row(const std::vector<std::string>& failures, CsvText& csv) {
    if (!failures.empty()) csv.whole(static_cast<int>(failures.size()));
    csv.end_row();
}

void end_header(const std::vector<std::string>& failures, CsvText& csv) {
    if (!failures.empty()) csv.name("failures");
    csv.end_row();
}

void add_profile_header(const Workspace& workspace, const std::vector<std::string>& failures, CsvText& csv) {
    for (const char* name : {"east_m", "north_m", "sensor_elevation_m", "distance_m"}) csv.name(name);
    if (workspace.definition.dtm_column > 0) csv.name("ground_elevation_m");
    for (const Channel& channel : channels_of(workspace)) {
        for (const auto& [stage, stage_name] : stages) {
            for (const Row& row : rows_of(workspace))
                csv.name(std::string(channel.name) + std::string(stage_name) + row.name +
                         std::string(channel.unit) + row.unit_end);
        }
        if (channel.has_regional())
            csv.name(std::string(channel.name) + "_regional" + std::string(channel.unit));
    }
    end_header(failures, csv);
}

/// Parameters that every body has a number of, whatever its type; of a wire some have no meaning.
constexpr std::array shape_columns{param_width,  param_length, param_depth_extent, param_offset,
                                   param_strike, param_dip,    param_plunge,       param_slope};

void add_model_header(const std::vector<IntervalColumns>& intervals, const std::vector<std::string>& failures,
                      CsvText& csv) {
    const auto sheet_column = [&](ParamCode code) { csv.name(body_parameter(code).column.sheet); };
    for (const char* name : {"body", "name", "type", "in_model"}) csv.name(name);
    sheet_column(param_distance);
    for (const char* name : {"east_m", "north_m", "reference_east_m", "reference_north_m"}) csv.name(name);
    sheet_column(param_top);
    for (const char* name : {"depth_to_top_m", "burial_depth_m"}) csv.name(name);
    for (const ParamCode code : shape_columns) sheet_column(code);
    sheet_column(param_susc);
    csv.name(body_parameter(param_susc).column.wire);
    sheet_column(param_density);
    add_interval_names(intervals, csv);
    end_header(failures, csv);
}

void add_if(bool there, float value, CsvText& csv) {
    there ? csv.number(value) : csv.nothing();
}

/// The highest point of a body below the ground over it; a wire counts from its axis.
double depth_to_top(const Workspace& workspace, const ModelBody& body) {
    const double depth = model::burial_depth(workspace, body);
    return body.type == sphere ? depth - body.width.value / 2.0 : depth;
}

void add_body(const Workspace& workspace, int number, const std::vector<IntervalColumns>& intervals,
              const std::vector<std::string>& failures, CsvText& csv) {
    const ModelBody& body = workspace.body(number);
    const BodyPlace place = body_place(body);
    const std::string_view type = body_type_name(body.type);
    csv.whole(number);
    csv.words(body.name);
    csv.words(type.empty() ? "Type " + std::to_string(body.type) : std::string(type));
    csv.whole(body.turned_off == 1 ? 0 : 1);
    csv.number(body.distance.value);
    csv.number(place.east);
    csv.number(place.north);
    csv.number(body.east);
    csv.number(body.north);
    csv.number(body.top.value);
    const bool placed = workspace.station_count > 0;
    add_if(placed, static_cast<float>(depth_to_top(workspace, body)), csv);
    add_if(placed, static_cast<float>(model::burial_depth(workspace, body)), csv);
    for (const ParamCode code : shape_columns) csv.number(body_param(body, code).value);
    // A wire keeps its current where other bodies keep the susceptibility.
    add_if(workspace.has_mag() && !carries_current(body.type), body.susc.value, csv);
    add_if(workspace.has_mag() && carries_current(body.type), body.susc.value, csv);
    add_if(workspace.has_grav(), body.density.value, csv);
    add_intervals(intervals, workspace, number, csv);
    end_row(failures, csv);
}

}  // namespace

void put_clean_profile_table(const Workspace& workspace, const TextSink& put,
                             const std::vector<std::string>& failures) {
    CsvText head;
    add_profile_header(workspace, failures, head);
    put(head.text());
    const std::vector<Channel> channels = channels_of(workspace);
    const std::array<Row, 4> rows = rows_of(workspace);
    const auto add_station = [&](int i, CsvText& csv) {
        for (const int column : {column_east, column_north, column_sensor})
            csv.number(workspace.stations(i, column));
        csv.number(workspace.distances[i]);
        if (workspace.definition.dtm_column > 0) csv.number(workspace.stations(i, column_ground));
        for (const Channel& channel : channels) {
            for (const auto& stage : stages)
                for (const Row& row : rows) {
                    // A missing value leaves its field empty.
                    const float value = channel.data(i, row.number, stage.first);
                    add_if(is_reading(static_cast<double>(value)) || std::isnan(value), value, csv);
                }
            if (channel.has_regional()) csv.number(channel.regional.at(workspace.distances[i]));
        }
        end_row(failures, csv);
    };
    const auto form = [&](int first, int last, std::string& text) {
        CsvText csv;
        for (int i = first; i <= last; ++i) add_station(i, csv);
        text += csv.text();
    };
    constexpr double bytes_a_field = 11;
    put_rows(workspace.station_count, bytes_a_field * static_cast<double>(5 + 9 * channels.size()), form,
             put);
}

std::string clean_profile_table_text(const Workspace& workspace, const std::vector<std::string>& failures) {
    return whole_text([&](const TextSink& put) { put_clean_profile_table(workspace, put, failures); });
}

std::string clean_model_table_text(const Workspace& workspace, const std::vector<std::string>& failures) {
    CsvText csv;
    const std::vector<IntervalColumns> intervals = interval_columns(workspace);
    add_model_header(intervals, failures, csv);
    for (int number = 1; number <= workspace.body_count; ++number)
        add_body(workspace, number, intervals, failures, csv);
    return csv.text();
}

int write_clean_profile_table(const std::string& path, const Workspace& workspace, Prompts& prompts,
                              const std::vector<std::string>& failures) {
    return report_failure(prompts, write_failure_prefix, [&] {
        write_pieces_telling(prompts, path,
                             [&](const TextSink& put) { put_clean_profile_table(workspace, put, failures); });
    });
}

int write_clean_model_table(const std::string& path, const Workspace& workspace, Prompts& prompts,
                            const std::vector<std::string>& failures) {
    return report_failure(prompts, write_failure_prefix, [&] {
        write_file_telling(prompts, path, clean_model_table_text(workspace, failures));
    });
}

}  // namespace anomalis::output
