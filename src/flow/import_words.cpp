#include "flow/import_words.h"

#include <algorithm>
#include <cmath>

#include "core/failure.h"
#include "core/numbers.h"
#include "field/main_field.h"
#include "intake/coordinates/coordinate_system.h"

namespace anomalis::flow {

namespace {

using intake::Role;

std::string system_name(const std::string& code) {
    try {
        const intake::CoordinateSystem system = intake::find_coordinate_system(code);
        return system.code == system.name ? system.code : system.code + ", " + system.name;
    } catch (const std::exception&) {
        return code;
    }
}

std::string count_words(long count, const char* one, const char* many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

/// The middle of a track in longitude and latitude.
std::optional<field::Place> middle_of(const intake::SurveyIndex& index, const intake::SurveyLineInfo& line) {
    if (index.coordinate_system.empty() || line.track.empty()) return std::nullopt;
    const intake::MapPoint& middle = line.track[line.track.size() / 2];
    double east[] = {static_cast<double>(middle.east) + index.origin_east};
    double north[] = {static_cast<double>(middle.north) + index.origin_north};
    intake::CoordinateChange change(index.coordinate_system, intake::wgs84);
    change.forward(east, north);
    return field::Place{.latitude = north[0], .longitude = east[0], .height_m = 0};
}

}  // namespace

std::string nulls_text(const std::vector<double>& nulls) {
    std::string text;
    for (const double null : nulls) text += (text.empty() ? "" : " ") + shortest_text(null);
    return text;
}

std::vector<std::string> column_heading(const intake::SurveyColumn& column) {
    std::string nulls;
    if (!column.nulls.empty()) nulls = "null " + shortest_text(column.nulls.front());
    if (column.nulls.size() > 1) nulls += ", " + std::to_string(column.nulls.size() - 1) + " more";
    return {column.name, column.role == Role::none ? "" : std::string(intake::role_title(column.role)),
            column.role == Role::none ? column.unit_text : std::string(intake::unit_name(column.unit)),
            nulls};
}

std::string missing_roles(const intake::SurveyLayout& layout) {
    const auto has = [&](Role role) { return layout.column_of(role).has_value(); };
    const bool places =
        (has(Role::easting) && has(Role::northing)) || (has(Role::longitude) && has(Role::latitude));
    if (!places)
        return "The columns of the coordinates are not known: click on the head of a column and choose "
               "Easting, "
               "Northing, or Longitude and Latitude";
    if (!has(Role::mag) && !has(Role::grav))
        return "No column is known to hold magnetics or gravity: click on the head of a column and choose "
               "one";
    return {};
}

std::string system_words(const intake::SurveyLayout& layout, const intake::SurveyIndex* index,
                         const std::string& keyed) {
    const bool degrees = layout.column_of(Role::longitude) && !layout.column_of(Role::easting);
    const std::string system = index ? index->coordinate_system : keyed;
    if (!keyed.empty()) return system_name(keyed);
    if (degrees)
        return system.empty() ? "longitude and latitude"
                              : system_name(system) + ": the zone that the survey lies in";
    if (!layout.coordinate_system.empty())
        return system_name(layout.coordinate_system) + ": the file says it";
    return "not known: the file does not say it. Key one, such as EPSG:32754, to have place, field and maps";
}

std::vector<std::string> suggested_systems(const std::string& keyed) {
    constexpr std::size_t least = 3, most = 12;  // letters, offers
    std::vector<std::string> offers;
    if (keyed.size() < least) return offers;
    try {
        for (const intake::CoordinateSystem& system : intake::coordinate_systems_like(keyed, most))
            offers.push_back(system.code + " - " + system.name);
    } catch (const std::exception&) {
        offers.clear();  // what is keyed is told when it is taken
    }
    return offers;
}

std::string field_words(const intake::SurveyIndex& index, std::optional<std::size_t> line,
                        const ImportChoices& choices) {
    if (choices.field_choice == FieldChoice::none) return "Not set: key intensity and angles later";
    if (index.lines.empty()) return {};
    const intake::SurveyLineInfo& info = index.lines[line.value_or(0)];
    try {
        const auto place = middle_of(index, info);
        if (!place) return "Not set: the coordinate system is not known";
        if (choices.date.empty() && !info.year) return "Not set: key the date of the survey";
        const double year = choices.date.empty() ? *info.year : field::year_of_date(choices.date);
        const field::MainField main = field::main_field(*place, year);
        const std::string date = choices.date.empty() ? format_number(year, "0.0") : choices.date;
        return format_number(main.total_nT, "0") + " nT, inclination " +
               format_number(main.inclination_deg, "0.0") + "\xC2\xB0, declination " +
               format_number(main.declination_deg, "0.0") + "\xC2\xB0 (" + std::string(field::model_name) +
               ", line " + info.name + ", " + date + ")";
    } catch (const std::exception& failure) {
        return "Not set: " + fault_text(failure);
    }
}

std::vector<intake::ReportItem> reading_items(const intake::SurveyIndex& index) {
    std::vector<intake::ReportItem> items;
    const auto ties = std::ranges::count_if(index.lines, &intake::SurveyLineInfo::tie);
    const auto lines = static_cast<long>(index.lines.size());
    std::string read = count_words(index.rows, "row", "rows") + " in " + count_words(lines, "line", "lines");
    if (ties > 0) read += ", " + count_words(static_cast<long>(ties), "of them a tie", "of them ties");
    items.push_back({"Read", read, Severity::remark});
    for (const intake::RowLoss& loss : index.losses) {
        std::string text = count_words(loss.count, "row: ", "rows: ") + loss.why;
        if (!loss.column.empty()) text += " (" + loss.column + ")";
        items.push_back({"Dropped",
                         text + ", first in line " + std::to_string(loss.first_line) + " of the file",
                         Severity::doubt});
    }
    std::string nulls;
    for (std::size_t i = 0; i < std::min(index.nulls.size(), index.layout.columns.size()); ++i)
        if (index.nulls[i] > 0)
            nulls += (nulls.empty() ? "" : ", ") + index.layout.columns[i].name + " " +
                     std::to_string(index.nulls[i]);
    if (!nulls.empty()) items.push_back({"Nulls", nulls, Severity::remark});
    for (const std::string& remark : index.layout.remarks)
        items.push_back({"Note", remark, Severity::remark});
    return items;
}

std::string kind_words(const intake::SurveyLineInfo& line) {
    if (line.stations < 2) return line.stations == 1 ? "one station" : "no stations";
    std::string words = line.tie ? "tie" : "line";
    if (line.pieces.size() > 1) words += ", bends: " + std::to_string(line.pieces.size()) + " pieces";
    return words;
}

}  // namespace anomalis::flow
