#pragma once

#include <cstddef>
#include <span>

namespace anomalis {
struct DataDefinition;
}  // namespace anomalis

namespace anomalis::intake {

struct DataRows;
struct RowNotes;

/// A line in memory: a number a station, in order along it. Heights and readings that are empty are none of
/// it; one that is no number is missing there.
struct LineColumns {
    std::span<const double> east, north;     ///< m
    std::span<const double> sensor, ground;  ///< elevations, m
    std::span<const double> mag, grav;       ///< nT, mGal
};

/// The columns of a table that has these from the first on in this order, and a line of names above them.
void define_columns(const LineColumns& line, DataDefinition& definition);

/// As if they had been read from such a table. Raises Fault: columns of different length, a coordinate that
/// is no number, a value that does not fit single precision.
DataRows rows_of_columns(const LineColumns& line);

}  // namespace anomalis::intake
