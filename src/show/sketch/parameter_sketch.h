#pragma once

#include <optional>
#include <string>
#include <vector>

#include "chart/drawing_types.h"

namespace anomalis {
struct ModelBody;
struct Workspace;
}  // namespace anomalis

// What a parameter of a body is, as a small drawing: a body of the same type in which the parameter is
// marked, and the same body with more of it. The outlines are those that section and plan draw.
namespace anomalis::show {

/// m; to the right and up.
using SketchPoints = std::vector<chart::Point>;

struct SketchLine {
    enum class Role {
        grown,    ///< of the body with more of the parameter
        measure,  ///< what the parameter measures
        lead,     ///< what it is measured from
        ground,
        line  ///< the profile line, the axis of elevations
    };
    Role role = Role::measure;
    SketchPoints points = {};
    bool arrow_at_first = false, arrow_at_last = false;
};

struct SketchText {
    enum class Side { left, middle, right };  ///< of its place
    chart::Point at;                          ///< half the height of the text is above it
    std::string text;
    Side side = Side::right;
    bool quiet = false;
};

struct ParameterSketch {
    chart::Rect frame;                 ///< all that is drawn lies in it
    std::vector<SketchPoints> bodies;  ///< closed outlines; a pair of wires has two
    std::vector<SketchPoints> grown;   ///< with a greater value
    std::optional<chart::Point> reference;
    std::vector<SketchLine> lines;
    std::vector<SketchText> texts;
};

/// The sketch of a parameter for bodies of the type of `body`, by the formulas of the workspace. Sections lie
/// as the strike of `body` has them, so that the senses of dip and slope are those of the chart. None for a
/// parameter that its type has not, or that does not change how such a body lies.
std::optional<ParameterSketch> parameter_sketch(const Workspace& workspace, const ModelBody& body, int code);

}  // namespace anomalis::show
