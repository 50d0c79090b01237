#include "intake/load_report.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "core/shown_text.h"
#include "core/text.h"
#include "core/workspace.h"
#include "intake/definition.h"
#include "intake/load_warnings.h"
#include "intake/profile_line.h"
#include "intake/report_words.h"
#include "intake/row_notes.h"

namespace anomalis::intake {

namespace {

std::string reason(const DroppedRows& rows) {
    return rows.token.empty() ? "a field is empty"
                              : "\"" + single_line(rows.token) + "\" stands where a number is wanted";
}

void take_losses(const RowNotes& notes, LoadReport& report) {
    long told = 0;
    for (const DroppedRows& rows : notes.kinds) {
        report.dropped.push_back(
            {reason(rows), "column " + std::to_string(rows.column), rows.count, rows.first_line});
        told += rows.count;
    }
    if (notes.dropped > told)
        report.dropped.push_back({"other texts stand where numbers are wanted", "", notes.dropped - told, 0});
    if (notes.cut_line > 0) report.dropped.push_back({"the end of the file cuts it", "", 1, notes.cut_line});
}

void take_nulls(const RowNotes& notes, LoadReport& report) {
    for (const auto& [name, count] : {std::pair{"magnetics", notes.facts.mag_nulls},
                                      {"gravity", notes.facts.grav_nulls},
                                      {"sensor height", notes.missing_sensor_heights},
                                      {"ground", notes.missing_ground_heights}})
        if (count > 0) report.nulls.push_back({name, count});
}

/// Where on the profile a stretch between two rows begins, m.
double begin_of(const Workspace& w, const Place& a, const Place& b) {
    return std::max(std::min(distance_along(w, a.east, a.north), distance_along(w, b.east, b.north)), 0.0);
}

/// Of the stations as they are; a resampled line has none of its own.
void take_spacing(const Workspace& w, const RowFacts& facts, LoadReport& report) {
    if (w.station_spacing > 0) {
        report.typical_spacing_m = facts.typical_step;
        report.largest_gap_m = facts.largest_step;
        report.largest_gap_at_m = begin_of(w, facts.before_largest_step, facts.after_largest_step);
        return;
    }
    std::vector<double> steps;
    for (int i = 2; i <= w.station_count; ++i) {
        const double step = w.distances[i] - w.distances[i - 1];
        steps.push_back(step);
        if (!(step > report.largest_gap_m)) continue;
        report.largest_gap_m = step;
        report.largest_gap_at_m = w.distances[i - 1];
    }
    if (steps.empty()) return;
    const auto middle = steps.begin() + static_cast<std::ptrdiff_t>((steps.size() - 1) / 2);
    std::ranges::nth_element(steps, middle);
    report.typical_spacing_m = *middle;
}

void take_clearance(const Workspace& w, LoadReport& report) {
    if (w.definition.z_column <= 0 || w.definition.dtm_column <= 0 || !w.elevations_ready) return;
    for (int i = 1; i <= w.station_count; ++i) {
        const double over = w.stations(i, column_sensor) - w.stations(i, column_ground);
        report.least_clearance_m = std::min(report.least_clearance_m.value_or(over), over);
        report.greatest_clearance_m = std::max(report.greatest_clearance_m.value_or(over), over);
    }
}

void take_stuck_value(const Workspace& w, const RowFacts& facts, LoadReport& report) {
    const auto longest = std::ranges::max_element(
        facts.stuck, [](const StuckValue& a, const StuckValue& b) { return a.rows < b.rows; });
    if (longest == facts.stuck.end()) return;
    report.repeated = RepeatedReading{std::string(longest->channel), longest->value, longest->rows,
                                      begin_of(w, longest->from, longest->to)};
}

void take_line(const Workspace& w, const RowFacts& facts, LoadReport& report) {
    constexpr double whole_turn = 360;
    report.stations = w.station_count;
    report.length_m = w.distances.last();
    report.merged = w.station_spacing > 0 ? 0 : std::max(facts.rows - w.station_count, 0L);
    const double bearing = std::atan2(w.direction_y, -w.direction_x) * 180 / std::numbers::pi;
    report.direction_deg = std::fmod(bearing + whole_turn, whole_turn);
    report.off_line_m = facts.off_line;
    report.duplicates = facts.duplicates;
    report.looks_like_degrees = facts.looks_like_degrees;
    report.stretches = facts.stretches;
    report.stretches_length_m = facts.stretches_length;
    report.bends = facts.bends;
    if (report.length_m > 0) take_spacing(w, facts, report);
    take_clearance(w, report);
    take_stuck_value(w, facts, report);
}

std::string problem_of(const Workspace& w, const RowNotes& notes) {
    const std::string file = shown_text(w.definition.data_file);
    if (const std::string objection = definition_objection(w); !objection.empty())
        return objection + (w.definition.data_file.empty()
                                ? ". Choose one as Data File, or use " + std::string(import_hint)
                                : " (" + file + "). Correct the definition of the data file");
    if (!notes.counted) return file + " could not be read: check that it is a plain file you may read";
    if (!notes.nothing_of.empty())
        return "no row of " + file + " has a value of " + notes.nothing_of + ". Check that column";
    if (notes.records > 0) return "the readings of " + file + " could not be used, as a message told";
    const std::string hint =
        ". Check the first data line and the columns, or use " + std::string(import_hint);
    if (notes.kinds.empty())
        return file + " has no row from line " + std::to_string(w.definition.first_data_line) + " on" + hint;
    const DroppedRows& first = notes.kinds.front();
    return "no row of " + file + " has a number in every column that is wanted; in line " +
           std::to_string(first.first_line) + ", column " + std::to_string(first.column) + ", " +
           reason(first) + hint;
}

}  // namespace

LoadReport report_of_load(const Workspace& w, const RowNotes& notes) {
    LoadReport report;
    report.file = w.definition.data_file;
    report.line = w.source.line;
    report.coordinate_system = w.source.coordinate_system;
    report.field_origin = w.source.field_origin;
    report.rows_read = notes.records;
    take_losses(notes, report);
    take_nulls(notes, report);
    if (w.station_count <= 0) {
        report.problem = problem_of(w, notes);
        return report;
    }
    take_line(w, notes.facts, report);
    if (report.length_m <= 0)
        report.problem =
            "the " + counted(w.station_count, "station", "stations") + " of " +
            shown_text(w.definition.data_file) +
            " lie at one place, nothing can be modelled along them. Check the columns of X and Y";
    report.warnings = load_warnings(w, notes);
    return report;
}

LoadReport with_import(LoadReport load, const LoadReport& imported) {
    load.line = imported.line;
    load.lines_in_file = imported.lines_in_file;
    load.rows_read = imported.rows_read > 0 ? imported.rows_read : load.rows_read;
    load.dropped.insert(load.dropped.begin(), imported.dropped.begin(), imported.dropped.end());
    for (const ChannelNulls& nulls : imported.nulls) {
        const auto same = std::ranges::find(load.nulls, nulls.channel, &ChannelNulls::channel);
        if (same == load.nulls.end()) {
            load.nulls.push_back(nulls);
        } else {
            same->count = std::max(same->count, nulls.count);
        }
    }
    load.merged = std::max(load.merged, imported.merged);
    load.duplicates = std::max(load.duplicates, imported.duplicates);
    if (!imported.coordinate_system.empty()) load.coordinate_system = imported.coordinate_system;
    for (const std::string& warning : imported.warnings)
        if (std::ranges::find(load.warnings, warning) == load.warnings.end())
            load.warnings.push_back(warning);
    return load;
}

}  // namespace anomalis::intake
