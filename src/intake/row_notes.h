#pragma once

#include <string>
#include <string_view>

namespace anomalis {
class Faults;
}  // namespace anomalis

namespace anomalis::intake {

/// What the reader met in a data file and passes over in silence, as a table with gaps wants it. Lines are
/// numbered from 1 with the lines before the first record.
struct RowNotes {
    bool counted = false;  ///< the file was read; the rest says something
    long records = 0;
    long dropped = 0;  ///< rows with something that is no number where one is wanted
    long first_dropped_line = 0;
    std::string unreadable;  ///< what stood there
    long short_rows = 0;     ///< that kept values of the row before
    long first_short_line = 0;
    long cut_line = 0;   ///< a row that the end of the file cuts, and that was passed over; 0 for none
    long last_line = 0;  ///< of the last record
    bool last_is_short = false;
    long missing_sensor_heights = 0, missing_ground_heights = 0;  ///< rows that mark theirs as missing
    bool to_the_end = false;                                      ///< the file was read as far as it goes

    void drop(long line, std::string_view token);
    void take(long line, bool is_short);
};

/// Tells it of the file at `path`. A file of which no row or not the whole last row could be read is in
/// doubt: it was cut, or its columns are others. What else there is are remarks.
void tell_rows(const RowNotes& notes, const std::string& path, Faults& faults);

}  // namespace anomalis::intake
