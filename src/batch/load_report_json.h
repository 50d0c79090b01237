#pragma once

#include <optional>
#include <string>

#include "intake/load_report.h"
#include "report/fit_json.h"

// What a load or an import did, as JSON. The type of a JSON value is a parameter: this header shows nothing
// of the library that has it.
namespace anomalis::batch {

template <class Json>
Json dropped_json(const intake::RowLoss& loss) {
    return {{"why", loss.why},
            {"column", loss.column},
            {"rows", loss.count},
            {"first_line", loss.first_line > 0 ? Json(loss.first_line) : Json(nullptr)}};
}

template <class Json>
Json repeated_json(const std::optional<intake::RepeatedReading>& repeated) {
    if (!repeated) return nullptr;
    return {{"channel", repeated->channel},
            {"value", repeated->value},
            {"stations", repeated->stations},
            {"at_m", repeated->at_m}};
}

/// Null stands for what is not known. `problem` says why nothing was loaded, `check` what can hardly be
/// meant.
template <class Json>
Json load_report_json(const intake::LoadReport& report) {
    Json json = {{"file", report.file},
                 {"line", report.line.empty() ? Json(nullptr) : Json(report.line)},
                 {"lines_in_file", report.lines_in_file},
                 {"rows_read", report.rows_read},
                 {"rows_dropped", Json::array()},
                 {"rows_merged", report.merged},
                 {"missing_values", Json::object()},
                 {"stations", report.stations},
                 {"length_m", report::number_or_null<Json>(report.length_m)},
                 {"typical_spacing_m", report::number_or_null<Json>(report.typical_spacing_m)},
                 {"largest_gap_m", report::number_or_null<Json>(report.largest_gap_m)},
                 {"largest_gap_at_m", report::number_or_null<Json>(report.largest_gap_at_m)},
                 {"off_line_m", report::number_or_null<Json>(report.off_line_m)},
                 {"direction_deg", report::number_or_null<Json>(report.direction_deg)},
                 {"sensor_over_ground_m", nullptr},
                 {"duplicates", report.duplicates},
                 {"stretches", report.stretches},
                 {"bends", report.bends},
                 {"looks_like_degrees", report.looks_like_degrees},
                 {"repeated_reading", repeated_json<Json>(report.repeated)},
                 {"coordinate_system",
                  report.coordinate_system.empty() ? Json(nullptr) : Json(report.coordinate_system)},
                 {"field_origin", report.field_origin.empty() ? Json(nullptr) : Json(report.field_origin)},
                 {"check", Json::array()},
                 {"problem", report.problem.empty() ? Json(nullptr) : Json(report.problem)}};
    for (const intake::RowLoss& loss : report.dropped)
        json["rows_dropped"].push_back(dropped_json<Json>(loss));
    for (const intake::ChannelNulls& nulls : report.nulls)
        json["missing_values"][nulls.channel] = nulls.count;
    if (report.least_clearance_m)
        json["sensor_over_ground_m"] =
            Json::array({report::number_or_null<Json>(*report.least_clearance_m),
                         report::number_or_null<Json>(*report.greatest_clearance_m)});
    for (const intake::ReportItem& item : intake::report_items(report))
        if (item.severity == Severity::doubt) json["check"].push_back(item.text);
    return json;
}

}  // namespace anomalis::batch
