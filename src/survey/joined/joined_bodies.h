#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "survey/results/line_result.h"
#include "survey/results/survey_results.h"

// Bodies that neighbouring lines share: dykes of the survey, with strike and length.
namespace anomalis::survey {

/// A body of one line that is part of a joined one.
struct JoinedMember {
    std::size_t line = 0;  ///< index into the lines of the results
    std::size_t body = 0;  ///< index into the bodies of that line
    TrackPoint place;      ///< middle of its top, m
    double along = 0;      ///< m along strike from the centre of the joined body
    double off = 0;        ///< m along its profile from the straight line through all, in units of its error
};

/// Of all members together: the mean weighed by their errors.
struct JoinedValue {
    double value = unknown;
    /// Standard error; larger by the Birge ratio where the lines differ by more than their errors.
    double error = unknown;
    double lower = unknown, upper = unknown;  ///< 90 % interval of the mean
};

struct JoinedBody {
    int number = 0;                     ///< from 1: those on most lines first, then from west to east
    std::vector<JoinedMember> members;  ///< along strike, at least two, each of another line
    std::string coordinate_system;      ///< that of its lines
    /// Degrees clockwise from north, from 0 to below 180. The dip is measured down from the horizontal on the
    /// right of it, 0 to 180.
    double strike = 0;
    double strike_error = 0;  ///< standard error, degrees
    double birge_ratio = 1;   ///< of the places about the straight line (flow/strike_fit.h)
    /// m. It ends somewhere between the last line that shows it and the next, or, as often as lines miss
    /// what is there, the one behind; the value is the mean and the interval 90 % of that, without an upper
    /// side where an end is open.
    IntervalValue length;
    double length_error = 0;  ///< standard error, m
    bool open_start = false;  ///< no line of the survey tells where it ends
    bool open_end = false;    ///< the same at the other end
    TrackPoint start, end;    ///< of that length, on the straight line; `end` lies where the strike points
    TrackPoint centre;        ///< the middle of both
    JoinedValue depth_below_ground, depth_below_sensor;  ///< m
    JoinedValue top_elevation;                           ///< m
    JoinedValue dip;                                     ///< degrees
    JoinedValue width;                                   ///< m
    JoinedValue susceptibility;                          ///< micro SI
    JoinedValue density_contrast;                        ///< g/cc
    std::vector<std::size_t> lines_without;              ///< between its members, and they do not show it
};

/// Joins the sheets, and the edges, of lines that run side by side. Independent of the order of the lines and
/// of the sense they were flown in. docs/joined.md tells how, and how well it does.
std::vector<JoinedBody> join_bodies(const SurveyResults& results);

}  // namespace anomalis::survey
