#include "intake/load_warnings.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "core/numbers.h"
#include "core/workspace.h"
#include "intake/report_words.h"
#include "intake/row_notes.h"

namespace anomalis::intake {

namespace {

std::string suspect_text(const SuspectValue& suspect) {
    return "the " + std::string(suspect.channel) + " is " + value_text(suspect.value, suspect.channel) +
           " in " + counted(suspect.rows, "row", "rows") + ", the others lie between " +
           shortest_text(suspect.least) + " and " + value_text(suspect.greatest, suspect.channel) +
           ": this looks like a mark for no value, which " + import_hint + " leaves out";
}

/// -9999, -99999.99, ...
bool is_of_nines(double value) {
    for (double power = 1e4; power <= 1e9; power *= 10)
        if (std::trunc(std::abs(value)) == power - 1) return true;
    return false;
}

void warn_of_base(const char* name, std::string_view unit, const Channel& channel,
                  std::vector<std::string>& warnings) {
    const auto base = static_cast<double>(channel.base);
    if (channel.base == unset || base >= 0 || !is_of_nines(base)) return;
    const auto range = static_cast<double>(channel.max) - static_cast<double>(channel.min);
    if (base > static_cast<double>(channel.min) - range) return;
    warnings.push_back("the base level of the " + std::string(name) + " is " + shortest_text(channel.base) +
                       " " + std::string(unit) +
                       ", which looks like a mark for no value: give the level, or leave it blank "
                       "for the mean");
}

/// Anomalies of gravity stay within some 600 mGal; gravity itself is some 980000 mGal.
void warn_of_gravity_unit(const Workspace& w, const RowNotes& notes, std::vector<std::string>& warnings) {
    constexpr double most_of_anomaly = 700, least_of_gravity = 9.7e5, most_of_gravity = 9.9e5;
    const double low = static_cast<double>(w.grav.min), high = static_cast<double>(w.grav.max);
    const double size = std::max(std::abs(low), std::abs(high));
    const bool whole_mgal = low >= least_of_gravity && high <= most_of_gravity;
    const bool beyond = size > most_of_anomaly && !whole_mgal && !is_of_nines(low);
    if (!beyond && !notes.metres_per_s2_in_head) return;
    warnings.push_back(
        (notes.metres_per_s2_in_head
             ? std::string("the head of the file speaks of um/s2, and the gravity was taken as mGal")
             : "the gravity runs from " + shortest_text(w.grav.min) + " to " + shortest_text(w.grav.max) +
                   " mGal, which no anomaly does, and may be in um/s2 (10 of them are 1 mGal)") +
        ": " + import_hint + " brings it to mGal");
}

/// Fields parted by blanks, tabs or semicolons of which several are digits, one comma, digits.
bool has_decimal_commas(std::string_view row) {
    const auto digit = [](char c) { return c >= '0' && c <= '9'; };
    long with_comma = 0, fields = 0;
    if (row.find('.') != std::string_view::npos) return false;
    while (!row.empty()) {
        const auto end = std::min(row.find_first_of(" \t;"), row.size());
        const std::string_view field = row.substr(0, end);
        row.remove_prefix(std::min(end + 1, row.size()));
        if (field.empty()) continue;
        ++fields;
        const auto comma = field.find(',');
        if (comma == std::string_view::npos) continue;
        const bool decimal = comma > 0 && comma + 1 < field.size() && digit(field[comma - 1]) &&
                             digit(field[comma + 1]) && field.find(',', comma + 1) == std::string_view::npos;
        if (!decimal) return false;
        ++with_comma;
    }
    return with_comma >= 2 && 2 * with_comma >= fields;
}

}  // namespace

std::vector<std::string> load_warnings(const Workspace& w, const RowNotes& notes) {
    std::vector<std::string> warnings;
    if (const std::string widened = widening_text(notes.widened); !widened.empty())
        warnings.push_back(widened);
    if (has_decimal_commas(notes.first_record))
        warnings.push_back(
            std::string("the numbers have decimal commas, each of which parts two columns here: ") +
            import_hint + " reads them");
    for (const SuspectValue& suspect : notes.facts.suspects) warnings.push_back(suspect_text(suspect));
    if (w.has_grav()) warn_of_gravity_unit(w, notes, warnings);
    if (w.has_mag()) warn_of_base("magnetics", "nT", w.mag, warnings);
    if (w.has_grav()) warn_of_base("gravity", "mGal", w.grav, warnings);
    if (notes.short_rows > 0)
        warnings.push_back(counted(notes.short_rows, "row ends", "rows end") +
                           " before the last column and kept values of the row before, the first in line " +
                           std::to_string(notes.first_short_line) + ": check the file there");
    return warnings;
}

}  // namespace anomalis::intake
