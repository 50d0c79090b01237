#include "flow/line_field.h"

#include <cmath>

#include "core/failure.h"
#include "core/numbers.h"
#include "field/main_field.h"

namespace anomalis::flow {

namespace {

/// The station nearest to the middle between the ends.
std::size_t middle_station(const intake::SurveyLine& line) {
    const double east = (line.east.front() + line.east.back()) / 2;
    const double north = (line.north.front() + line.north.back()) / 2;
    std::size_t nearest = 0;
    double least = std::hypot(line.east[0] - east, line.north[0] - north);
    for (std::size_t i = 1; i < line.east.size(); ++i) {
        const double distance = std::hypot(line.east[i] - east, line.north[i] - north);
        if (distance >= least) continue;
        least = distance;
        nearest = i;
    }
    return nearest;
}

/// m above sea level, as far as the line tells: some ten metres are below a nanotesla.
double height_at(const intake::SurveyLine& line, std::size_t station) {
    for (const std::vector<double>* heights : {&line.height, &line.ground})
        if (!heights->empty() && !std::isnan((*heights)[station])) return (*heights)[station];
    return 0;
}

field::MainField field_at(const intake::SurveyLine& line, std::size_t station, double year) {
    return field::main_field({.latitude = line.latitude[station],
                              .longitude = line.longitude[station],
                              .height_m = height_at(line, station)},
                             year);
}

std::string model_text(const SurveyDate& date) {
    return std::string(field::model_name) + " at the middle of the line, " + date.text;
}

/// What is needed for the field of a place and is not known; "" for nothing.
std::string missing_for_field(const intake::SurveyLine& line, const SurveyDate& date) {
    if (date.text.empty()) return "the date of the survey is not known";
    if (line.longitude.empty()) return "the coordinate system of the survey is not known";
    return "";
}

}  // namespace

SurveyDate date_of_line(const intake::SurveyLine& line, const ImportChoices& choices) {
    if (!choices.date.empty()) return {choices.date, field::year_of_date(choices.date)};
    if (line.year) return {format_number(*line.year, "0.###"), *line.year};
    return {};
}

void set_field(const intake::SurveyLine& line, const SurveyDate& date, const ImportChoices& choices,
               ImportedLine& imported) {
    Workspace& workspace = imported.workspace;
    workspace.source.date = date.text;
    if (choices.field_choice == FieldChoice::keyed) {
        workspace.field = choices.field;
        return;
    }
    forget_field(workspace);
    if (choices.field_choice == FieldChoice::none) return;
    if (const std::string missing = missing_for_field(line, date); !missing.empty()) {
        if (!line.mag.empty())
            imported.notes.add("The earth's field of " + imported.title + " is not set: " + missing, 1,
                               Severity::remark);
        return;
    }
    try {
        const field::MainField at_middle = field_at(line, middle_station(line), date.year);
        workspace.field = {to_single(at_middle.total_nT), to_single(at_middle.inclination_deg),
                           to_single(at_middle.declination_deg)};
    } catch (const Fault& fault) {
        if (!choices.date.empty()) throw;
        imported.notes.add("The earth's field of " + imported.title + " is not set: " + fault.what(), 1,
                           Severity::doubt);
        return;
    }
    workspace.source.field_missing = false;
    workspace.source.field_origin = model_text(date);
}

std::string change_main_field(const ImportChoices& choices, ImportedLine& imported) {
    LineSource& source = imported.workspace.source;
    if (choices.main_field == MainFieldChange::none || !imported.workspace.has_mag()) return "";
    const bool removed = choices.main_field == MainFieldChange::removed;
    const std::string what = removed ? "removed from" : "added to";
    const std::string missing = source.date.empty()                ? "date"
                                : source.coordinate_system.empty() ? "coordinate system"
                                                                   : "";
    if (!missing.empty())
        throw Fault("The main field cannot be " + what + " the magnetics of " + imported.title + ": the " +
                    missing + " of the survey is not known");
    source.igrf_change = removed ? igrf_removed : igrf_added;
    return "Main field: mag_nT is as in the source file; the workspace has " +
           std::string(field::model_name) + " " + what + " it";
}

}  // namespace anomalis::flow
