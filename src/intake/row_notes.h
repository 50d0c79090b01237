#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "intake/row_facts.h"

namespace anomalis {
class Faults;
}  // namespace anomalis

namespace anomalis::intake {

/// Rows that were passed over for one reason.
struct DroppedRows {
    std::string token;        ///< what stands where a number is wanted; "" for nothing
    std::int32_t column = 0;  ///< from 1
    long count = 0;
    long first_line = 0;
};

/// A resampling that would give more stations than a line may have, and what was done instead.
struct WidenedSpacing {
    double asked = 0, taken = 0;  ///< m; 0 where every spacing is as it was asked for
    double length = 0;            ///< m, of the line
};
/// "resampling the 100000 m every 1 m would take 100001 stations ..."; "" where nothing was widened.
std::string widening_text(const WidenedSpacing& spacing);

/// What the reader met in a data file and passes over in silence, as a table with gaps wants it. Lines are
/// numbered from 1 with the lines before the first record.
struct RowNotes {
    bool counted = false;  ///< the file was read; the rest says something
    long records = 0;
    long dropped = 0;  ///< rows with something that is no number where one is wanted
    long first_dropped_line = 0;
    std::string unreadable;          ///< what stood there
    std::vector<DroppedRows> kinds;  ///< of the dropped rows, at most a few
    bool other_kinds = false;        ///< some have no room there
    long short_rows = 0;             ///< that kept values of the row before
    long first_short_line = 0;
    long cut_line = 0;   ///< a row that the end of the file cuts, and that was passed over; 0 for none
    long last_line = 0;  ///< of the last record
    bool last_is_short = false;
    long missing_sensor_heights = 0, missing_ground_heights = 0;  ///< rows that mark theirs as missing
    bool to_the_end = false;                                      ///< the file was read as far as it goes

    bool metres_per_s2_in_head = false;  ///< a line before the first record speaks of "um/s2"
    std::string first_record;            ///< its text, cut when it is long
    /// Of what not one value was read, though a column is given for it: "gravity (column 5)"; "" for none.
    std::string nothing_of;
    RowFacts facts;          ///< of the rows that were read; found by a load
    WidenedSpacing widened;  ///< by a load

    void see_head(std::string_view line);
    void drop(long line, std::string_view token, std::int32_t column);
    void take(long line, bool is_short);
    /// Adds what was met in the lines that follow, which were numbered by themselves. REQUIRES: all kinds of
    /// them had room.
    void append(const RowNotes& following, long lines_before);

  private:
    void count_kind(const DroppedRows& rows);
};

/// Tells it of the file at `path`. A file of which no row or not the whole last row could be read is in
/// doubt: it was cut, or its columns are others. What else there is are remarks.
void tell_rows(const RowNotes& notes, const std::string& path, Faults& faults);

}  // namespace anomalis::intake
