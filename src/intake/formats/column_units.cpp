#include "intake/formats/column_units.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <utility>

#include "intake/formats/name_words.h"

namespace anomalis::intake {

namespace {

constexpr double least_absolute_gravity = 9.7e5, most_absolute_gravity = 9.9e5;  // mGal, with room

/// Lower case without blanks, points and signs of powers: "um/s^2" is "um/s2".
std::string plain(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (text.substr(i).starts_with("\xC2\xB5") || text.substr(i).starts_with("\xCE\xBC")) {
            result += 'u';
            ++i;
        } else if (text.substr(i).starts_with("\xC2\xB2")) {
            result += '2';
            ++i;
        } else if (c >= 'A' && c <= 'Z') {
            result += static_cast<char>(c | 0x20);
        } else if (std::string_view(" \t._^*-'\"()[]").find(c) == std::string_view::npos) {
            result += c;
        }
    }
    return result;
}

using Spelling = std::pair<std::string_view, Unit>;
constexpr std::array<Spelling, 44> spellings{{
    {"m", Unit::metre},
    {"metre", Unit::metre},
    {"metres", Unit::metre},
    {"meter", Unit::metre},
    {"meters", Unit::metre},
    {"mts", Unit::metre},
    {"mtr", Unit::metre},
    {"masl", Unit::metre},
    {"magl", Unit::metre},
    {"ft", Unit::foot},
    {"foot", Unit::foot},
    {"feet", Unit::foot},
    {"nt", Unit::nanotesla},
    {"nanotesla", Unit::nanotesla},
    {"nanoteslas", Unit::nanotesla},
    {"gamma", Unit::nanotesla},
    {"gammas", Unit::nanotesla},
    {"mgal", Unit::milligal},
    {"mgals", Unit::milligal},
    {"milligal", Unit::milligal},
    {"milligals", Unit::milligal},
    {"gu", Unit::gravity_unit},
    {"gus", Unit::gravity_unit},
    {"gravityunit", Unit::gravity_unit},
    {"gravityunits", Unit::gravity_unit},
    {"um/s2", Unit::micrometre_per_s2},
    {"um/s/s", Unit::micrometre_per_s2},
    {"um/sec2", Unit::micrometre_per_s2},
    {"ums2", Unit::micrometre_per_s2},
    {"um/sec/sec", Unit::micrometre_per_s2},
    {"micrometre/s2", Unit::micrometre_per_s2},
    {"micrometres/s2", Unit::micrometre_per_s2},
    {"micrometrespersecondsquared", Unit::micrometre_per_s2},
    {"micrometrespersecond2", Unit::micrometre_per_s2},
    {"microm/s2", Unit::micrometre_per_s2},
    {"deg", Unit::degree},
    {"degree", Unit::degree},
    {"degrees", Unit::degree},
    {"decimaldegrees", Unit::degree},
    {"decimaldegree", Unit::degree},
    {"decdeg", Unit::degree},
    {"dd", Unit::degree},
    {"degmin", Unit::degree_minute},
    {"dms", Unit::degree_minute},
}};

bool may_have(Role role, Unit unit) {
    const std::vector<Unit> units = units_of_role(role);
    return std::find(units.begin(), units.end(), unit) != units.end();
}

bool is_absolute(const ColumnValues& values, double factor) {
    return values.numbers > 0 && values.middle * factor > least_absolute_gravity &&
           values.middle * factor < most_absolute_gravity;
}

/// The unit that absolute gravity anywhere in the file has by its size, and the column that shows it.
std::optional<std::pair<Unit, std::size_t>> unit_of_absolute_gravity(const SurveyLayout& layout,
                                                                     const ValueSample& sample) {
    for (const Unit unit : {Unit::micrometre_per_s2, Unit::milligal}) {
        for (std::size_t i = 0; i < layout.columns.size(); ++i) {
            const NameWords name(layout.columns[i].name);
            const bool gravity =
                name.holds({"grav", "obs", "normal", "theor", "gobs", "absg"}) || name.has({"g"});
            if (gravity && is_absolute(sample.columns[i], unit_factor(unit))) return std::pair(unit, i);
        }
    }
    return {};
}

/// The unit of a gravity anomaly where nothing says it.
Unit gravity_by_size(SurveyLayout& layout, const ValueSample& sample, std::size_t column) {
    const std::string name = "\"" + layout.columns[column].name + "\"";
    if (const auto found = unit_of_absolute_gravity(layout, sample)) {
        layout.remarks.push_back("The file gives no unit for " + name + ". It is taken to be in " +
                                 std::string(unit_name(found->first)) + ", since \"" +
                                 layout.columns[found->second].name +
                                 "\" has the size of absolute gravity in that unit.");
        return found->first;
    }
    const ColumnValues& values = sample.columns[column];
    constexpr double most_anomaly =
        1000;  // mGal: no Bouguer or free-air anomaly on land or at sea exceeds it
    if (std::max(std::abs(values.least), std::abs(values.greatest)) > most_anomaly) {
        layout.remarks.push_back("The file gives no unit for " + name +
                                 ". Its values are too large for mGal: it is "
                                 "taken to be in um/s2.");
        return Unit::micrometre_per_s2;
    }
    layout.remarks.push_back("The file gives no unit for " + name + ". It is taken to be in mGal.");
    return Unit::milligal;
}

bool beyond_degrees(const SurveyLayout& layout, const ValueSample& sample, Role role) {
    const auto column = layout.column_of(role);
    if (!column || sample.columns[*column].numbers == 0) return false;
    const ColumnValues& values = sample.columns[*column];
    return std::max(std::abs(values.least), std::abs(values.greatest)) > (role == Role::longitude ? 360 : 90);
}

/// 14049.98 is 140 degrees 49.98 minutes: no minutes reach 60.
bool may_be_degree_minutes(const ColumnValues& values, double most_degrees) {
    return std::all_of(values.values.begin(), values.values.end(), [most_degrees](double value) {
        return std::isnan(value) ||
               (std::fmod(std::abs(value), 100) < 60 && std::abs(value) < 100 * most_degrees);
    });
}

Unit degrees_by_size(SurveyLayout& layout, const ValueSample& sample, std::size_t column) {
    const bool is_longitude = layout.columns[column].role == Role::longitude;
    if (!beyond_degrees(layout, sample, layout.columns[column].role)) return Unit::degree;
    const std::string name = "\"" + layout.columns[column].name + "\"";
    const bool both =
        beyond_degrees(layout, sample, Role::longitude) && beyond_degrees(layout, sample, Role::latitude);
    if (both && may_be_degree_minutes(sample.columns[column], is_longitude ? 360 : 90)) {
        layout.remarks.push_back(name + " is taken as degrees and minutes (DDMM.mmm) by its values.");
        return Unit::degree_minute;
    }
    layout.remarks.push_back(name + " holds values beyond " + (is_longitude ? "360" : "90") +
                             " degrees, which are no " + (is_longitude ? "longitudes" : "latitudes") +
                             ": choose another column, or its role.");
    return Unit::degree;
}

Unit unit_by_role(SurveyLayout& layout, const ValueSample& sample, std::size_t column) {
    switch (layout.columns[column].role) {
        case Role::longitude:
        case Role::latitude:
            return degrees_by_size(layout, sample, column);
        case Role::mag:
            return Unit::nanotesla;
        case Role::grav:
            return gravity_by_size(layout, sample, column);
        default:
            return Unit::metre;
    }
}

}  // namespace

