#include <utility>

#include "core/numbers.h"
#include "core/shown_text.h"
#include "intake/load_report.h"
#include "intake/report_words.h"

namespace anomalis::intake {

namespace {

std::string doubt_of_degrees() {
    return std::string("the coordinates look like degrees and were taken as metres: ") + import_hint +
           " projects them";
}

std::string doubt_of_lines(const LoadReport& report) {
    return "the rows turn back or jump and are " + std::to_string(report.stretches) + " stretches of " +
           length_text(report.stretches_length_m) + " together, here one line of " +
           length_text(report.length_m) + ": this looks like several lines, use " + import_hint;
}

std::string doubt_of_clearance(const LoadReport& report) {
    return "the sensor is at or below the ground (" + metres(*report.least_clearance_m) +
           " over it at the least): check Sensor Height, the column of the ground, and their units";
}

std::string doubt_of_repeat(const RepeatedReading& repeated) {
    return "the " + repeated.channel + " stays at " + value_text(repeated.value, repeated.channel) +
           " over " + std::to_string(repeated.stations) + " readings from " + metres(repeated.at_m) +
           " on, as of an instrument that hangs: check the readings there";
}

/// In the order in which they should be looked at.
std::vector<std::string> doubts_of(const LoadReport& report) {
    std::vector<std::string> doubts;
    if (report.looks_like_degrees) doubts.push_back(doubt_of_degrees());
    if (report.stretches > 1) doubts.push_back(doubt_of_lines(report));
    doubts.insert(doubts.end(), report.warnings.begin(), report.warnings.end());
    if (report.least_clearance_m && *report.least_clearance_m <= 0)
        doubts.push_back(doubt_of_clearance(report));
    if (report.repeated) doubts.push_back(doubt_of_repeat(*report.repeated));
    return doubts;
}

}  // namespace

bool has_doubts(const LoadReport& report) {
    return !report.problem.empty() || !doubts_of(report).empty();
}

std::vector<ReportItem> report_items(const LoadReport& report) {
    std::vector<ReportItem> items;
    const auto add = [&items](const char* label, std::string text, Severity severity = Severity::remark) {
        items.push_back({label, std::move(text), severity});
    };
    if (!report.problem.empty()) add("Not loaded", report.problem, Severity::failure);
    for (const std::string& doubt : doubts_of(report)) add("Check", doubt, Severity::doubt);
    if (!report.file.empty()) add("Data file", shown_text(report.file));
    if (!report.line.empty())
        add("Line", shown_text(report.line) +
                        (report.lines_in_file > 1 ? ", one of " + std::to_string(report.lines_in_file) : ""));
    add("Rows read", std::to_string(report.rows_read));
    for (const RowLoss& loss : report.dropped)
        add("Rows dropped", std::to_string(loss.count) + ": " + shown_text(loss.why) +
                                (loss.column.empty() ? "" : ", " + shown_text(loss.column)) +
                                (loss.first_line > 0 ? (loss.count > 1 ? ", first in line " : ", line ") +
                                                           std::to_string(loss.first_line)
                                                     : ""));
    for (const ChannelNulls& nulls : report.nulls)
        add("Without a value", std::to_string(nulls.count) + " of the " + shown_text(nulls.channel));
    if (report.stations <= 0) return items;
    add("Stations",
        std::to_string(report.stations) +
            (report.merged > 0 ? ", " + std::to_string(report.merged) + " rows merged with their neighbours"
                               : ""));
    if (report.duplicates > 0)
        add("Same place",
            counted(report.duplicates, "row stands", "rows stand") + " at the place of the row before");
    add("Length", format_number(report.length_m, "0.00") + " m");
    add("Spacing", metres(report.typical_spacing_m) + " typical, largest " + metres(report.largest_gap_m) +
                       " at " + metres(report.largest_gap_at_m));
    add("Off the line", "at most " + metres(report.off_line_m) +
                            (report.bends ? ", with a bend of more than 20 degrees" : ""));
    add("Direction", format_number(report.direction_deg, "0.0") + " degrees clockwise from grid north");
    if (report.least_clearance_m)
        add("Sensor over ground",
            short_number(*report.least_clearance_m) + " to " + metres(*report.greatest_clearance_m));
    if (!report.coordinate_system.empty()) add("Coordinates", shown_text(report.coordinate_system));
    if (!report.field_origin.empty()) add("Earth's field", shown_text(report.field_origin));
    return items;
}

std::string report_summary(const LoadReport& report) {
    if (!report.problem.empty()) return "Nothing was loaded: " + report.problem;
    std::string text = std::to_string(report.stations) + " stations, " + length_text(report.length_m) +
                       ", spacing " + metres(report.typical_spacing_m);
    long dropped = 0, nulls = 0;
    for (const RowLoss& loss : report.dropped) dropped += loss.count;
    for (const ChannelNulls& channel : report.nulls) nulls += channel.count;
    if (dropped > 0) text += "; " + counted(dropped, "row", "rows") + " dropped";
    if (nulls > 0) text += "; " + counted(nulls, "value", "values") + " missing";
    if (report.merged > 0) text += "; " + counted(report.merged, "row", "rows") + " merged";
    const std::vector<std::string> doubts = doubts_of(report);
    if (doubts.empty()) return text;
    const std::string more =
        doubts.size() > 1 ? " (and " + std::to_string(doubts.size() - 1) + " more to check)" : "";
    return "Check: " + doubts.front() + more + ". " + text;
}

}  // namespace anomalis::intake
