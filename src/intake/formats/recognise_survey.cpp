#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "core/failure.h"
#include "core/numbers.h"
#include "intake/formats/column_roles.h"
#include "intake/formats/column_units.h"
#include "intake/formats/column_values.h"
#include "intake/formats/field_value.h"
#include "intake/formats/formats.h"
#include "intake/formats/role_names.h"
#include "intake/formats/row_fields.h"
#include "intake/formats/survey_files.h"
#include "intake/formats/system_text.h"
#include "intake/formats/text_head.h"

namespace anomalis::intake {

namespace {

constexpr std::size_t head_lines = 5000, metadata_lines = 200;

/// The dummies of the trade, which may stand anywhere beyond the rows that were looked at.
constexpr std::array<double, 5> usual_nulls{-9999, -99999, -999999, -9999999, -1e32};

const SurveyFormat& format_named(const std::string& name) {
    for (const SurveyFormat* format : survey_formats())
        if (format->name() == name) return *format;
    throw Fault("No format of survey files is called \"" + name + "\".");
}

SurveySample sample_of(const SurveyFiles& files, const std::string& path, const ReadAs& read_as) {
    if (files.rows.empty())
        throw Fault(
            path +
            " defines the columns of a .dat file, but there is none of this name beside it. Put the .dat "
            "file into the same folder.");
    SurveySample sample = read_head(files.rows, head_lines, read_as.encoding);
    sample.read_as = read_as;
    sample.definition_path = files.definition;
    return sample;
}

[[noreturn]] void no_table(const SurveySample& sample) {
    for (std::size_t i = 0; i < sample.lines.size(); ++i) {
        if (trim_field(sample.lines[i]).empty() || is_table_comment(sample.lines[i])) continue;
        throw Fault(sample.path + " holds no table of numbers: line " + std::to_string(i + 1) + " begins \"" +
                    sample.lines[i].substr(0, 40) +
                    "\". A survey file has rows with coordinates and a field, all with "
                    "the same number of fields.");
    }
    throw Fault(sample.path + " holds no table of numbers: there are only blank lines and comments.");
}

/// The first format that knows the file.
SurveyLayout recognise_format(const SurveySample& sample) {
    for (const SurveyFormat* format : survey_formats()) {
        if (!sample.read_as.format.empty() && format->name() != sample.read_as.format) continue;
        auto layout = format->recognise(sample);
        if (!layout) continue;
        if (!sample.definition_path.empty() && layout->definition_path.empty())
            layout->remarks.push_back("The rows do not hold what " + sample.definition_path +
                                      " defines; they are read as a table of their own.");
        return *layout;
    }
    if (!(sample.read_as == ReadAs()))
        throw Fault(sample.path +
                    " cannot be read in this way: its rows have no equal number of fields then. Let format, "
                    "separator, decimal sign and encoding be found, or choose others.");
    no_table(sample);
}

std::string system_beside(const SurveyFiles& files) {
    for (const std::string& path : files.metadata) {
        try {
            const std::string found = system_of_metadata(read_head(path, metadata_lines).lines);
            if (!found.empty()) return found;
        } catch (const std::exception&) {
            // What stands beside the data is a help, not a condition.
        }
    }
    return "";
}

/// Degrees and minutes show in the fields themselves, and no number can be read there otherwise.
void find_degree_minutes(SurveyLayout& layout) {
    constexpr std::size_t rows = 50;
    const SurveyPreview preview = preview_rows(layout, rows);
    for (std::size_t c = 0; c < layout.columns.size(); ++c) {
        const auto parted = std::count_if(preview.rows.begin(), preview.rows.end(), [c](const auto& row) {
            double value = 0;
            return is_degree_minutes(row[c]) ||
                   (!read_number(row[c], false, value) && read_degrees(row[c], false, value));
        });
        if (parted == 0 || 2 * static_cast<std::size_t>(parted) < preview.rows.size()) continue;
        const bool minutes = std::any_of(preview.rows.begin(), preview.rows.end(),
                                         [c](const auto& row) { return is_degree_minutes(row[c]); });
        layout.columns[c].text = false;
        layout.columns[c].unit = minutes ? Unit::degree_minute : Unit::degree;
    }
}

/// Fields of a text format that hold numbers, such as dates and lines of GDF2.
void find_numbers_in_text(SurveyLayout& layout) {
    constexpr std::size_t rows = 200;
    const SurveyPreview preview = preview_rows(layout, rows);
    for (std::size_t c = 0; c < layout.columns.size(); ++c) {
        if (!layout.columns[c].text) continue;
        std::size_t numbers = 0, words = 0;
        double value = 0;
        for (const auto& row : preview.rows) {
            if (is_null_text(row[c])) continue;
            ++(read_number(row[c], layout.decimal_comma, value) ? numbers : words);
        }
        layout.columns[c].text = numbers == 0 || words > 0;
    }
}

void add_null(SurveyColumn& column, double null) {
    if (!is_null_value(null, column.nulls) || null < -1e30) {
        if (std::find(column.nulls.begin(), column.nulls.end(), null) == column.nulls.end())
            column.nulls.push_back(null);
    }
}

bool may_miss(Role role) {
    return role != Role::none && role != Role::line && role != Role::fiducial && role != Role::date;
}

struct FoundNull {
    std::size_t column = 0;
    double value = 0;
};

/// Repeated extremes of every column, before roles are chosen: a column of nothing else is no channel.
std::vector<FoundNull> find_extremes(SurveyLayout& layout, ValueSample& sample) {
    std::vector<FoundNull> found;
    for (std::size_t c = 0; c < layout.columns.size(); ++c) {
        const std::vector<double> extremes = repeated_extremes(sample.columns[c]);
        for (const double null : extremes) {
            add_null(layout.columns[c], null);
            found.push_back({c, null});
        }
        if (!extremes.empty()) measure(sample.columns[c], layout.columns[c].nulls);
    }
    return found;
}

bool is_place(Role role) {
    return role == Role::easting || role == Role::northing || role == Role::longitude ||
           role == Role::latitude;
}

/// What tells a line, a fiducial or a day is no reading: ties are numbered far from the lines.
bool is_label(Role role) {
    return role == Role::line || role == Role::fiducial || role == Role::date;
}

/// A line that runs due east has one northing, however far it lies from the others: that is a place.
void keep_places_and_labels(SurveyLayout& layout, std::vector<FoundNull>& found) {
    std::erase_if(found, [&layout](const FoundNull& null) {
        SurveyColumn& column = layout.columns[null.column];
        if (!is_place(column.role) && !is_label(column.role)) return false;
        if (null.value == 0 || looks_like_dummy(null.value)) return false;
        return std::erase(column.nulls, null.value) > 0;
    });
}

void tell_of_extremes(SurveyLayout& layout, const std::vector<FoundNull>& found) {
    for (const FoundNull& null : found)
        if (may_miss(layout.columns[null.column].role))
            layout.remarks.push_back("\"" + layout.columns[null.column].name +
                                     "\": " + shortest_text(null.value) +
                                     " lies far outside of all other values and is taken for none.");
}

/// A usual dummy within the range of all other readings is a reading itself.
void add_usual_nulls(SurveyLayout& layout, const ValueSample& sample) {
    const std::vector<double> usual(usual_nulls.begin(), usual_nulls.end());
    const NullValues dummies(usual);
    for (std::size_t c = 0; c < layout.columns.size(); ++c) {
        SurveyColumn& column = layout.columns[c];
        if (!may_miss(column.role) || column.text) continue;
        double least = std::numeric_limits<double>::infinity(), greatest = -least;
        for (const double value : sample.columns[c].values) {
            if (dummies.hold(value)) continue;
            least = std::min(least, value);
            greatest = std::max(greatest, value);
        }
        for (const double null : usual)
            if (null < least || null > greatest) add_null(column, null);
    }
}

/// A date must be one in the rows that were looked at.
void check_date(SurveyLayout& layout) {
    const auto date = layout.column_of(Role::date);
    if (!date) return;
    constexpr std::size_t rows = 200;
    std::size_t read = 0, none = 0;
    for (const auto& row : preview_rows(layout, rows).rows) {
        if (is_null_text(row[*date])) continue;
        ++(read_date(row[*date]) ? read : none);
    }
    if (read > none) return;
    layout.columns[*date].role = Role::none;
    layout.remarks.push_back("\"" + layout.columns[*date].name + "\" holds no dates that can be read.");
}

}  // namespace

std::span<const SurveyFormat* const> survey_formats() {
    static const std::array<const SurveyFormat*, 3> formats{&gdf2_format(), &xyz_lines_format(),
                                                            &text_table_format()};
    return formats;
}

std::unique_ptr<RowReader> open_rows(const SurveyLayout& layout, std::span<const std::size_t> wanted,
                                     const FileStretch* stretch) {
    return format_named(layout.format).open(layout, wanted, stretch);
}

SurveyLayout recognise_survey(const std::string& path, const ReadAs& read_as) {
    const SurveyFiles files = survey_files(path);
    const SurveySample sample = sample_of(files, path, read_as);
    SurveyLayout layout = recognise_format(sample);
    if (layout.coordinate_system.empty()) layout.coordinate_system = system_beside(files);
    if (files.definition.empty() && files.rows.ends_with(".dat") && layout.names_row == 0)
        layout.remarks.push_back(
            "There is no .dfn file of this name beside the data: the columns are read as they stand.");
    find_numbers_in_text(layout);
    find_degree_minutes(layout);
    ValueSample values = sample_values(layout);
    std::vector<FoundNull> extremes = find_extremes(layout, values);
    choose_roles(layout, values);
    keep_places_and_labels(layout, extremes);
    tell_of_extremes(layout, extremes);
    check_date(layout);
    choose_units(layout, values);
    add_usual_nulls(layout, values);
    return layout;
}

std::vector<RoleQuestion> open_questions(const SurveyLayout& layout) {
    std::vector<RoleQuestion> questions;
    for (const Role role : {Role::line, Role::mag, Role::grav}) {
        const auto chosen = layout.column_of(role);
        if (!chosen) continue;
        RoleQuestion question{role, {*chosen}};
        for (const RoleBid& bid : role_bids(role, layout)) {
            const SurveyColumn& column = layout.columns[bid.column];
            if (bid.column != *chosen && column.role == Role::none) question.columns.push_back(bid.column);
        }
        if (question.columns.size() > 1) questions.push_back(std::move(question));
    }
    return questions;
}

SurveyPreview preview_rows(const SurveyLayout& layout, std::size_t most) {
    return format_named(layout.format).preview(layout, most);
}

}  // namespace anomalis::intake
