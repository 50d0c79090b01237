#pragma once

#include <string>
#include <vector>

namespace anomalis {
struct DataDefinition;
}  // namespace anomalis
namespace anomalis::intake {
struct FileHead;
}  // namespace anomalis::intake

// The head of the observed data file as it is shown: which lines will be read, which columns feed which
// quantity, laid out so that columns can be counted by eye.
namespace anomalis::show {

enum class HeadLineKind {
    skipped,       ///< before the first data line
    comment,       ///< starts with "!" or "\"
    stepped_over,  ///< blank, or used up by the read step
    record,        ///< read as a station
    dropped,       ///< a record without a number in a column that is wanted
    beyond         ///< after the final data line
};

/// The quantities that a column can feed.
enum class HeadQuantity { x, y, sensor, dtm, mag, grav };

/// A piece of a line: characters `begin` to `end` - 1 of the shown text.
struct HeadCell {
    int begin = 0;
    int end = 0;
};

struct HeadLine {
    std::u16string text;  ///< tabs spread out, control characters as dots
    HeadLineKind kind = HeadLineKind::skipped;
    std::vector<HeadCell> cells;  ///< of lines that stand in columns, one a column from column 1
};

struct HeadColumn {
    int begin = 0;
    int end = 0;
    std::vector<HeadQuantity> quantities;  ///< none: the column is not read
};

struct DataHead {
    std::vector<HeadLine> lines;
    std::vector<HeadColumn> columns;  ///< column 1 first
};

/// "X", "Y", "Sensor", "DTM", "Mag" or "Grav".
std::string head_quantity_name(HeadQuantity quantity);

/// Lays the lines out. A file whose columns stand under each other is shown as it is; otherwise the records,
/// and skipped lines with as many fields, are spread so that they do.
DataHead lay_out_data_head(const DataDefinition& definition, const intake::FileHead& head);

}  // namespace anomalis::show
