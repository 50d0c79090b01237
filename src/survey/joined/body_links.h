#pragma once

#include <cstddef>
#include <vector>

#include "survey/joined/line_families.h"

// Links between bodies of two lines of a family. Private to this room.
namespace anomalis::survey {

/// Both may be one body of the survey.
struct BodyLink {
    std::size_t lower = 0, upper = 0;  ///< bodies of the family; the upper one lies towards +y
    double angle = 0;  ///< radians, of the way from the lower to the upper against +y, towards +x
    double turn_of_lower = 0,
           turn_of_upper = 0;     ///< radians that the angle turns by an error of either place
    double crossing_density = 0;  ///< of the angle, before anything is known of it, a radian
    /// Logarithm of how much likelier one body is than two that stand there by chance.
    double own = 0;
    double gain = 0;  ///< the same with the links that continue it on both sides
};

/// All that depths, dips, strengths and the way between allow, each with what it is worth by itself.
std::vector<BodyLink> possible_links(const LineFamily& family);

/// Logarithm of how much likelier two links that meet in a body are together than each by itself: a body of
/// the survey bends little from line to line.
double joint_worth(const BodyLink& below, const BodyLink& above);

/// Fills in the gains, looking some lines ahead on both sides.
void add_gains(std::vector<BodyLink>& links, std::size_t body_count);

/// Those of the links that together gain most while each body has one to each side at most; none that gains
/// nothing.
std::vector<BodyLink> assigned_links(const std::vector<BodyLink>& links, std::size_t body_count);

/// The links of a family that hold: assigned by their gains, and then, among bodies that are still free, by
/// what they are worth with those.
std::vector<BodyLink> chosen_links(const LineFamily& family);

}  // namespace anomalis::survey
