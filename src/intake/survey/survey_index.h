#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/file_stamp.h"
#include "core/pacer.h"
#include "intake/formats/survey_format.h"

// The lines of a survey file: what each one is, and where it lies.
namespace anomalis::intake {

struct ValueRange {
    double least = 0, greatest = 0;
};

/// A part of a line: rows of the line counted from 0 in the order of the file.
struct LinePiece {
    long first = 0, last = 0;
};

/// A place of the map: projected coordinates in m, and the field there (NaN for none).
struct MapPoint {
    float east = 0, north = 0;  ///< less the origin of the index, m
    float value = 0;            ///< nT or mGal
};
/// A point of a track by its number, from 0.
using PointAt = std::function<MapPoint(std::size_t)>;

struct SurveyLineInfo {
    std::string name;
    bool tie = false;
    long stations = 0;  ///< rows with a place
    double length_m = 0;
    double first_east = 0, first_north = 0;  ///< m
    std::optional<ValueRange> mag_nT, grav_mGal;
    std::optional<double> year;  ///< decimal, of its first row with a date
    std::vector<LinePiece>
        pieces;  ///< where it folds back or bends by more than 20 degrees, or jumps; one for a straight line
    std::vector<MapPoint> track;  ///< thinned so that all lines together stay below some 200 000 points
    long first_file_line = 0, last_file_line = 0;  ///< of its rows, lines of the file from 1
    /// That hold its rows, perhaps with rows of other lines between them. None where the file can only be
    /// read from its beginning: it is packed or in UTF-16, or its lines lie in too many stretches.
    std::vector<FileStretch> stretches;
    /// Of all that is read of its rows, in their order: places in m and their system, readings, heights,
    /// times. Where the rows stand in the file, and what other lines are, counts for nothing.
    std::uint64_t digest = 0;
};

/// What was found in one pass over a survey file.
struct SurveyIndex {
    SurveyLayout layout;
    std::string
        coordinate_system;  ///< of `track` and of what is imported: "EPSG:32754"; "" where nobody knows
    double origin_east = 0, origin_north = 0;
    long rows = 0;  ///< that were used
    std::vector<RowLoss> losses;
    std::vector<long> nulls;            ///< of each column of the layout; 0 where it has no role
    std::vector<SurveyLineInfo> lines;  ///< in the order of the file
    bool in_degrees = false;            ///< the file's own coordinates are longitude and latitude
    std::string from_system;            ///< of these; "" where nobody knows
    /// The file names no lines: those listed are its stretches between jumps and reversals.
    bool split_by_place = false;
    FileStamp stamp;  ///< of the file as it was read
};

/// How coordinates are brought to m.
struct CoordinateChoice {
    std::string from;  ///< system of the file; "": what the layout says, WGS 84 for degrees
    /// "": as the file has them; for degrees, and for a system that is not in metres, the UTM zone at the
    /// middle of the survey. Where nobody knows the system of metres in the file, they are taken to be in
    /// this one.
    std::string to;
};

/// Reads the file once, in bounded memory; once more where its middle lies in another zone than its
/// beginning, or where lines are told by their places. `pacer` hears of the work, bytes as units. Raises
/// FileFault, Fault (no coordinates, no rows, a file that changes meanwhile), Stopped.
SurveyIndex index_survey(const SurveyLayout& layout, const CoordinateChoice& coordinates,
                         Pacer& pacer = no_pace());

/// One line in m, nT, mGal; NaN where there is no value. Columns without a role are empty.
struct SurveyLine {
    std::string name;
    std::vector<double> east, north, height, ground, mag, grav, fiducial;
    std::vector<double> longitude, latitude;  ///< WGS 84, degrees; empty where no system is known
    std::vector<long> file_line;
    std::optional<double> year;
    std::string coordinate_system;
    /// The file tells only how high the sensor is above ground, and `height` is that.
    bool height_is_clearance = false;
};

/// Reads one line of an indexed file, or a piece of it: its own bytes alone where the index knows them, else
/// all up to its last row. A clearance becomes a height over the terrain, or a
/// terrain below the height. Raises as `index_survey`, and
/// Fault where the file is not what it was.
SurveyLine read_survey_line(const SurveyIndex& index, std::size_t line, std::optional<std::size_t> piece = {},
                            Pacer& pacer = no_pace());

/// Reads all lines in one pass, each given to `take` when it is complete. For `--all`.
class LineTaker {
  public:
    virtual ~LineTaker() = default;
    virtual void take(std::size_t line, SurveyLine&& read) = 0;
};
void read_survey_lines(const SurveyIndex& index, LineTaker& taker, Pacer& pacer = no_pace());

}  // namespace anomalis::intake
