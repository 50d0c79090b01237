#pragma once

#include <string>
#include <vector>

#include "intake/line_columns.h"

namespace anomalis {
class Prompts;
struct Workspace;
}  // namespace anomalis

// A line that no file holds yet. Knows nothing of Python.
namespace anomalis::python {

/// Its columns as they came, so that they can be loaded again and written.
struct LineArrays {
    std::vector<double> east, north, sensor, ground, mag, grav;  ///< m, nT, mGal; empty: none
    std::string name;  ///< of the line; of its table until it has a file

    intake::LineColumns columns() const { return {east, north, sensor, ground, mag, grav}; }
};

/// A table of the line: names with units, then a row a station in digits that read back as the very same
/// numbers.
std::string line_table(const LineArrays& line);

/// Makes the workspace that of another line: places, base levels and source are those of the arrays, bodies
/// and processing stay. Not loaded yet.
void take_arrays(const LineArrays& line, Workspace& workspace);

/// Writes the workspace at `path`, which ends in ".axm", and the table beside it, both or none; the workspace
/// knows its table by it then. False after a failure, which was told.
bool write_with_table(const LineArrays& line, const std::string& path, Workspace& workspace,
                      Prompts& prompts);

}  // namespace anomalis::python
