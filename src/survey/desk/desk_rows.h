#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "survey/results/line_flags.h"
#include "survey/results/line_result.h"
#include "survey/results/results_watch.h"

// The lines of a survey as the rows of a list.
namespace anomalis::survey {

/// What the list says of one line. `unknown` numbers are blank.
struct DeskRow {
    std::string line;
    RowStatus status = RowStatus::waiting;
    int bodies = 0;
    double rms_nT = unknown, rms_mGal = unknown;
    double least_depth = unknown;     ///< `told_depth` of the shallowest body, m
    double depth_interval = unknown;  ///< width of its 90 % interval, m; infinite where a side is open
    bool below_sensor = false;        ///< that depth
    double criterion = unknown;
    std::string message;  ///< why it failed or cannot be read
    LineMark mark;
};

enum class DeskColumn : std::int32_t { line, status, bodies, rms, depth, depth_interval, criterion, flag };

/// Which rows are shown: those that hold to everything that is asked. A number that nobody knows holds to
/// nothing.
struct RowFilter {
    /// Somewhere in the name, the message or the note; case of ASCII letters does not count.
    std::string text = {};
    std::optional<RowStatus> status = {};
    std::optional<LineFlag> flag = {};          ///< none: those without a flag
    std::optional<double> rms_above = {};       ///< nT, and mGal of a line of gravity
    std::optional<double> depth_from = {};      ///< m
    std::optional<double> depth_to = {};        ///< m
    std::optional<double> interval_above = {};  ///< m
    bool operator==(const RowFilter&) const = default;
};

/// The numbers of a result, and why it failed; null for a line that has none.
DeskRow desk_row(const LineResult* result);
bool holds(const RowFilter& filter, const DeskRow& row);
/// Rows that are equal stay in their order, whatever the direction, and what nobody knows comes last. Numbers
/// in names count as numbers: L900 comes before L1010.
void sort_rows(std::vector<DeskRow>& rows, DeskColumn column, bool ascending);

}  // namespace anomalis::survey
