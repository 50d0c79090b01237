#include "intake/row_notes.h"

#include <fstream>

#include "core/faults.h"
#include "core/numbers.h"
#include "core/text.h"
#include "intake/resample.h"

namespace anomalis::intake {

namespace {

std::string times(long count) {
    return count == 1 ? "" : " (" + std::to_string(count) + " such rows)";
}

std::string at(const std::string& path, long line) {
    return path + ", line " + std::to_string(line) + ": ";
}

bool ends_within_a_line(const std::string& path) {
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    if (!file || file.tellg() <= 0) return false;
    file.seekg(-1, std::ios::end);
    const int last = file.get();
    return last != '\n' && last != '\r';
}

void tell_dropped(const RowNotes& notes, const std::string& path, Faults& faults) {
    if (notes.dropped == 0) return;
    const std::string what = notes.unreadable.empty() ? "nothing" : "\"" + notes.unreadable + "\"";
    faults.add(at(path, notes.first_dropped_line) + "the row was passed over, " + what +
                   " stands where a number is wanted" + times(notes.dropped),
               1, notes.records == 0 ? Severity::doubt : Severity::remark);
}

void tell_cut(const RowNotes& notes, const std::string& path, Faults& faults) {
    if (notes.cut_line > 0)
        faults.add(at(path, notes.cut_line) +
                       "the last row was passed over, it has no line end and too few columns; the file may "
                       "have been cut",
                   1, Severity::doubt);
}

void tell_short(const RowNotes& notes, const std::string& path, Faults& faults) {
    if (notes.last_is_short)
        faults.add(at(path, notes.last_line) +
                       "the last row ends before its last column and kept values of the row before; the file "
                       "may have been cut",
                   1, Severity::doubt);
    const long others = notes.short_rows - (notes.last_is_short ? 1 : 0);
    if (others > 0)
        faults.add(at(path, notes.first_short_line) +
                       "the row ends before its last column and kept values of the row before" +
                       times(others),
                   1, Severity::remark);
}

void tell_heights(long missing, const char* which, const std::string& path, Faults& faults) {
    if (missing > 0)
        faults.add(path + ": the " + which + " is missing in " + std::to_string(missing) +
                       (missing == 1 ? " row" : " rows") + " and is interpolated along the line there",
                   1, Severity::remark);
}

}  // namespace

void RowNotes::see_head(std::string_view line) {
    metres_per_s2_in_head = metres_per_s2_in_head || line.find("m/s") != std::string_view::npos;
}

void RowNotes::drop(long line, std::string_view token, std::int32_t column) {
    constexpr std::size_t longest_token = 40;
    token = token.substr(0, longest_token);
    if (++dropped == 1) {
        first_dropped_line = line;
        unreadable = single_line(token);
    }
    count_kind({std::string(token), column, 1, line});
}

void RowNotes::count_kind(const DroppedRows& rows) {
    constexpr std::size_t most_kinds = 6;
    for (DroppedRows& kind : kinds) {
        if (kind.column != rows.column || kind.token != rows.token) continue;
        kind.count += rows.count;
        return;
    }
    if (kinds.size() < most_kinds) {
        kinds.push_back(rows);
    } else {
        other_kinds = true;
    }
}

void RowNotes::take(long line, bool is_short) {
    ++records;
    last_line = line;
    last_is_short = is_short;
    if (is_short && ++short_rows == 1) first_short_line = line;
}

void RowNotes::append(const RowNotes& following, long lines_before) {
    if (records == 0) first_record = following.first_record;
    records += following.records;
    if (dropped == 0 && following.dropped > 0) {
        first_dropped_line = lines_before + following.first_dropped_line;
        unreadable = following.unreadable;
    }
    dropped += following.dropped;
    for (DroppedRows rows : following.kinds) {
        rows.first_line += lines_before;
        count_kind(rows);
    }
    if (short_rows == 0 && following.short_rows > 0)
        first_short_line = lines_before + following.first_short_line;
    short_rows += following.short_rows;
    if (following.cut_line > 0) cut_line = lines_before + following.cut_line;
    if (following.records > 0) {
        last_line = lines_before + following.last_line;
        last_is_short = following.last_is_short;
    }
    missing_sensor_heights += following.missing_sensor_heights;
    missing_ground_heights += following.missing_ground_heights;
}

std::string widening_text(const WidenedSpacing& spacing) {
    if (!(spacing.taken > spacing.asked)) return {};
    const double stations = points_along(spacing.length, spacing.asked);
    return "resampling " + shortest_text(static_cast<float>(spacing.length)) + " m of line every " +
           shortest_text(static_cast<float>(spacing.asked)) + " m would take " +
           (stations < 1e15 ? format_number(stations, "0") : "too many") + " stations; " +
           std::to_string(most_intervals + 1) + " is the most, so it was resampled every " +
           shortest_text(static_cast<float>(spacing.taken)) +
           " m. Give an Interpolation spacing as wide, or 0 for the stations of the file, which have no "
           "limit";
}

void tell_rows(const RowNotes& notes, const std::string& path, Faults& faults) {
    if (!notes.counted) return;
    if (notes.records == 0) faults.add("No stations were found in " + path, 1, Severity::doubt);
    tell_dropped(notes, path, faults);
    tell_cut(notes, path, faults);
    if (notes.records == 0) return;
    tell_short(notes, path, faults);
    tell_heights(notes.missing_sensor_heights, "sensor height", path, faults);
    tell_heights(notes.missing_ground_heights, "ground elevation", path, faults);
    if (const std::string widened = widening_text(notes.widened); !widened.empty())
        faults.add(path + ": " + widened, 1, Severity::remark);
    if (notes.to_the_end && !notes.last_is_short && notes.cut_line == 0 && ends_within_a_line(path))
        faults.add(at(path, notes.last_line) +
                       "the last row has no line end; if the file was cut its last value may be wrong",
                   1, Severity::remark);
}

}  // namespace anomalis::intake
