#include "survey/results/table_columns.h"

#include <cstdint>
#include <string>
#include <utility>

#include "core/body_parameters.h"

namespace anomalis::survey {

namespace {

using output::gis_number;
using output::GisKind;
using output::GisValue;

std::string status_word(const LineResult& line) {
    return line.status == LineStatus::done ? "done" : "failed";
}

std::string notes_text(const std::vector<std::string>& sentences) {
    std::string text;
    for (const std::string& sentence : sentences) text += (text.empty() ? "" : " | ") + sentence;
    return text;
}

/// The track is given by its ends; where it bends, by the map.
GisValue end_of_track(const LineResult& line, bool last, double TrackPoint::*axis) {
    if (line.track.empty()) return {};
    return gis_number((last ? line.track.back() : line.track.front()).*axis);
}

std::string sheet_name(ParamCode code) {
    return std::string(body_parameter(code).column.sheet);
}

/// What both tables say of a line's fit.
std::vector<std::pair<std::string, double LineResult::*>> fit_numbers() {
    return {{"rms_nT", &LineResult::rms_nT},
            {"rms_mGal", &LineResult::rms_mGal},
            {"noise_nT", &LineResult::noise_nT},
            {"noise_mGal", &LineResult::noise_mGal},
            {"criterion", &LineResult::criterion}};
}

std::vector<std::pair<std::string, IntervalValue BodyResult::*>> interval_values() {
    return {{"depth_below_ground_m", &BodyResult::depth_below_ground},
            {"depth_below_sensor_m", &BodyResult::depth_below_sensor},
            {sheet_name(param_dip), &BodyResult::dip},
            {sheet_name(param_width), &BodyResult::width},
            {sheet_name(param_strike), &BodyResult::strike},
            {sheet_name(param_length), &BodyResult::length},
            {sheet_name(param_depth_extent), &BodyResult::depth_extent},
            {sheet_name(param_susc), &BodyResult::susceptibility},
            {sheet_name(param_density), &BodyResult::density_contrast},
            {sheet_name(param_distance), &BodyResult::distance}};
}

}  // namespace

LineColumns line_columns() {
    LineColumns columns;
    const auto words = [&](const char* name, auto text) {
        columns.push_back({{name, GisKind::words}, [text](const LineResult& line) { return text(line); }});
    };
    const auto member = [&](const char* name, std::string LineResult::*text) {
        words(name, [text](const LineResult& line) { return line.*text; });
    };
    const auto end = [&](const char* name, bool last, double TrackPoint::*axis) {
        columns.push_back(
            {{name, GisKind::real}, [=](const LineResult& line) { return end_of_track(line, last, axis); }});
    };
    const auto whole = [&](const char* name, auto count) {
        columns.push_back({{name, GisKind::whole}, [count](const LineResult& line) -> GisValue {
                               return std::int64_t{count(line)};
                           }});
    };
    const auto number = [&](const std::string& name, double LineResult::*value) {
        columns.push_back(
            {{name, GisKind::real}, [value](const LineResult& line) { return gis_number(line.*value); }});
    };
    member("line", &LineResult::line);
    words("status", status_word);
    member("message", &LineResult::message);
    member("source", &LineResult::source);
    whole("stations", [](const LineResult& line) { return line.stations; });
    number("length_m", &LineResult::length_m);
    member("coordinate_system", &LineResult::coordinate_system);
    end("start_east_m", false, &TrackPoint::east);
    end("start_north_m", false, &TrackPoint::north);
    end("end_east_m", true, &TrackPoint::east);
    end("end_north_m", true, &TrackPoint::north);
    member("channel", &LineResult::channel);
    whole("bodies", [](const LineResult& line) { return static_cast<std::int64_t>(line.bodies.size()); });
    for (const auto& [name, value] : fit_numbers()) number(name, value);
    columns.push_back({{"regional_degree", GisKind::whole}, [](const LineResult& line) {
                           return line.regional_degree < 0 ? GisValue() : std::int64_t{line.regional_degree};
                       }});
    words("notes", [](const LineResult& line) { return notes_text(line.notes); });
    member("version", &LineResult::version);
    return columns;
}

BodyColumns body_columns() {
    BodyColumns columns;
    const auto line_words = [&](const char* name, std::string LineResult::*text) {
        columns.push_back({{name, GisKind::words},
                           [text](const LineResult& line, const BodyResult&) { return line.*text; }});
    };
    const auto words = [&](const char* name, std::string BodyResult::*text) {
        columns.push_back({{name, GisKind::words},
                           [text](const LineResult&, const BodyResult& body) { return body.*text; }});
    };
    const auto number = [&](const std::string& name, double BodyResult::*value) {
        columns.push_back({{name, GisKind::real}, [value](const LineResult&, const BodyResult& body) {
                               return gis_number(body.*value);
                           }});
    };
    const auto part = [&](const std::string& name, IntervalValue BodyResult::*value,
                          double IntervalValue::*side) {
        columns.push_back({{name, GisKind::real}, [value, side](const LineResult&, const BodyResult& body) {
                               return gis_number(body.*value.*side);
                           }});
    };
    line_words("line", &LineResult::line);
    columns.push_back({{"body", GisKind::whole}, [](const LineResult&, const BodyResult& body) -> GisValue {
                           return std::int64_t{body.number};
                       }});
    words("name", &BodyResult::name);
    words("type", &BodyResult::type);
    number("east_m", &BodyResult::east);
    number("north_m", &BodyResult::north);
    line_words("coordinate_system", &LineResult::coordinate_system);
    number("longitude_deg", &BodyResult::longitude);
    number("latitude_deg", &BodyResult::latitude);
    number("profile_azimuth_deg", &BodyResult::profile_azimuth);
    number(sheet_name(param_top), &BodyResult::top_elevation);
    for (const auto& [name, value] : interval_values()) {
        part(name, value, &IntervalValue::value);
        part(name + "_lower_90", value, &IntervalValue::lower);
        part(name + "_upper_90", value, &IntervalValue::upper);
    }
    line_words("channel", &LineResult::channel);
    for (const auto& [name, value] : fit_numbers())
        columns.push_back({{name, GisKind::real}, [value = value](const LineResult& line, const BodyResult&) {
                               return gis_number(line.*value);
                           }});
    columns.push_back({{"status", GisKind::words}, [](const LineResult& line, const BodyResult&) -> GisValue {
                           return status_word(line);
                       }});
    line_words("version", &LineResult::version);
    return columns;
}

}  // namespace anomalis::survey
