#pragma once

#include "core/formulas.h"
#include "core/model_body.h"
#include "show/sketch/parameter_sketch.h"

// The body of a sketch and its outlines in the three views. Private to this folder.
namespace anomalis::show {

/// A body of the type with sizes that suit a sketch. `side` is 1 where its + side lies to the right of the
/// section, -1 where it lies to the left.
ModelBody sample_body(std::int32_t type, int side);

/// In the section of a line that begins at the left side of the sketch.
std::vector<SketchPoints> section_outlines(Formulas formulas, const ModelBody& body);
/// On the map, the reference point in the middle.
std::vector<SketchPoints> plan_outlines(const ModelBody& body);
/// Seen across strike: along it from the reference point to the right, and up. Sheets and pipes alone.
std::vector<SketchPoints> side_outlines(Formulas formulas, const ModelBody& body);

/// The two wires of a pair in the section; the first carries the current along strike, the other one back.
struct WirePair {
    chart::Point first, second;
};
WirePair wire_pair(const ModelBody& body, int side);

/// A circle of 32 chords.
SketchPoints sketch_circle(chart::Point centre, double radius);

}  // namespace anomalis::show
