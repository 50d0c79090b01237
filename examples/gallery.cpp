#include "gallery.h"

#include <array>
#include <cmath>
#include <numbers>
#include <string>
#include <vector>

namespace anomalis::chart {

namespace {

constexpr int columns = 3;
constexpr double gap = 240.0;
constexpr Colour blue = colour_of(31, 84, 155);
constexpr Colour green = colour_of(32, 128, 72);
constexpr Colour red = colour_of(178, 48, 40);
constexpr Colour amber = colour_of(214, 140, 24);
constexpr Colour sand = colour_of(240, 226, 190);

using Values = std::vector<double>;

Values steps(int count, double first, double last) {
    Values values(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        values[static_cast<std::size_t>(i)] = first + (last - first) * i / (count - 1);
    return values;
}

template <class Shape>
Values of(const Values& xs, Shape shape) {
    Values ys;
    for (const double x : xs) ys.push_back(shape(x));
    return ys;
}

/// The anomaly of a buried line of poles, in nT, over a distance in m.
double anomaly(double x) {
    const double u = (x - 500.0) / 120.0;
    return 180.0 * (1.0 - u * u) / ((1.0 + u * u) * (1.0 + u * u));
}

void register_rows(AX_Grapher& chart, std::initializer_list<ChartRow> rows) {
    const std::vector<ChartRow> table(rows);
    chart.RegisterData(table);
}

void set_up(AX_Grapher& chart, const char* title, const char* x_label, const char* y_label) {
    Font font;
    font.bold = false;
    chart.FONT(font);
    chart.TitleFont(font);
    chart.BackColor(white);
    chart.ForeColor(black);
    chart.DataNull(-99999.0);
    chart.XAxisLabellingPosition(0);
    chart.YAxisLabellingPosition(0);
    chart.Title(title);
    chart.XAxisLabel(x_label);
    chart.YAxisLabel(y_label);
}

void set_limits(AX_Grapher& chart, Rect limits, double x_tick, double y_tick) {
    chart.XAxisMin(limits.x_low);
    chart.XAxisMax(limits.x_high);
    chart.YAxisMin(limits.y_low);
    chart.YAxisMax(limits.y_high);
    chart.XTickInterval(x_tick);
    chart.YTickInterval(y_tick);
}

void lines_with_gaps(AX_Grapher& chart) {
    set_up(chart, "Lines; a null breaks the line", "Distance (m)", "nT");
    const Values xs = steps(101, 0.0, 1000.0);
    Values ys = of(xs, anomaly);
    for (const std::size_t null : {20U, 21U, 22U, 60U, 62U}) ys[null] = -99999.0;
    const Values smooth = of(xs, [](double x) { return 0.7 * anomaly(x) - 20.0; });
    register_rows(chart, {{x_row, xs}, {line_series, ys}, {line_series, smooth}});
    chart.SetSeriesOptions(1, 1, black, "Observed", 0, 1, 2);
    chart.SetSeriesOptions(1, 2, green, "Calculated", 0, 1, 1);
    set_limits(chart, {0.0, 1000.0, -100.0, 200.0}, 200.0, 50.0);
}

void lines_with_markers(AX_Grapher& chart) {
    set_up(chart, "Lines with markers; numbers on all sides", "Distance (m)", "nT");
    chart.XAxisLabellingPosition(2);
    chart.YAxisLabellingPosition(2);
    const Values xs = steps(26, 0.0, 1000.0);
    const Values ys = of(xs, anomaly);
    register_rows(chart, {{x_row, xs}, {line_and_marker_series, ys}});
    chart.SetSeriesOptions(1, 1, blue, "Observed", 7, 1, 1);
    set_limits(chart, {0.0, 1000.0, -50.0, 200.0}, 200.0, 50.0);
}

void bars(AX_Grapher& chart) {
    set_up(chart, "Bars on both sides of zero", "Station", "mGal");
    const Values xs = steps(25, 0.0, 24.0);
    const Values ys = of(xs, [](double x) { return 0.4 * std::sin(x / 3.0) + 0.05; });
    register_rows(chart, {{x_row, xs}, {bar_series, ys}});
    chart.SetSeriesOptions(1, 1, amber, "Residual", 0, 1, 1);
    set_limits(chart, {0.0, 24.0, -0.5, 0.5}, 4.0, 0.25);
}

void bars_with_points(AX_Grapher& chart) {
    set_up(chart, "Bars by chart type, points switched on, zero out of view", "Station", "mGal");
    chart.ChartType(2);
    chart.PlotPoints(true);
    const Values xs = steps(21, 0.0, 20.0);
    const Values ys = of(xs, [](double x) { return 4.0 + 1.5 * std::cos(x / 4.0); });
    register_rows(chart, {{x_row, xs}, {0.0, ys}});
    chart.SetSeriesOptions(1, 1, colour_of(150, 180, 214), "Level", 1, 1, 1);
    set_limits(chart, {0.0, 20.0, 2.0, 6.0}, 5.0, 1.0);
}

void sixteen_colours(AX_Grapher& chart) {
    set_up(chart, "The colours that series start with", "Number of the series", "");
    const Values ends{0.0, 16.0};
    std::vector<Values> levels;
    for (int series = 0; series < 16; ++series) levels.emplace_back(2, 16.0 - series);
    std::vector<ChartRow> rows{{x_row, ends}};
    for (const Values& level : levels) rows.push_back({line_series, level});
    chart.RegisterData(rows);
    for (int series = 1; series <= 16; ++series) chart.SetSeriesOptions(1, series, no_colour, "", 0, 1, 3);
    set_limits(chart, {0.0, 16.0, 0.0, 17.0}, 4.0, 4.0);
}

void any_alphabet(AX_Grapher& chart) {
    set_up(chart,
           "\u0391\u03BD\u03C9\u03BC\u03B1\u03BB\u03AF\u03B1, "
           "\u0410\u043D\u043E\u043C\u0430\u043B\u0438\u044F, St\u00F6rung; numbers inside on all sides",
           "\u0391\u03C0\u03CC\u03C3\u03C4\u03B1\u03C3\u03B7 (m)", "\u0394T (nT)");
    chart.AxisLabellingLocation(1);
    chart.XAxisLabellingPosition(2);
    chart.YAxisLabellingPosition(2);
    const Values xs = steps(201, 0.0, 1000.0);
    const Values ys = of(xs, [](double x) { return 0.6 * anomaly(x); });
    register_rows(chart, {{x_row, xs}, {line_series, ys}});
    chart.SetSeriesOptions(1, 1, green, "Observed", 0, 1, 2);
    set_limits(chart, {0.0, 1000.0, -100.0, 200.0}, 200.0, 50.0);
}

void marker_styles(AX_Grapher& chart) {
    set_up(chart, "Marker styles 1 to 8, letters -1 to -26", "Style", "");
    chart.ChartType(0);
    chart.MarkerSize(75);
    const Values shapes = steps(8, 1.0, 8.0);
    const Values letters = steps(26, 1.0, 8.0);
    const Values high(8, 2.0);
    const Values low(26, 1.0);
    register_rows(chart, {{x_row, shapes}, {0.0, high}, {x_row, letters}, {0.0, low}});
    MarkerTable styles(2);
    for (int style = 1; style <= 8; ++style) styles[0].push_back(style);
    for (int letter = 1; letter <= 26; ++letter) styles[1].push_back(-letter);
    chart.RegisterMarker(styles, 0, 0, 0);
    chart.SetSeriesOptions(1, 1, red, "Shapes", 1, 1, 1);
    chart.SetSeriesOptions(2, 1, blue, "Letters", -1, 1, 1);
    set_limits(chart, {0.0, 9.0, 0.5, 2.5}, 1.0, 1.0);
}

void point_colours(AX_Grapher& chart) {
    set_up(chart, "Markers and colours of single points", "Distance (m)", "nT");
    chart.ChartType(0);
    chart.MarkerSize(50);
    const Values xs = steps(33, 0.0, 1000.0);
    const Values ys = of(xs, anomaly);
    register_rows(chart, {{x_row, xs}, {0.0, ys}});
    MarkerTable styles(1);
    MarkerTable colours(1);
    for (std::size_t i = 0; i < xs.size(); ++i) {
        const bool high = ys[i] > 60.0;
        styles[0].push_back(high ? 2 : 0);
        colours[0].push_back(high ? red : no_colour);
    }
    chart.SetSeriesOptions(1, 1, blue, "Observed", 5, 1, 1);
    chart.RegisterMarker(styles, 1, 1, 0);
    chart.RegisterMarkerColour(colours, 1, 1, 0);
    set_limits(chart, {0.0, 1000.0, -50.0, 200.0}, 200.0, 50.0);
}

void two_groups(AX_Grapher& chart) {
    set_up(chart, "Two groups with X values of their own", "Distance (m)", "nT");
    const Values coarse = steps(11, 0.0, 1000.0);
    const Values fine = steps(101, 200.0, 900.0);
    std::vector<Values> ys;
    for (int k = 0; k < 5; ++k)
        ys.push_back(of(fine, [k](double x) { return (1.0 - 0.15 * k) * anomaly(x) - 10.0 * k; }));
    const Values sampled = of(coarse, anomaly);
    register_rows(chart, {{x_row, coarse},
                          {line_and_marker_series, sampled},
                          {x_row, fine},
                          {0.0, ys[0]},
                          {0.0, ys[1]},
                          {0.0, ys[2]},
                          {0.0, ys[3]},
                          {0.0, ys[4]}});
    chart.SetSeriesOptions(1, 1, no_colour, "Coarse", 8, 1, 1);
    set_limits(chart, {0.0, 1000.0, -100.0, 200.0}, 200.0, 50.0);
}

void logarithmic_y(AX_Grapher& chart) {
    set_up(chart, "Logarithmic Y, both signs about a linear band", "Distance (m)", "nT");
    chart.YAxisType(1);
    chart.YAxisCutoff(1.0);
    const Values xs = steps(401, -2.0, 2.0);
    const Values ys = of(xs, [](double x) { return 1000.0 * x * x * x; });
    register_rows(chart, {{x_row, xs}, {line_series, ys}});
    chart.SetSeriesOptions(1, 1, blue, "Cubic", 0, 1, 1);
    set_limits(chart, {-2.0, 2.0, -10000.0, 10000.0}, 1.0, 1.0);
}

void logarithmic_both(AX_Grapher& chart) {
    set_up(chart, "Both axes logarithmic", "Period (s)", "Resistivity (ohm m)");
    chart.XAxisType(1);
    chart.YAxisType(1);
    chart.XAxisCutoff(0.001);
    chart.YAxisCutoff(1.0);
    Values xs;
    Values ys;
    for (int i = 0; i <= 60; ++i) {
        const double period = std::pow(10.0, -2.0 + i / 12.0);
        xs.push_back(period);
        ys.push_back(100.0 + 900.0 / (1.0 + 4.0 / period));
    }
    register_rows(chart, {{x_row, xs}, {line_and_marker_series, ys}});
    chart.SetSeriesOptions(1, 1, green, "Sounding", 3, 1, 1);
    set_limits(chart, {0.01, 1000.0, 10.0, 10000.0}, 1.0, 1.0);
}

void base_two(AX_Grapher& chart) {
    set_up(chart, "Base 2; numbers inside the frame", "Spacing (m)", "mV");
    chart.AxisLabellingLocation(1);
    chart.XAxisType(1);
    chart.XBaseLog(2.0);
    chart.XAxisCutoff(1.0);
    Values xs;
    Values ys;
    for (int i = 0; i <= 32; ++i) {
        xs.push_back(std::pow(2.0, i / 4.0));
        ys.push_back(40.0 * std::exp(-0.2 * i / 4.0) * (1.0 + 0.2 * std::sin(i)));
    }
    register_rows(chart, {{x_row, xs}, {line_and_marker_series, ys}});
    chart.SetSeriesOptions(1, 1, red, "Decay", 2, 1, 1);
    set_limits(chart, {0.25, 256.0, 0.0, 50.0}, 1.0, 10.0);
}

void other_sides(AX_Grapher& chart) {
    set_up(chart, "Numbers at the top and at the right", "Distance (m)", "mGal/m");
    chart.XAxisLabellingPosition(1);
    chart.YAxisLabellingPosition(1);
    const Values xs = steps(201, 0.0, 1000.0);
    const Values ys = of(xs, [](double x) { return 2e-5 * anomaly(x); });
    register_rows(chart, {{x_row, xs}, {line_series, ys}});
    chart.SetSeriesOptions(1, 1, blue, "Gradient", 0, 1, 1);
    set_limits(chart, {0.0, 1000.0, -0.002, 0.005}, 200.0, 0.001);
}

void draw_sheet(AX_Grapher& chart) {
    const Values xs{420.0, 520.0, 640.0, 540.0, 420.0};
    const Values zs{-60.0, -60.0, -320.0, -320.0, -60.0};
    chart.DrawPolygon(5, xs.data(), zs.data(), black, sand, 1);
    chart.DrawPolygon(5, xs.data(), zs.data(), black, no_colour, 1);
    Values circle_x;
    Values circle_z;
    for (int i = 0; i <= 32; ++i) {
        const double angle = 2.0 * std::numbers::pi * i / 32.0;
        circle_x.push_back(220.0 + 60.0 * std::cos(angle));
        circle_z.push_back(-180.0 + 60.0 * std::sin(angle));
    }
    chart.DrawPolygon(33, circle_x.data(), circle_z.data(), blue, colour_of(200, 216, 240), 2);
}

void retained_drawings(AX_Grapher& chart) {
    set_up(chart, "Bodies, marks and labels, cut at the frame", "Distance (m)", "Elevation (m)");
    const Values xs = steps(101, 0.0, 1000.0);
    const Values ground = of(xs, [](double x) { return 20.0 * std::sin(x / 160.0); });
    register_rows(chart, {{x_row, xs}, {line_series, ground}});
    chart.SetSeriesOptions(1, 1, green, "Ground", 0, 1, 2);
    set_limits(chart, {0.0, 1000.0, -400.0, 100.0}, 200.0, 100.0);
    for (int i = 1; i < 5; ++i) chart.DrawLine(200.0 * i, -900.0, 200.0 * i, 900.0, 0xA0A0A0, 1, 3);
    chart.DrawYLine(0.0, 0xA0A0A0, 1);
    draw_sheet(chart);
    chart.DrawRectangle(760.0, -520.0, 1200.0, -250.0, red, colour_of(244, 214, 208), 1);
    for (int i = 0; i <= 4; ++i) chart.DrawLine(60.0, -300.0 - 20.0 * i, 160.0, -300.0 - 20.0 * i, red, 1, i);
    for (int i = 0; i <= 20; ++i) chart.DrawMarker(50.0 * i, 60.0, 3, blue, 1);
    chart.DrawText(0.0, 660.0, -120.0, "Sheet, dip 65");
    chart.DrawText(65.0, 300.0, -350.0, "turned text");
}

void plain(AX_Grapher& chart) {
    set_up(chart, "Axes off", "", "");
    chart.DisplayAxes(false);
    const Values xs = steps(401, 0.0, 1000.0);
    const Values ys = of(xs, [](double x) { return anomaly(x) * std::cos(x / 25.0); });
    register_rows(chart, {{x_row, xs}, {line_series, ys}});
    chart.SetSeriesOptions(1, 1, red, "Packet", 0, 1, 1);
    set_limits(chart, {0.0, 1000.0, -200.0, 200.0}, 200.0, 100.0);
}

using Panel = void (*)(AX_Grapher&);
constexpr std::array<Panel, 15> panels{
    lines_with_gaps,  lines_with_markers, bars,        marker_styles, point_colours,     two_groups,
    logarithmic_y,    logarithmic_both,   base_two,    other_sides,   retained_drawings, plain,
    bars_with_points, sixteen_colours,    any_alphabet};

/// The mapping of a chart whose lower left corner stands at a place of the page.
SurfaceMapping mapping_at(const SurfaceMapping& page, Point lower_left) {
    SurfaceMapping mapping = page;
    mapping.device_offset_x += page.device_scale * lower_left.x;
    mapping.device_offset_y -= page.device_scale * lower_left.y;
    return mapping;
}

}  // namespace

int gallery_chart_count() {
    return static_cast<int>(panels.size());
}

void fill_gallery_chart(int number, AX_Grapher& chart) {
    if (number >= 1 && number <= gallery_chart_count()) panels[static_cast<std::size_t>(number - 1)](chart);
}

int draw_gallery(DrawingDevice& page, OutputTarget kind, const SurfaceMapping& mapping) {
    const int rows = (gallery_chart_count() + columns - 1) / columns;
    const SurfaceSize size{(page.width() - gap * (columns + 1)) / columns,
                           (page.height() - gap * (rows + 1)) / rows};
    int status = 0;
    for (int i = 0; i < gallery_chart_count(); ++i) {
        const int row = i / columns;
        const int column = i % columns;
        const Point corner{gap + column * (size.width + gap),
                           page.height() - (row + 1) * (size.height + gap)};
        AX_Grapher chart;
        fill_gallery_chart(i + 1, chart);
        if (chart.DrawTo(page, kind, mapping_at(mapping, corner), size) != 0) status = -1;
    }
    return status;
}

}  // namespace anomalis::chart
