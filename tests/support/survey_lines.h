#pragma once

#include <cmath>
#include <string>

#include "core/numbers.h"

// Survey files of tests: parallel lines in the shape of an airborne survey.
namespace anomalis {

struct SurveyShape {
    int lines = 3, stations = 40;
    double spacing = 10, apart = 200;  ///< m
    bool to_and_fro = true;            ///< every other line is flown back
    bool line_column = true;
    double east = 482000, north = 7553000;  ///< UTM 54 S
};

/// Columns line, east, north, height, ground, mag, grav with commas; line 100, 110, 120, ... run east.
inline std::string survey_table(const SurveyShape& shape = {}) {
    std::string text = shape.line_column ? "line," : "";
    text += "east,north,height,dtm,tmi,bouguer\n";
    for (int l = 0; l < shape.lines; ++l)
        for (int i = 0; i < shape.stations; ++i) {
            const int along = shape.to_and_fro && l % 2 == 1 ? shape.stations - 1 - i : i;
            const double bell = std::exp(-std::pow((along - shape.stations / 2.0) / 5, 2));
            if (shape.line_column) text += std::to_string(100 + 10 * l) + ",";
            text += format_number(shape.east + along * shape.spacing, "0.0") + "," +
                    format_number(shape.north + l * shape.apart, "0.0") + "," +
                    format_number(300 + l + along % 3, "0") + ",240," +
                    format_number(100 * bell + l, "0.00") + "," + format_number(bell, "0.000") + "\n";
        }
    return text;
}

/// Columns line, longitude, latitude, mag: `lines` lines of `stations`, 0.0001 degrees apart, from a place
/// on.
inline std::string survey_in_degrees(double longitude, double latitude, int lines = 2, int stations = 30) {
    std::string text = "line,longitude,latitude,tmi\n";
    for (int l = 0; l < lines; ++l)
        for (int i = 0; i < stations; ++i)
            text += std::to_string(100 + 10 * l) + "," + format_number(longitude + 0.0001 * i, "0.00000") +
                    "," + format_number(latitude + 0.002 * l, "0.00000") + "," + std::to_string(50 + i % 7) +
                    "\n";
    return text;
}

}  // namespace anomalis
