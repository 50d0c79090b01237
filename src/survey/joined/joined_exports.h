#pragma once

#include <string>
#include <vector>

#include "output/gis_tables.h"
#include "output/sheet_files.h"
#include "survey/joined/joined_bodies.h"

// Joined bodies for tables, maps and programs that show space.
namespace anomalis::survey {

/// Comma-separated, a row a joined body, units in the names of the columns.
std::string joined_table(const SurveyResults& results, const std::vector<JoinedBody>& joined);

/// The system of the first joined body that has one; "" when none does.
std::string joined_system(const std::vector<JoinedBody>& joined);

/// "joined_bodies", a line from start to end each, and "joined_tops", the tops that they were joined from. In
/// the system `target`; raises Fault where a body has another one that cannot be changed into it.
std::vector<output::GisLayer> joined_layers(const SurveyResults& results,
                                            const std::vector<JoinedBody>& joined, const std::string& target);

struct JoinedSheets {
    std::vector<std::string> names;  ///< of the values, with units
    std::vector<output::SheetSurface> sheets;
};
/// From the tops, each at its own elevation, and from both ends down the dip to the depth extent; of a body
/// without end to five times its depth below the sensor, for of what lies deeper a line hardly tells. In the
/// system of the first body; those of other systems are left out, and so are those of unknown elevation, dip
/// or depth.
JoinedSheets joined_sheets(const SurveyResults& results, const std::vector<JoinedBody>& joined);

}  // namespace anomalis::survey
