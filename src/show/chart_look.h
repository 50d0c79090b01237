#pragma once

namespace anomalis::chart {
class AX_Grapher;
}  // namespace anomalis::chart

namespace anomalis::show {

/// Colours, fonts, places of the numbers, border, zoom and crosshair that every chart over the line has.
void take_chart_look(chart::AX_Grapher& chart);

}  // namespace anomalis::show
