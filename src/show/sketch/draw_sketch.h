#pragma once

#include "show/sketch/parameter_sketch.h"

namespace anomalis::chart {
class DrawingDevice;
}  // namespace anomalis::chart

namespace anomalis::show {

/// Of what stands on light or dark paper.
struct SketchColours {
    chart::Colour body = 0, ink = 0, quiet = 0, accent = 0, ground = 0;
};

/// Draws a sketch as large as the device holds it, upright, a metre as long in both directions. The paper is
/// the caller's.
void draw_sketch(const ParameterSketch& sketch, const SketchColours& colours, chart::DrawingDevice& device);

}  // namespace anomalis::show
