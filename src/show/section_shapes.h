#pragma once

#include <vector>

#include "chart/drawing_types.h"

namespace anomalis {
struct ModelBody;
struct Workspace;
}  // namespace anomalis

// What a body looks like in the section: pure geometry, metres along the profile and in elevation.
namespace anomalis::show {

/// The window that the section shows.
struct SectionWindow {
    double bottom = 0;       ///< a body without a depth extent runs down to here
    double profile_end = 0;  ///< the far end of the profile, where edges and steps end
};

struct SectionShape {
    bool visible = false;  ///< false: the strike is so near the line that the body has no section
    double distance = 0;   ///< of the reference point
    double top = 0;
    std::vector<double> xs, ys;  ///< a closed outline, its last point equal to the first; none for a sphere
    chart::Colour outline = chart::black;
    int width = 1;  ///< of the outline, pixels

    double left() const;
    double right() const;
    double lowest() const;
    double highest() const;
};

/// A strike within half a degree of the line (its sine below this) shows no section.
inline constexpr double least_sine_with_section = 0.01;

/// Sheets, edges and steps are four corners; pipes and wires circles of 32 chords, widened by the angle
/// between strike and line, hollow ones a ring with a narrow slit. The outline of a body that lies beside
/// the line is moved to where its end lies: blue and thick for an end beyond the line, green for one before.
/// With the exact formulas the outline is that of the body they calculate: spheres have one too, and a body
/// along the line is shown as one that crosses it at half a degree.
SectionShape section_shape(const Workspace& workspace, const ModelBody& body, const SectionWindow& window);

}  // namespace anomalis::show
