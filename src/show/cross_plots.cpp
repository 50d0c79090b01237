#include "show/cross_plots.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "chart/ax_grapher.h"
#include "core/body_parameters.h"
#include "core/ensemble.h"
#include "core/numbers.h"
#include "core/susceptibility.h"
#include "core/workspace.h"
#include "core/worth_text.h"
#include "edit/body_rows.h"
#include "model/burial_depth.h"
#include "show/chart_look.h"
#include "show/chart_scales.h"

namespace anomalis::show {

namespace {

constexpr chart::Colour model_blue = chart::colour_of(84, 126, 178);
constexpr chart::Colour product_orange = chart::colour_of(213, 94, 0);
constexpr int dot = 2, square = 3;              // marker styles
constexpr int dot_size = 14, fitted_size = 70;  // surface units
constexpr float right_room = 270;               // surface units: half of the last number
constexpr double lower_part = 0.05, upper_part = 0.95;
constexpr double micro = 1e-6;
constexpr std::size_t curve_points = 65;

/// Depth, dip, width, and what the body is made of.
constexpr std::array plotted{param_top, param_dip, param_width, param_susc, param_density};

struct Column {
    std::size_t place;
    int param_code;
};

/// Where the parameters of a body that are plotted stand in a sample.
std::vector<Column> columns_of(const Ensemble& ensemble, int body) {
    constexpr std::size_t most = 4;
    std::vector<Column> columns;
    for (const int code : plotted)
        for (std::size_t i = 0; i < ensemble.parameters.size(); ++i) {
            const EnsembleParameter& p = ensemble.parameters[i];
            if (p.body == body && p.param_code == code && columns.size() < most) columns.push_back({i, code});
        }
    return columns;
}

bool has_all(const EnsembleSample& sample, const std::vector<Column>& columns) {
    return std::ranges::all_of(columns, [&](const Column& c) {
        return c.place < sample.values.size() && std::isfinite(sample.values[c.place]);
    });
}

/// Of sorted values, linear between its neighbours.
double quantile(const std::vector<double>& sorted, double part) {
    const double at = part * static_cast<double>(sorted.size() - 1);
    const auto below = static_cast<std::size_t>(at);
    const std::size_t above = std::min(below + 1, sorted.size() - 1);
    return std::lerp(sorted[below], sorted[above], at - static_cast<double>(below));
}

struct Spread {
    double low = 0, middle = 0, high = 0;
    /// Of the band, in parts of the middle.
    double part() const { return middle != 0 ? (high - low) / std::abs(middle) : INFINITY; }
};

Spread spread_of(std::vector<double> values) {
    std::ranges::sort(values);
    return {quantile(values, lower_part), quantile(values, 0.5), quantile(values, upper_part)};
}

int power_of(std::int32_t type) {
    if (type == sphere) return 3;
    return is_named(type) && is_round(type) ? 2 : 1;
}

std::string width_words(int power) {
    return power == 1 ? "Width" : power == 2 ? "Width squared" : "Width cubed";
}

std::string metres(int power) {
    return power == 1 ? "m" : power == 2 ? "m\xC2\xB2" : "m\xC2\xB3";
}

std::string product_words(const CrossProduct& product, const CrossAxis& strength, const Spread& spread,
                          int body) {
    const bool magnetic = strength.param_code == param_susc;
    const bool in_micro = strength.unit == unit_name(SusceptibilityUnit::micro_si);
    const double scale = in_micro ? micro : 1;
    const std::string unit = in_micro ? "SI" : strength.unit;
    const double low = spread.low * scale, high = spread.high * scale, worth = (high - low) / 2;
    const double digits = worth > 0 ? worth : std::abs(low) / 100;
    return width_words(product.power) + (magnetic ? " x susceptibility" : " x density contrast") +
           " of body " + std::to_string(body) + ": " + text_of_worth(low, digits) + " to " +
           text_of_worth(high, digits) + " " + metres(product.power) + " " + unit + " (90 %)" +
           (product.determined ? ", which the data determine better than either" : "");
}

std::optional<CrossProduct> product_of(const CrossPlots& plots, std::int32_t type, int body) {
    const auto axis = [&](auto wanted) {
        return static_cast<std::size_t>(std::ranges::find_if(plots.axes, wanted) - plots.axes.begin());
    };
    CrossProduct product;
    product.width = axis([](const CrossAxis& a) { return a.param_code == param_width; });
    product.strength =
        axis([](const CrossAxis& a) { return a.param_code == param_susc || a.param_code == param_density; });
    if (product.width == plots.axes.size() || product.strength == plots.axes.size() || carries_current(type))
        return std::nullopt;
    product.power = power_of(type);
    const CrossAxis &width = plots.axes[product.width], &strength = plots.axes[product.strength];
    const auto times = [&](double w, double s) { return std::pow(w, product.power) * s; };
    product.fitted = times(width.fitted, strength.fitted);
    std::vector<double> products(width.values.size());
    std::ranges::transform(width.values, strength.values, products.begin(), times);
    const Spread spread = spread_of(products);
    product.determined =
        spread.part() < std::min(spread_of(width.values).part(), spread_of(strength.values).part()) / 2;
    product.words = product_words(product, strength, spread, body);
    return product;
}

AxisScale scale_of(const CrossAxis& axis) {
    double low = axis.fitted, high = axis.fitted;
    for (const double value : axis.values) {
        low = std::min(low, value);
        high = std::max(high, value);
    }
    return profile_scale(low, high);
}

std::string label_of(const CrossAxis& axis) {
    return axis.unit.empty() ? axis.name : axis.name + " (" + axis.unit + ")";
}

struct Curve {
    std::vector<double> width, strength;
};

Curve product_curve(const CrossProduct& product, const AxisScale& widths) {
    Curve curve;
    for (std::size_t i = 1; i <= curve_points; ++i) {
        const double part = static_cast<double>(i) / static_cast<double>(curve_points);
        const double width = std::lerp(widths.low, widths.high, part);
        if (!(width > 0)) continue;
        curve.width.push_back(width);
        curve.strength.push_back(product.fitted / std::pow(width, product.power));
    }
    return curve;
}

/// The elevation of a top as its depth below the ground over it, in each model.
void count_from_ground(const Workspace& workspace, const Ensemble& ensemble, int body,
                       const std::vector<const EnsembleSample*>& models, CrossAxis& axis) {
    const auto distance = std::ranges::find_if(ensemble.parameters, [&](const EnsembleParameter& p) {
        return p.body == body && p.param_code == param_distance;
    });
    const auto below = [&](float place, double top) {
        return model::ground_elevation(workspace, static_cast<double>(place)) - top;
    };
    const float own = workspace.body(body).distance.value;
    const bool moves = distance != ensemble.parameters.end();
    const auto at = static_cast<std::size_t>(distance - ensemble.parameters.begin());
    for (std::size_t i = 0; i < models.size(); ++i)
        axis.values[i] = below(moves ? models[i]->values[at] : own, axis.values[i]);
    axis.fitted = below(moves ? distance->value : own, axis.fitted);
    axis.name =
        is_named(workspace.body(body).type) && is_round(workspace.body(body).type) ? "Depth" : "Depth to top";
}

}  // namespace

CrossPlots cross_plots(const Workspace& workspace, const Ensemble& ensemble, int body,
                       SusceptibilityUnit unit) {
    CrossPlots plots;
    if (body < 1 || body > workspace.body_count) return plots;
    const std::int32_t type = workspace.body(body).type;
    const std::vector<Column> columns = columns_of(ensemble, body);
    std::vector<const EnsembleSample*> models;
    for (const EnsembleSample& sample : ensemble.samples)
        if (has_all(sample, columns)) models.push_back(&sample);
    for (const Column& column : columns) {
        const edit::BodyRow row = edit::body_row(type, column.param_code, unit);
        CrossAxis axis{column.param_code,
                       std::string(row.caption),
                       std::string(row.unit),
                       static_cast<double>(ensemble.parameters[column.place].value) * row.factor,
                       {}};
        for (const EnsembleSample* sample : models)
            axis.values.push_back(static_cast<double>(sample->values[column.place]) * row.factor);
        if (column.param_code == param_top && model::ground_is_known(workspace))
            count_from_ground(workspace, ensemble, body, models, axis);
        plots.axes.push_back(std::move(axis));
    }
    if (plots.axes.size() < 2 || plots.axes.front().values.empty()) return {};
    plots.product = product_of(plots, type, body);
    return plots;
}

std::vector<std::pair<std::size_t, std::size_t>> cross_pairs(const CrossPlots& plots) {
    std::vector<std::pair<std::size_t, std::size_t>> pairs;
    for (std::size_t x = 0; x < plots.axes.size(); ++x)
        for (std::size_t y = x + 1; y < plots.axes.size(); ++y) pairs.emplace_back(x, y);
    return pairs;
}

std::vector<int> plotted_bodies(const Workspace& workspace, const Ensemble& ensemble) {
    std::vector<int> bodies;
    for (int number = 1; number <= workspace.body_count; ++number)
        if (columns_of(ensemble, number).size() >= 2) bodies.push_back(number);
    return bodies;
}

void set_up_cross_plot(chart::AX_Grapher& chart) {
    take_chart_look(chart);
    chart.ChartType(0);
    chart.XAxisRightMargin(right_room);
}

void draw_cross_plot(chart::AX_Grapher& chart, const CrossPlots& plots, std::size_t x, std::size_t y) {
    chart.Clear();
    const CrossAxis &across = plots.axes[x], &up = plots.axes[y];
    const AxisScale horizontal = scale_of(across), vertical = scale_of(up);
    const bool product = plots.product && plots.product->width == x && plots.product->strength == y;
    const Curve curve = product ? product_curve(*plots.product, horizontal) : Curve();
    std::vector<chart::ChartRow> rows{{chart::x_row, across.values}, {chart::chart_type_series, up.values}};
    if (product) {
        rows.push_back({chart::x_row, curve.width});
        rows.push_back({chart::line_series, curve.strength});
    }
    chart.RegisterData(rows);
    chart.SetSeriesOptions(1, 1, model_blue, "Models", dot, -1, 1);
    if (product) chart.SetSeriesOptions(2, 1, product_orange, "Product", 0, -1, 2);
    chart.Title(product ? "Product as fitted" : "");
    chart.XAxisLabel(label_of(across));
    chart.YAxisLabel(label_of(up));
    chart.XAxisMin(horizontal.low);
    chart.XAxisMax(horizontal.high);
    chart.XTickInterval(horizontal.interval);
    chart.YAxisMin(vertical.low);
    chart.YAxisMax(vertical.high);
    chart.YTickInterval(vertical.interval);
    chart.MarkerSize(fitted_size);
    chart.DrawMarker(across.fitted, up.fitted, square, chart::black, 2);
    chart.MarkerSize(dot_size);
    chart.DisplayChart();
}

}  // namespace anomalis::show
