#pragma once

#include <string>

namespace anomalis::chart {
class AX_Grapher;
}  // namespace anomalis::chart

namespace anomalis::show {

struct ResidualCurve;

/// Fonts and axes; once, before the first drawing.
void set_up_residual_chart(chart::AX_Grapher& chart);

/// The residuals of a fit along the line between two dashed lines, twice the noise above and below 0. Most of
/// a curve that is noise lies between them. Clears the chart for an empty curve.
void draw_residuals(chart::AX_Grapher& chart, const ResidualCurve& curve, const std::string& title,
                    const std::string& unit);

}  // namespace anomalis::show