std::optional<Unit> unit_of_text(std::string_view text) {
    const std::string wanted = plain(text);
    for (const auto& [spelling, unit] : spellings)
        if (wanted == spelling) return unit;
    return {};
}

std::optional<Unit> unit_of_name_end(std::string_view name) {
    const auto gap = name.find_last_of("_ -.([");
    if (gap != std::string_view::npos && gap + 1 < name.size())
        if (const auto found = unit_of_text(name.substr(gap + 1))) return found;
    const std::string together = plain(name);
    // "GBA267MGAL", "GFAAGU"
    for (const std::string_view unit : {"mgals", "mgal", "ums2", "gu"})
        if (together.size() > unit.size() + 1 && together.ends_with(unit)) return unit_of_text(unit);
    return {};
}

void choose_units(SurveyLayout& layout, const ValueSample& sample) {
    for (std::size_t i = 0; i < layout.columns.size(); ++i) {
        SurveyColumn& column = layout.columns[i];
        if (units_of_role(column.role).empty() || column.unit == Unit::degree_minute) continue;
        auto unit = unit_of_text(column.unit_text);
        if (!unit || !may_have(column.role, *unit)) unit = unit_of_name_end(column.name);
        if (!unit || !may_have(column.role, *unit)) unit = unit_by_role(layout, sample, i);
        layout.columns[i].unit = *unit;
    }
}

}  // namespace anomalis::intake
