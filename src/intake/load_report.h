#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/faults.h"
#include "intake/formats/survey_format.h"

namespace anomalis {
struct Workspace;
}  // namespace anomalis

// What a load did, for whoever wants to know whether the line is what was meant.
namespace anomalis::intake {

struct RowNotes;

struct ChannelNulls {
    std::string channel;  ///< "magnetics", "gravity", "sensor height", "ground"
    long count = 0;
};

/// A reading that stays the same over many stations.
struct RepeatedReading {
    std::string channel;
    double value = 0;
    long stations = 0;
    double at_m = 0;  ///< where it begins
};

struct LoadReport {
    std::string file;
    std::string line;  ///< chosen; "" where the file was taken as one line
    long lines_in_file = 1;
    long rows_read = 0;  ///< good ones
    std::vector<RowLoss> dropped;
    long merged = 0;  ///< stations
    std::vector<ChannelNulls> nulls;
    long stations = 0;
    double length_m = 0;
    double typical_spacing_m = 0;  ///< median
    double largest_gap_m = 0, largest_gap_at_m = 0;
    double off_line_m = 0;     ///< greatest distance from the straight line
    double direction_deg = 0;  ///< bearing of the line, clockwise from grid north, 0 to 360
    std::optional<double> least_clearance_m, greatest_clearance_m;  ///< sensor over ground
    long duplicates = 0;  ///< readings at a place that was there just before
    bool looks_like_degrees = false;
    long stretches = 1;             ///< between jumps and turns back; above 1 these are several lines
    double stretches_length_m = 0;  ///< of all of them
    bool bends = false;             ///< one of them by more than 20 degrees
    std::optional<RepeatedReading> repeated;
    std::string coordinate_system, field_origin;
    std::vector<std::string> warnings;  ///< what can hardly be meant, and what to do
    std::string problem;                ///< why there are no stations, and what to do; "" when there are
};

/// One line of the report as it is shown.
struct ReportItem {
    std::string label, text;
    Severity severity = Severity::remark;
};
std::vector<ReportItem> report_items(const LoadReport& report);
/// For the status line: "804 stations, 7.3 km, spacing 9.1 m; 3 rows dropped". What can hardly be meant
/// stands first.
std::string report_summary(const LoadReport& report);
/// Whether something in it can hardly be meant.
bool has_doubts(const LoadReport& report);

/// Of a workspace that was just loaded the usual way, or could not be; `notes` are those of its reader.
LoadReport report_of_load(const Workspace& workspace, const RowNotes& notes);

/// The report of a load of the table that an import left, with what the import met in its survey file.
LoadReport with_import(LoadReport load, const LoadReport& imported);

}  // namespace anomalis::intake
