#include "intake/formats/column_roles.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "intake/formats/coordinate_columns.h"
#include "intake/formats/role_names.h"

namespace anomalis::intake {

namespace {

void tell(SurveyLayout& layout, std::size_t column, const std::string& what) {
    layout.remarks.push_back("\"" + layout.columns[column].name + "\" " + what);
}

bool is_field(Role role) {
    return role == Role::mag || role == Role::grav;
}

/// Whether a column can be what its name says.
bool has_values(const SurveyLayout& layout, const ValueSample& sample, const RoleBid& bid) {
    const ColumnValues& values = sample.columns[bid.column];
    if (bid.role == Role::line || bid.role == Role::date) return true;
    if (layout.columns[bid.column].text) return bid.role == Role::fiducial;
    if (is_field(bid.role)) return values.distinct > 1 || (values.numbers > 0 && sample.rows < 3);
    return values.numbers > 0;
}

/// The surest names first; a column has one role and a role one column.
void take_best_names(SurveyLayout& layout, const ValueSample& sample) {
    std::vector<RoleBid> bids;
    for (const Role role : all_roles) {
        const std::vector<RoleBid> of_role = role_bids(role, layout);
        bids.insert(bids.end(), of_role.begin(), of_role.end());
    }
    std::erase_if(bids, [&](const RoleBid& bid) { return !has_values(layout, sample, bid); });
    std::stable_sort(bids.begin(), bids.end(),
                     [](const RoleBid& a, const RoleBid& b) { return a.worth > b.worth; });
    for (const RoleBid& bid : bids)
        if (layout.columns[bid.column].role == Role::none && !layout.column_of(bid.role))
            layout.columns[bid.column].role = bid.role;
}

/// Stretches of equal values; as many as rows: it is no line.
bool may_be_line(const ColumnValues& values) {
    constexpr std::size_t too_few_to_tell = 4;
    if (values.numbers < too_few_to_tell) return values.numbers > 0;
    return 2 * (values.changes + 1) <= values.numbers;
}

/// Of several columns that number lines, the one that tells most lines of some length apart.
void check_line(SurveyLayout& layout, const ValueSample& sample) {
    constexpr std::size_t fewest_stations = 3;
    std::vector<std::size_t> fitting;
    for (const RoleBid& bid : role_bids(Role::line, layout))
        if (may_be_line(sample.columns[bid.column])) fitting.push_back(bid.column);
    const auto chosen = layout.column_of(Role::line);
    const bool wrong = chosen && !may_be_line(sample.columns[*chosen]);
    if (wrong) {
        layout.columns[*chosen].role = layout.column_of(Role::fiducial) ? Role::none : Role::fiducial;
        tell(layout, *chosen, "has another value in nearly every row: it numbers stations, not lines.");
    }
    if (fitting.empty()) return;
    std::size_t best = chosen && !wrong ? *chosen : fitting.front();
    for (const std::size_t column : fitting) {
        const ColumnValues& values = sample.columns[column];
        if (layout.columns[column].role != Role::none && column != best) continue;
        if (values.distinct > sample.columns[best].distinct &&
            fewest_stations * values.distinct <= values.numbers)
            best = column;
    }
    if (chosen == best) return;
    if (chosen && !wrong) {
        layout.columns[*chosen].role = Role::none;
        tell(
            layout, best,
            "tells more lines apart than \"" + layout.columns[*chosen].name + "\" and is taken as the line.");
    }
    layout.columns[best].role = Role::line;
}

/// A line without a name: a whole number or text that stays over many rows.
void find_line(SurveyLayout& layout, const ValueSample& sample) {
    const auto coordinates =
        std::find_if(layout.columns.begin(), layout.columns.end(), [](const SurveyColumn& column) {
            return column.role == Role::easting || column.role == Role::longitude ||
                   column.role == Role::northing || column.role == Role::latitude;
        });
    const auto before = static_cast<std::size_t>(coordinates - layout.columns.begin());
    for (std::size_t i = 0; i < before; ++i) {
        const ColumnValues& values = sample.columns[i];
        const bool stays = values.numbers > 3 && 10 * (values.changes + 1) <= values.numbers &&
                           values.distinct == values.changes + 1;
        if (layout.columns[i].role != Role::none || !stays || (!layout.columns[i].text && !values.whole))
            continue;
        layout.columns[i].role = Role::line;
        return tell(layout, i, "is taken as the line by its values.");
    }
}

/// A field without a name: the last column that varies and has no role; what stands before it between
/// coordinates and field is the height.
void find_field(SurveyLayout& layout, const ValueSample& sample) {
    const auto is_open = [&](std::size_t i) {
        return layout.columns[i].role == Role::none && !layout.columns[i].text &&
               sample.columns[i].distinct > 1;
    };
    std::size_t field = layout.columns.size();
    for (std::size_t i = 0; i < layout.columns.size(); ++i)
        if (is_open(i)) field = i;
    if (field == layout.columns.size()) return;
    const ColumnValues& values = sample.columns[field];
    const double most = std::max(std::abs(values.least), std::abs(values.greatest));
    // Anomalies of gravity come with decimals and stay within some hundreds of mGal.
    const bool gravity = !values.whole && most < 1000 && values.typical_step < 5 && values.spread() < 300;
    layout.columns[field].role = gravity ? Role::grav : Role::mag;
    tell(layout, field,
         std::string("is taken as ") + (gravity ? "gravity" : "magnetics") +
             " by its values: see whether that is right.");
    if (layout.column_of(Role::sensor_height) || layout.column_of(Role::terrain) ||
        layout.column_of(Role::clearance))
        return;
    for (std::size_t i = field; i-- > 0;) {
        if (!is_open(i) || sample.columns[i].least < -500 || sample.columns[i].greatest > 9000) continue;
        layout.columns[i].role = Role::sensor_height;
        return tell(layout, i, "is taken as the height of the sensor by its values.");
    }
}

/// Gravity on land is read on the ground, so that its only height is that of the ground as well.
void settle_ground(SurveyLayout& layout) {
    const auto height = layout.column_of(Role::sensor_height);
    if (!height || layout.column_of(Role::terrain) || layout.column_of(Role::clearance)) return;
    if (!layout.column_of(Role::grav) || layout.column_of(Role::mag)) return;
    layout.columns[*height].role = Role::terrain;
    tell(layout, *height,
         "is taken as the ground, on which gravity is read. Make it the sensor height where it was "
         "read in the air.");
}

void tell_of_choices(SurveyLayout& layout, const ValueSample& sample) {
    for (const Role role : {Role::mag, Role::grav}) {
        const auto chosen = layout.column_of(role);
        if (!chosen) continue;
        std::string others;
        for (const RoleBid& bid : role_bids(role, layout))
            if (bid.column != *chosen && has_values(layout, sample, bid))
                others += (others.empty() ? "" : ", ") + layout.columns[bid.column].name;
        if (!others.empty())
            layout.remarks.push_back(std::string(role_title(role)) + " is taken from \"" +
                                     layout.columns[*chosen].name + "\"; there are also: " + others + ".");
    }
}

}  // namespace

void choose_roles(SurveyLayout& layout, const ValueSample& sample) {
    take_best_names(layout, sample);
    check_line(layout, sample);
    check_coordinates(layout, sample);
    find_coordinates(layout, sample);
    if (!layout.line_headers && !layout.column_of(Role::line)) find_line(layout, sample);
    if (!layout.column_of(Role::mag) && !layout.column_of(Role::grav)) find_field(layout, sample);
    settle_ground(layout);
    tell_of_choices(layout, sample);
    check_zone(layout, sample);
}

}  // namespace anomalis::intake
