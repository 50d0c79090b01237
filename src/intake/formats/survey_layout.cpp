#include "intake/formats/survey_layout.h"

#include <algorithm>
#include <utility>

#include "core/text.h"

namespace anomalis::intake {

namespace {

struct RoleTexts {
    Role role;
    std::string_view name, title;
};

constexpr std::array role_texts{
    RoleTexts{Role::none, "none", "Not used"},
    RoleTexts{Role::line, "line", "Line"},
    RoleTexts{Role::fiducial, "fiducial", "Fiducial"},
    RoleTexts{Role::date, "date", "Date"},
    RoleTexts{Role::easting, "easting", "Easting"},
    RoleTexts{Role::northing, "northing", "Northing"},
    RoleTexts{Role::longitude, "longitude", "Longitude"},
    RoleTexts{Role::latitude, "latitude", "Latitude"},
    RoleTexts{Role::sensor_height, "height", "Sensor height"},
    RoleTexts{Role::clearance, "clearance", "Clearance above ground"},
    RoleTexts{Role::terrain, "terrain", "Terrain"},
    RoleTexts{Role::mag, "mag", "Magnetics"},
    RoleTexts{Role::grav, "grav", "Gravity"},
};

struct UnitText {
    Unit unit;
    std::string_view name;
    double factor;
};

constexpr double feet_to_metres = 0.3048;  // international foot

constexpr std::array unit_texts{
    UnitText{Unit::as_is, "", 1},
    UnitText{Unit::metre, "m", 1},
    UnitText{Unit::foot, "ft", feet_to_metres},
    UnitText{Unit::nanotesla, "nT", 1},
    UnitText{Unit::milligal, "mGal", 1},
    UnitText{Unit::micrometre_per_s2, "um/s2", 0.1},
    UnitText{Unit::gravity_unit, "gu", 0.1},
    UnitText{Unit::degree, "deg", 1},
    UnitText{Unit::degree_minute, "deg min", 1},
};

const RoleTexts& texts_of(Role role) {
    return *std::find_if(role_texts.begin(), role_texts.end(),
                         [role](const RoleTexts& row) { return row.role == role; });
}

const UnitText& text_of(Unit unit) {
    return *std::find_if(unit_texts.begin(), unit_texts.end(),
                         [unit](const UnitText& row) { return row.unit == unit; });
}

}  // namespace

std::string_view role_name(Role role) {
    return texts_of(role).name;
}

std::optional<Role> role_of_name(std::string_view name) {
    for (const RoleTexts& row : role_texts)
        if (equal_ignoring_case(row.name, name)) return row.role;
    return {};
}

std::string_view role_title(Role role) {
    return texts_of(role).title;
}

std::string_view unit_name(Unit unit) {
    return text_of(unit).name;
}

std::optional<Unit> unit_of_name(std::string_view name) {
    for (const UnitText& row : unit_texts)
        if (equal_ignoring_case(row.name, name)) return row.unit;
    return {};
}

double unit_factor(Unit unit) {
    return text_of(unit).factor;
}

std::vector<Unit> units_of_role(Role role) {
    switch (role) {
        case Role::easting:
        case Role::northing:
        case Role::sensor_height:
        case Role::clearance:
        case Role::terrain:
            return {Unit::metre, Unit::foot};
        case Role::longitude:
        case Role::latitude:
            return {Unit::degree, Unit::degree_minute};
        case Role::mag:
            return {Unit::nanotesla};
        case Role::grav:
            return {Unit::milligal, Unit::micrometre_per_s2, Unit::gravity_unit};
        default:
            return {};
    }
}

std::optional<std::size_t> SurveyLayout::column_of(Role role) const {
    for (std::size_t i = 0; i < columns.size(); ++i)
        if (columns[i].role == role) return i;
    return {};
}

}  // namespace anomalis::intake
