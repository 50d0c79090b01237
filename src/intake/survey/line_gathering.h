#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "intake/survey/survey_index.h"
#include "intake/survey/survey_places.h"

// The rows of one line on their way from the file. Private to this room.
namespace anomalis::intake {

/// What is read of the rows of a line, column by column.
enum GatheredColumn : std::size_t {
    gathered_first,   ///< east or longitude
    gathered_second,  ///< north or latitude
    gathered_longitude,
    gathered_latitude,
    gathered_height,
    gathered_clearance,
    gathered_terrain,
    gathered_mag,
    gathered_grav,
    gathered_fiducial,
    gathered_columns
};

/// The rows of one line, as the reader gives them. Columns that nobody wants are empty.
struct GatheredLine {
    std::array<std::vector<double>, gathered_columns> values;
    std::vector<long> file_line;
};

/// Makes lines of rows: places in m, heights from what the file tells of them.
class LineGathering {
  public:
    explicit LineGathering(const SurveyIndex& index);

    /// Columns of the layout to be read, in the order of the blocks.
    const std::vector<std::size_t>& columns() const { return columns_; }
    void take(const RowBlock& block, std::size_t row, GatheredLine& line) const;
    /// The rows of `gathered` as the line of that number.
    SurveyLine finish(std::size_t line, GatheredLine&& gathered);

  private:
    static constexpr std::size_t not_wanted = static_cast<std::size_t>(-1);
    void want(GatheredColumn what, std::optional<std::size_t> column);
    void find_degrees(SurveyLine& line, GatheredLine& gathered);

    const SurveyIndex& index_;
    PlaceWay way_;
    PlaceChange places_;
    std::optional<CoordinateChange> to_degrees_;
    std::vector<std::size_t> columns_;
    std::array<std::size_t, gathered_columns> where_;  ///< in the blocks
};

/// The rows of a piece alone.
SurveyLine piece_of(SurveyLine&& line, LinePiece piece);

}  // namespace anomalis::intake
