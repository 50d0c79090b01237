#include "show/residual_chart.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "chart/ax_grapher.h"
#include "core/workspace.h"
#include "show/chart_look.h"
#include "show/chart_scales.h"
#include "show/fit_view.h"

namespace anomalis::show {

namespace {

constexpr double band = 2;                         // standard deviations
constexpr float right_room = 270;                  // surface units: half of the last number
constexpr chart::Colour residual_blue = 0xB06619;  // blue in the high byte
constexpr chart::Colour band_grey = 0x808080;

/// The same room above 0 and below it, so that a residual to one side is seen.
double reach(const ResidualCurve& curve) {
    double most = band * curve.noise;
    for (const double value : curve.residual)
        if (std::isfinite(value) && value > missing_limit) most = std::max(most, std::abs(value));
    return most;
}

}  // namespace

void set_up_residual_chart(chart::AX_Grapher& chart) {
    take_chart_look(chart);
    chart.XAxisRightMargin(right_room);
    chart.XAxisLabel("Distance (m)");
    chart.PictureLegend(true);
}

void draw_residuals(chart::AX_Grapher& chart, const ResidualCurve& curve, const std::string& title,
                    const std::string& unit) {
    chart.Clear();
    if (curve.distance.empty()) return;
    chart.Title(title);
    chart.YAxisLabel(unit);
    chart.ReadOutUnits("m", unit);
    const std::vector<double> above(curve.distance.size(), band * curve.noise);
    const std::vector<double> below(curve.distance.size(), -band * curve.noise);
    const std::array rows{
        chart::ChartRow{chart::x_row, curve.distance}, chart::ChartRow{chart::line_series, above},
        chart::ChartRow{chart::line_series, below}, chart::ChartRow{chart::line_series, curve.residual}};
    chart.RegisterData(rows);
    for (const int side : {1, 2}) {
        chart.SetSeriesOptions(1, side, band_grey, side == 1 ? "+2 noise" : "-2 noise", 0, -1, 1);
        chart.SetSeriesLineStyle(1, side, chart::LineStyle::dash);
    }
    chart.SetSeriesOptions(1, 3, residual_blue, "Residual", 0, -1, 1);
    const double most = reach(curve);
    const AxisScale scale = profile_scale(-most, most);
    const double from = curve.distance.front(), to = curve.distance.back();
    chart.XAxisMin(from);
    chart.XAxisMax(to);
    chart.XTickInterval(window_interval(to - from));
    chart.YAxisMin(scale.low);
    chart.YAxisMax(scale.high);
    chart.YTickInterval(scale.interval);
    chart.DisplayChart();
}

}  // namespace anomalis::show
