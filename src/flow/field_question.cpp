#include "flow/field_question.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "core/failure.h"
#include "core/numbers.h"
#include "core/prompts.h"
#include "core/search.h"
#include "core/text.h"
#include "edit/change.h"
#include "edit/workbench.h"
#include "intake/coordinates/coordinate_system.h"

namespace anomalis::flow {

namespace {

int middle_station(const Workspace& w) {
    const int at = search_sorted(w.distances.span(), w.distances.last() / 2);
    return std::clamp(at, 1, static_cast<int>(w.station_count));
}

double number_in(const std::string& text, const char* what) {
    double value = 0;
    if (trim_blanks(text).empty()) throw Fault(std::string("Give the ") + what);
    if (!parse_number(text, value)) throw Fault(std::string("The ") + what + " is no number: " + text);
    return value;
}

/// "22.1049 S, 140.5443 E".
std::string place_text(const field::Place& place) {
    constexpr const char* digits = "0.####";
    return format_number(std::abs(place.latitude), digits) + (place.latitude < 0 ? " S, " : " N, ") +
           format_number(std::abs(place.longitude), digits) + (place.longitude < 0 ? " W" : " E");
}

field::Place place_of(const FieldQuestion& question, const Workspace& workspace) {
    if (question.at_middle) return middle_of_line(workspace, question.coordinate_system);
    return {number_in(question.latitude, "latitude"), number_in(question.longitude, "longitude"),
            number_in(question.height, "height")};
}

}  // namespace

field::Place middle_of_line(const Workspace& w, const std::string& coordinate_system) {
    if (w.station_count <= 0) throw Fault("No line is loaded: give latitude and longitude");
    const int station = middle_station(w);
    std::vector<double> longitude{w.stations(station, column_east)};
    std::vector<double> latitude{w.stations(station, column_north)};
    intake::CoordinateChange(coordinate_system, intake::wgs84).forward(longitude, latitude);
    if (std::isnan(longitude[0]))
        throw Fault("The middle of the line has no place on the globe in " + coordinate_system +
                    ". Choose the coordinate system that its coordinates are in");
    return {latitude[0], longitude[0], w.stations(station, column_sensor)};
}

void set_main_field(Workspace& workspace, const field::Place& place, const std::string& where,
                    const std::string& date) {
    const std::string day(trim_blanks(date));
    const field::MainField field = field::main_field(place, field::year_of_date(day));
    workspace.field = {static_cast<float>(field.total_nT), static_cast<float>(field.inclination_deg),
                       static_cast<float>(field.declination_deg)};
    workspace.source.date = day;
    workspace.source.field_missing = false;
    workspace.source.field_origin = std::string(field::model_name) + " at " + where + ", " + day;
}

FieldQuestion field_question(const Workspace& workspace) {
    FieldQuestion question;
    question.coordinate_system = workspace.source.coordinate_system;
    question.date = workspace.source.date;
    question.at_middle = workspace.station_count > 0;
    question.height = "0";
    return question;
}

FieldAnswer answer(const FieldQuestion& question, const Workspace& workspace) {
    const field::Place place = place_of(question, workspace);
    if (trim_blanks(question.date).empty()) throw Fault("Give the date of the survey, such as 1990-07-01");
    return {field::main_field(place, field::year_of_date(question.date)), place};
}

void take_field(edit::Workbench& workbench, const FieldQuestion& question) {
    Workspace& workspace = workbench.session.workspace;
    const FieldAnswer taken = answer(question, workspace);
    const std::string text(trim_blanks(question.coordinate_system));
    const std::string system = text.empty() ? "" : intake::find_coordinate_system(text).code;
    set_main_field(workspace, taken.place, question.at_middle ? middle_of_the_line : place_text(taken.place),
                   question.date);
    workspace.source.coordinate_system = system;
    edit::note_change(workbench, {"field from place and date", "", false});
}

bool change_igrf(edit::Workbench& workbench, int step) {
    Workspace& workspace = workbench.session.workspace;
    LineSource& source = workspace.source;
    Prompts& prompts = workbench.session.prompts;
    const std::int32_t wanted = source.igrf_change + step;
    if (wanted < igrf_removed || wanted > igrf_added) {
        prompts.message(wanted < igrf_removed ? "IGRF is removed from the magnetic readings already"
                                              : "IGRF is added to the magnetic readings already");
        return false;
    }
    if (wanted != igrf_kept && (source.coordinate_system.empty() || source.date.empty())) {
        prompts.message(
            "IGRF at each station hangs on its place and the day: give coordinate system and date in Field "
            "from "
            "place and date first");
        return false;
    }
    source.igrf_change = wanted;
    workspace.mag.base = unset;
    drop_stations(workspace);
    edit::note_change(workbench,
                      {step < 0 ? "IGRF out of the readings" : "IGRF into the readings", "", false});
    return true;
}

}  // namespace anomalis::flow
