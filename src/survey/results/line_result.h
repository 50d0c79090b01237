#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

// What one line of a survey gives: a row of the table of lines, and one a body.
namespace anomalis::survey {

inline constexpr double unknown = std::numeric_limits<double>::quiet_NaN();

/// A value with its 90 % interval; `unknown` where nobody knows, or where the data leave a side open.
struct IntervalValue {
    double value = unknown, lower = unknown, upper = unknown;
};

struct BodyResult {
    int number = 0;  ///< in the model of its line, from 1
    std::string name, type;
    double east = unknown, north = unknown;          ///< middle of its top, m in the system of the line
    double longitude = unknown, latitude = unknown;  ///< the same in WGS 84, degrees
    /// Whither the profile runs there, degrees clockwise from north.
    double profile_azimuth = unknown;
    double top_elevation = unknown;                        ///< m
    IntervalValue distance;                                ///< m along the profile, of the reference point
    IntervalValue depth_below_ground, depth_below_sensor;  ///< m
    IntervalValue strike, dip;                             ///< degrees
    IntervalValue width;                                   ///< m
    IntervalValue length, depth_extent;                    ///< m; unknown goes on without end
    IntervalValue susceptibility;                          ///< micro SI; unknown for a line of gravity alone
    IntervalValue density_contrast;                        ///< g/cc; unknown for a line of magnetics alone
};

/// Of its top, m: below the ground; below the sensor where nobody knows the ground.
struct ToldDepth {
    IntervalValue depth;
    bool below_sensor = false;
};
ToldDepth told_depth(const BodyResult& body);

/// A place on the map, m in the system of the line.
struct TrackPoint {
    double east = 0, north = 0;
};

/// A file in the folder of a line.
struct LineFile {
    std::string name;
    std::int64_t bytes = 0;
    std::string digest;  ///< of its contents (core/digest.h), 16 hexadecimal digits
};

enum class LineStatus : std::int32_t { done, failed };

struct LineResult {
    std::string line;    ///< its name in the plan, and of its folder
    std::string source;  ///< "line 5690 of osborne_12_lines.csv", or the workspace as the plan names it
    LineStatus status = LineStatus::done;
    std::string message;             ///< why it failed; "" when it did not
    std::vector<std::string> notes;  ///< what there is to know, a sentence each
    std::string digest;              ///< of the input, the options and the version it was made with
    std::string version;             ///< of the program
    double seconds = 0;              ///< that it took
    std::string coordinate_system;   ///< "EPSG:32754"; "" where nobody knows
    std::vector<TrackPoint> track;   ///< its ends, and points between where it bends
    int stations = 0;
    double length_m = unknown;
    std::string channel;  ///< "mag", "grav" or "joint": what was explained
    double rms_nT = unknown, rms_mGal = unknown;
    double noise_nT = unknown, noise_mGal = unknown;  ///< standard deviations of the readings
    int regional_degree = -1;                         ///< -1 for none
    double criterion = unknown;                       ///< information criterion of the model that was found
    std::vector<BodyResult> bodies;
    std::vector<LineFile> files;  ///< beside it, by name: a result without one of them is none
};

/// As the file of a line holds it; what is unknown is null. Reads what it wrote to the last bit.
std::string line_result_json(const LineResult& result);
/// Raises Fault with what is wrong and where; `path` is for the message.
LineResult read_line_result(const std::string& json, const std::string& path);

}  // namespace anomalis::survey
