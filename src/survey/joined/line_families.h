#pragma once

#include <cstddef>
#include <numbers>
#include <string>
#include <vector>

#include "survey/results/survey_results.h"

// Lines that run side by side, in coordinates along and across them. Private to this room.
namespace anomalis::survey {

inline constexpr double degree_in_radians = std::numbers::pi / 180;
/// Both ends of a 90 % interval of a normal distribution, in standard errors.
inline constexpr double normal_90 = 1.6448536269514722;
/// Further than so many usual spacings the next line tells nothing of a body.
inline constexpr double most_spacings = 6;

/// A value and its standard error as a fit gives them, both `unknown` where nobody knows.
struct Measured {
    double value = unknown, error = unknown;
};
/// The error from the 90 % interval, of one side where the data leave the other open.
Measured measured(const IntervalValue& value);

enum class SheetKind { sheet, edge };

/// A body of a line that may be joined with others.
struct LaidBody {
    std::size_t line = 0, body = 0;  ///< indices into the results
    std::size_t laid_line = 0;       ///< index into the lines of the family
    double x = 0, y = 0;             ///< m along and across the lines
    SheetKind kind = SheetKind::sheet;
    double place_error = 0;  ///< m along the line, standard error
    Measured depth;  ///< m below ground, or below the sensor where no line of the family knows the ground
    Measured dip;    ///< degrees; up to 90 dips towards +x
    Measured log_strength;  ///< of susceptibility (or density contrast) times width
    int sign = 0;           ///< of the density contrast; 0 where there is none
};

struct LaidLine {
    std::size_t line = 0;           ///< index into the results
    bool done = true;               ///< else nobody knows what it would show
    std::vector<TrackPoint> track;  ///< east is x, north is y
    double x_low = 0, x_high = 0, y_low = 0, y_high = 0;
    double axis_x = 1, axis_y = 0;    ///< unit vector from end to end, axis_x above 0
    std::vector<std::size_t> bodies;  ///< of the family, by x
};

/// Lines within 45 degrees of one axis, in one coordinate system.
class LineFamily {
  public:
    std::vector<LaidLine> lines;  ///< by y, then x, then name: the order of the plan plays no part
    std::vector<LaidBody> bodies;
    double usual_spacing = 0;  ///< m, median; 0 for a single line
    std::string coordinate_system;
    double axis_east = 1, axis_north = 0;  ///< unit vector of x on the map

    TrackPoint on_map(double x, double y) const;
    /// The other way: east is x, north is y.
    TrackPoint laid(const TrackPoint& place) const;
    /// Takes over the axes, sorts the lines and finds the spacing.
    void settle(const SurveyResults& results);
    /// Lines that may have a place with y between both.
    std::vector<std::size_t> lines_between(double y_low, double y_high) const;
    /// Done lines that the straight way from one body to another crosses, without the lines of both.
    std::vector<std::size_t> lines_crossed(const LaidBody& from, const LaidBody& to) const;
    /// Ways in m from a place to the next done lines but `without`, towards (dx, dy), a unit vector: the
    /// nearest first, none further than `most`.
    std::vector<double> ways_to_next_lines(const TrackPoint& from, double dx, double dy, std::size_t without,
                                           double most) const;

  private:
    friend std::vector<LineFamily> line_families(const SurveyResults&);
    double origin_east_ = 0, origin_north_ = 0;
    double tallest_ = 0;  ///< largest y_high - y_low
};

/// Two at most for each coordinate system: the lines, and the tie lines.
std::vector<LineFamily> line_families(const SurveyResults& results);

}  // namespace anomalis::survey
