#include "show/chart_look.h"

#include "chart/ax_grapher.h"

namespace anomalis::show {

namespace {

const chart::Font number_font{"Sans Serif", 8.5, false, false};
const chart::Font title_font{"Sans Serif", 9.0, false, false};

}  // namespace

void take_chart_look(chart::AX_Grapher& chart) {
    chart.BackColor(chart::white);
    chart.ForeColor(chart::black);
    chart.FONT(number_font);
    chart.TitleFont(title_font);
    chart.AxisLabellingLocation(0);
    chart.XAxisLabellingPosition(0);
    chart.YAxisLabellingPosition(0);
    chart.DisplayBorder(true);
    chart.BorderStyle(0);
    chart.ZoomEnabled(true);
    chart.Crosshair(true);
}

}  // namespace anomalis::show
