#pragma once

#include <cmath>
#include <filesystem>
#include <string>

#include "support/temp_folder.h"
#include "survey/results/survey_results.h"

namespace anomalis {

/// A body of the made-up survey below: the middle of its top, m.
inline survey::BodyResult example_body(int number, double east, double north, double depth, double dip) {
    survey::BodyResult body;
    body.number = number;
    body.name = "Body " + std::to_string(number);
    body.type = "Thin sheet";
    body.east = east;
    body.north = north;
    body.longitude = 140 + east * 1e-5;
    body.latitude = -22 + north * 1e-5;
    body.profile_azimuth = 90;
    body.top_elevation = 300 - depth;
    body.distance = {east - 450000, east - 450000 - 4, east - 450000 + 4};
    body.depth_below_ground = {depth, depth - 6, depth + 8};
    body.depth_below_sensor = {depth + 60, depth + 54, depth + 68};
    body.strike = {0, survey::unknown, survey::unknown};
    body.dip = {dip, dip - 5, dip + 5};
    body.width = {10, 4, 18};
    body.susceptibility = {20000.0 * number, 15000.0 * number, 26000.0 * number};
    return body;
}

/// Lines to the east, 200 m apart, over two dykes: one strikes 10 degrees east of north, one north on the
/// first half of the lines alone. The last line failed.
inline survey::SurveyResults example_results(int lines = 12) {
    survey::SurveyResults results;
    results.identity = {
        .name = "example", .source = "example.csv", .plan_digest = "00000000000000ab", .lines = {}};
    for (int i = 0; i < lines; ++i) {
        const double north = 7550000 + 200.0 * i;
        survey::LineResult line;
        line.line = "L" + std::to_string(1000 + 10 * i);
        line.source = "line " + std::to_string(1000 + 10 * i) + " of example.csv";
        line.digest = "00000000000000" + std::to_string(10 + i);
        line.version = "0.1.0";
        line.seconds = 0.5 + 0.01 * i;
        line.coordinate_system = "EPSG:32754";
        line.track = {{450000, north}, {454000, north}};
        line.stations = 401;
        line.length_m = 4000;
        line.channel = "mag";
        line.rms_nT = 1.5 + 0.1 * i;
        line.noise_nT = 1;
        line.regional_degree = 1;
        line.criterion = 900 - i;
        const double tilt = std::tan(10 * 3.14159265358979 / 180);
        line.bodies.push_back(example_body(1, 451000 + 200.0 * i * tilt, north, 40 + i, 80));
        if (i < lines / 2) line.bodies.push_back(example_body(2, 453000, north, 120, 100));
        if (i + 1 == lines) {
            line.status = survey::LineStatus::failed;
            line.message = "The line has no magnetic readings";
            line.bodies.clear();
        }
        results.identity.lines.push_back(line.line);
        results.lines.push_back(std::move(line));
    }
    return results;
}

/// The same as files in a folder.
inline void write_example_results(const TempFolder& folder, const survey::SurveyResults& results) {
    folder.write("survey.json", survey::survey_identity_json(results.identity));
    for (const survey::LineResult& line : results.lines)
        folder.write("lines/" + line.line + "/result.json", survey::line_result_json(line));
}

}  // namespace anomalis
