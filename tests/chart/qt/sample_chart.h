#pragma once

#include <cmath>
#include <vector>

#include "chart/ax_grapher.h"

namespace anomalis::chart {

/// An observed and a calculated anomaly over 7400 m, with a title, numbers, a shape and a label.
inline void fill_sample_chart(AX_Grapher& chart, int points = 741) {
    std::vector<double> x, observed, calculated;
    for (int i = 0; i < points; ++i) {
        x.push_back(7400.0 * i / (points - 1));
        const double anomaly = 600 * std::exp(-std::pow((x.back() - 3700) / 400, 2));
        calculated.push_back(anomaly);
        observed.push_back(anomaly + 20 * std::sin(i * 1.7) * std::cos(i * 0.37));
    }
    Font font;
    font.name = "DejaVu Sans";
    font.bold = false;
    chart.FONT(font);
    chart.TitleFont(font);
    chart.BackColor(white);
    chart.DisplayAxes(true);
    chart.DisplayBorder(true);
    chart.BorderStyle(0);
    chart.ZoomEnabled(true);
    chart.ChartType(1);
    chart.XAxisLabellingPosition(0);
    chart.YAxisLabellingPosition(0);
    chart.Title("Residual Magnetic Field");
    chart.XAxisLabel("Distance (m)");
    chart.YAxisLabel("nT");
    chart.XAxisMin(0);
    chart.XAxisMax(7400);
    chart.YAxisMin(-300);
    chart.YAxisMax(700);
    chart.XTickInterval(1000);
    chart.YTickInterval(100);
    const std::vector<ChartRow> rows{
        {x_row, x}, {chart_type_series, observed}, {chart_type_series, calculated}};
    chart.RegisterData(rows);
    chart.SetSeriesOptions(1, 1, black, "Observed", 0, -1, 1);
    chart.SetSeriesOptions(1, 2, 0x00FF00, "Calculated", 0, -1, 1);
    chart.Layout();
    const double xs[] = {1000, 1400, 1500, 1100, 1000};
    const double ys[] = {100, 100, -900, -900, 100};
    chart.ClearSavedGraphics();
    chart.DrawPolygon(5, xs, ys, black, 0xB4761F, 1);
    chart.DrawText(0, 4600, 400, "Burial depth: 32.00");
    chart.DisplayChart();
}

}  // namespace anomalis::chart
