#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// What a survey file looks like, as it was recognised or as a person corrected it: all that reading its rows
// needs.
namespace anomalis::intake {

/// What a column is to the program.
enum class Role : std::uint8_t {
    none,
    line,
    fiducial,
    date,
    easting,
    northing,
    longitude,
    latitude,
    sensor_height,  ///< elevation of the sensor above sea level or ellipsoid
    clearance,      ///< height of the sensor above ground (radar altimeter)
    terrain,        ///< elevation of the ground
    mag,
    grav
};
inline constexpr std::array all_roles{Role::none,          Role::line,      Role::fiducial,  Role::date,
                                      Role::easting,       Role::northing,  Role::longitude, Role::latitude,
                                      Role::sensor_height, Role::clearance, Role::terrain,   Role::mag,
                                      Role::grav};
/// Short names for command lines and files: "line", "fiducial", "date", "easting", ..., "height",
/// "clearance", "terrain", "mag", "grav".
std::string_view role_name(Role role);
std::optional<Role> role_of_name(std::string_view name);
/// For people: "Sensor height", "Magnetics".
std::string_view role_title(Role role);

/// In which unit a column stands. What is read comes out in m, nT, mGal, degrees.
enum class Unit : std::uint8_t {
    as_is,
    metre,
    foot,
    nanotesla,
    milligal,
    micrometre_per_s2,
    gravity_unit,  ///< 1 gu is 1 um/s2, 0.1 mGal
    degree,
    degree_minute  ///< "140 49 59.8" in one field, or DDMM.mmm
};
/// "m", "ft", "nT", "mGal", "um/s2", "gu", "deg", "deg min", "" for `as_is`.
std::string_view unit_name(Unit unit);
std::optional<Unit> unit_of_name(std::string_view name);
/// What a value in `unit` is multiplied by to stand in m, nT, mGal, degrees (not for `degree_minute`).
double unit_factor(Unit unit);
/// The units that a column of this role may have; empty where it has none.
std::vector<Unit> units_of_role(Role role);

struct SurveyColumn {
    std::string name;         ///< as the file names it; "Column 3" where it does not
    std::string description;  ///< what else the file says of it
    std::string unit_text;    ///< as the file says it; "" where it does not
    Role role = Role::none;
    Unit unit = Unit::as_is;
    std::vector<double> nulls;  ///< values that stand for none, in the unit of the file
    bool text = false;          ///< its fields are no numbers: names, dates
    std::size_t offset = 0;     ///< first byte of its field, fixed width alone
    std::size_t width = 0;      ///< bytes of its field; 0: fields are separated

    bool operator==(const SurveyColumn&) const = default;
};

enum class Encoding : std::uint8_t { utf8, latin1, utf16_little, utf16_big };

struct SurveyLayout {
    std::string path;             ///< of the rows: the table, the .dat
    std::string definition_path;  ///< of the .dfn; "" where there is none
    std::string format;           ///< name of the format: "Text table", "XYZ lines", "ASEG-GDF2"
    Encoding encoding = Encoding::utf8;
    bool packed = false;   ///< .gz
    char separator = ' ';  ///< ' ' for blanks and tabs, else '\t', ',' or ';'
    bool decimal_comma = false;
    bool fixed_width = false;
    long first_row = 1;         ///< number of the first line of the file that can be a row
    long names_row = 0;         ///< number of the line with the names of the columns; 0 for none
    std::string record_type;    ///< of the rows among several; "" for all
    bool line_headers = false;  ///< lines begin with a row "Line 5690" or "Tie 9010"
    std::vector<SurveyColumn> columns;
    std::string coordinate_system;     ///< "EPSG:28355" or a name; "" where the file does not say it
    std::vector<std::string> remarks;  ///< what the reader of the layout has to say

    /// Index of the first column with a role.
    std::optional<std::size_t> column_of(Role role) const;

    bool operator==(const SurveyLayout&) const = default;
};

}  // namespace anomalis::intake
