#pragma once

#include <cmath>
#include <string>

namespace anomalis {

/// A survey of 4 lines to the east 200 m apart and a tie to the north, 41 stations 25 m apart each, in zone
/// 54 of the southern hemisphere: line, fiducial, easting, northing, height, ground, tmi. A null in the
/// second line.
inline std::string survey_file_text() {
    std::string text = "line,fid,easting,northing,height,ground,tmi\n";
    int fiducial = 1000;
    const auto row = [&](const std::string& line, double east, double north, const std::string& tmi) {
        text += line + "," + std::to_string(++fiducial) + "," + std::to_string(east) + "," +
                std::to_string(north) + ",340,260," + tmi + "\n";
    };
    for (int line = 0; line < 4; ++line)
        for (int i = 0; i < 41; ++i) {
            const double bell = 300 * std::exp(-std::pow((i - 20) / 5.0, 2));
            const bool null = line == 1 && i == 7;
            row(std::to_string(5690 + 10 * line), 453000 + 25 * i, 7553000 + 200 * line,
                null ? "-99999.99" : std::to_string(51000 + 10 * line + bell));
        }
    for (int i = 0; i < 41; ++i) row("9010", 453300, 7552900 + 25 * i, std::to_string(51050 + i));
    return text;
}

}  // namespace anomalis
