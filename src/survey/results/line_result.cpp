#include "survey/results/line_result.h"

#include <array>
#include <cmath>
#include <utility>

#include "report/json_text.h"
#include "survey/results/json_fields.h"

namespace anomalis::survey {

namespace {

constexpr std::array<std::pair<const char*, double BodyResult::*>, 6> body_numbers{
    {{"east", &BodyResult::east},
     {"north", &BodyResult::north},
     {"longitude", &BodyResult::longitude},
     {"latitude", &BodyResult::latitude},
     {"profile_azimuth", &BodyResult::profile_azimuth},
     {"top_elevation", &BodyResult::top_elevation}}};

constexpr std::array<std::pair<const char*, IntervalValue BodyResult::*>, 10> body_values{
    {{"distance", &BodyResult::distance},
     {"depth_below_ground", &BodyResult::depth_below_ground},
     {"depth_below_sensor", &BodyResult::depth_below_sensor},
     {"strike", &BodyResult::strike},
     {"dip", &BodyResult::dip},
     {"width", &BodyResult::width},
     {"length", &BodyResult::length},
     {"depth_extent", &BodyResult::depth_extent},
     {"susceptibility", &BodyResult::susceptibility},
     {"density_contrast", &BodyResult::density_contrast}}};

constexpr std::array<std::pair<const char*, double LineResult::*>, 6> line_numbers{
    {{"length_m", &LineResult::length_m},
     {"rms_nT", &LineResult::rms_nT},
     {"rms_mGal", &LineResult::rms_mGal},
     {"noise_nT", &LineResult::noise_nT},
     {"noise_mGal", &LineResult::noise_mGal},
     {"criterion", &LineResult::criterion}}};

constexpr std::array<std::pair<const char*, std::string LineResult::*>, 7> line_texts{
    {{"line", &LineResult::line},
     {"source", &LineResult::source},
     {"message", &LineResult::message},
     {"digest", &LineResult::digest},
     {"version", &LineResult::version},
     {"coordinate_system", &LineResult::coordinate_system},
     {"channel", &LineResult::channel}}};

Json body_json(const BodyResult& body) {
    Json json = {{"body", body.number}, {"name", body.name}, {"type", body.type}};
    for (const auto& [name, number] : body_numbers) json[name] = number_json(body.*number);
    for (const auto& [name, member] : body_values) {
        const IntervalValue& value = body.*member;
        json[name] = {number_json(value.value), number_json(value.lower), number_json(value.upper)};
    }
    return json;
}

BodyResult body_of(const Json& json) {
    BodyResult body;
    body.number = json.at("body").get<int>();
    body.name = json.at("name").get<std::string>();
    body.type = json.at("type").get<std::string>();
    for (const auto& [name, number] : body_numbers) body.*number = number_of(json.at(name));
    for (const auto& [name, member] : body_values) {
        const Json& value = json.at(name);
        body.*member = {number_of(value.at(0)), number_of(value.at(1)), number_of(value.at(2))};
    }
    return body;
}

LineResult result_of(const Json& json) {
    LineResult result;
    for (const auto& [name, text] : line_texts) result.*text = json.at(name).get<std::string>();
    for (const auto& [name, number] : line_numbers) result.*number = number_of(json.at(name));
    result.status = json.at("status") == "done" ? LineStatus::done : LineStatus::failed;
    result.notes = json.at("notes").get<std::vector<std::string>>();
    result.seconds = number_of(json.at("seconds"));
    result.stations = json.at("stations").get<int>();
    result.regional_degree = json.at("regional_degree").get<int>();
    for (const Json& point : json.at("track"))
        result.track.push_back({number_of(point.at(0)), number_of(point.at(1))});
    for (const Json& body : json.at("bodies")) result.bodies.push_back(body_of(body));
    for (const Json& file : json.at("files"))
        result.files.push_back({file.at("name").get<std::string>(), file.at("bytes").get<std::int64_t>(),
                                file.at("digest").get<std::string>()});
    return result;
}

}  // namespace

ToldDepth told_depth(const BodyResult& body) {
    const bool below_sensor = !std::isfinite(body.depth_below_ground.value);
    return {below_sensor ? body.depth_below_sensor : body.depth_below_ground, below_sensor};
}

std::string line_result_json(const LineResult& result) {
    Json json;
    for (const auto& [name, text] : line_texts) json[name] = result.*text;
    json["status"] = result.status == LineStatus::done ? "done" : "failed";
    json["notes"] = result.notes;
    json["seconds"] = number_json(result.seconds);
    json["stations"] = result.stations;
    for (const auto& [name, number] : line_numbers) json[name] = number_json(result.*number);
    json["regional_degree"] = result.regional_degree;
    json["track"] = Json::array();
    for (const TrackPoint& point : result.track)
        json["track"].push_back({number_json(point.east), number_json(point.north)});
    json["bodies"] = Json::array();
    for (const BodyResult& body : result.bodies) json["bodies"].push_back(body_json(body));
    json["files"] = Json::array();
    for (const LineFile& file : result.files)
        json["files"].push_back({{"name", file.name}, {"bytes", file.bytes}, {"digest", file.digest}});
    return report::json_text(json, 1);
}

LineResult read_line_result(const std::string& json, const std::string& path) {
    return read_json_file(json, path, result_of);
}

}  // namespace anomalis::survey
