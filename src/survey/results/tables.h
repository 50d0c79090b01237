#pragma once

#include <cstddef>
#include <string>

// The tables of a survey: what its lines gave, for data frames, spreadsheets and maps.
namespace anomalis::survey {

struct TableCounts {
    std::size_t lines = 0, failed = 0, bodies = 0;
};

/// Writes the four tables of a results folder (results_folder.h) from the results of its lines, in the order
/// of the plan, a line at a time. Each takes the place of the old one as a whole. They are the same bits
/// whatever order, process or machine made the lines: what a clock measured stands in seconds.csv alone.
///   bodies.csv   a row a body
///   lines.csv    a row a line, failed ones with their message
///   seconds.csv  a row a line
///   survey.gpkg  the tracks of the lines ("lines") and the tops of the bodies ("tops"), in the system of the
///                first line that has one
/// Raises Fault when a line is not there or its result is damaged, with its name; FileFault.
TableCounts write_survey_tables(const std::string& folder);

}  // namespace anomalis::survey
