#include "chart/detail/property_table.h"

#include <array>
#include <string_view>

namespace anomalis::chart {

namespace {

/// One persisted property. `always` = stored even when it is the default.
struct PropertyRow {
    const char* read_key;
    const char* write_key;
    bool always;
    PropertyValue (*get)(const ChartProperties&);
    void (*set)(ChartProperties&, const PropertyValue&);
};

/// A row for a field that `Access` reaches.
template <class Access>
constexpr PropertyRow row(const char* key, Access, bool always = false, const char* read_key = nullptr) {
    return {
        read_key == nullptr ? key : read_key, key, always,
        [](const ChartProperties& p) -> PropertyValue { return Access{}(const_cast<ChartProperties&>(p)); },
        [](ChartProperties& p, const PropertyValue& value) {
            auto& field = Access{}(p);
            field = std::get<std::remove_cvref_t<decltype(field)>>(value);
        }};
}

template <class Get, class Set>
constexpr PropertyRow row(const char* key, Get, Set, bool always, const char* read_key) {
    return {read_key, key, always, [](const ChartProperties& p) -> PropertyValue { return Get{}(p); },
            [](ChartProperties& p, const PropertyValue& value) { Set{}(p, std::get<double>(value)); }};
}

using P = ChartProperties;

constexpr PropertyRow x_cutoff_row = row(
    "XAxisCutoff", [](const P& p) { return p.x.scale.cutoff(); },
    [](P& p, double v) { p.x.scale.set_cutoff(v); }, false, "xAxisCutoff");
constexpr PropertyRow y_cutoff_row = row(
    "YAxisCutoff", [](const P& p) { return p.y.scale.cutoff(); },
    [](P& p, double v) { p.y.scale.set_cutoff(v); }, false, "YAxisCutoff");

void set_base_or_10(AxisTransform& scale, double base) {
    if (!scale.set_base(base)) scale.set_base(10.0);
}

constexpr std::array<PropertyRow, 37> rows{
    row(
        "BackColor", [](P& p) -> auto& { return p.back_colour; }),
    row(
        "ForeColor", [](P& p) -> auto& { return p.fore_colour; }),
    row(
        "Enabled", [](P& p) -> auto& { return p.enabled; }),
    row(
        "Font", [](P& p) -> auto& { return p.font; }),
    row(
        "BackStyle", [](P& p) -> auto& { return p.back_style; }),
    row(
        "BorderStyle", [](P& p) -> auto& { return p.border_style; }),
    row(
        "ChartType", [](P& p) -> auto& { return p.chart_type; }),
    row(
        "DisplayLegend", [](P& p) -> auto& { return p.display_legend; }),
    row(
        "DisplayAxes", [](P& p) -> auto& { return p.display_axes; }),
    row(
        "DisplayBorder", [](P& p) -> auto& { return p.display_border; }),
    row(
        "ZoomEnabled", [](P& p) -> auto& { return p.zoom_enabled; }),
    row(
        "AxisLabellingLocation", [](P& p) -> auto& { return p.labelling_location; }),
    row(
        "YAxisLabellingPosition", [](P& p) -> auto& { return p.y.position; }),
    row(
        "XAxisLabellingPosition", [](P& p) -> auto& { return p.x.position; }),
    row(
        "PlotPoints", [](P& p) -> auto& { return p.plot_points; }),
    row(
        "Title", [](P& p) -> auto& { return p.title; }),
    row(
        "TitleFont", [](P& p) -> auto& { return p.title_font; }),
    row(
        "YAxisMin", [](P& p) -> auto& { return p.y.min; }, true),
    row(
        "YAxisMax", [](P& p) -> auto& { return p.y.max; }, true),
    row(
        "YTickInterval", [](P& p) -> auto& { return p.y.tick_interval; }),
    row(
        "YAxisType", [](P& p) -> auto& { return p.y.scale.type; }),
    y_cutoff_row,
    row(
        "YAxisLabel", [](P& p) -> auto& { return p.y.label; }),
    row(
        "YAxisTopMargin", [](P& p) -> auto& { return p.y.high_margin; }, true),
    row(
        "YAxisBottomMargin", [](P& p) -> auto& { return p.y.low_margin; }, true),
    row(
        "XAxisMin", [](P& p) -> auto& { return p.x.min; }, true),
    row(
        "XAxisMax", [](P& p) -> auto& { return p.x.max; }, true),
    row(
        "XTickInterval", [](P& p) -> auto& { return p.x.tick_interval; }),
    row(
        "XAxisType", [](P& p) -> auto& { return p.x.scale.type; }, false, "xAxisType"),
    x_cutoff_row,
    row(
        "XAxisLabel", [](P& p) -> auto& { return p.x.label; }),
    row(
        "XAxisLeftMargin", [](P& p) -> auto& { return p.x.low_margin; }, true),
    row(
        "XAxisRightMargin", [](P& p) -> auto& { return p.x.high_margin; }, true),
    row(
        "DataNull", [](P& p) -> auto& { return p.data_null; }, true),
    row(
        "MarkerSize", [](P& p) -> auto& { return p.marker_size; }, true),
    row(
        "XBaseLog", [](const P& p) { return p.x.scale.base(); },
        [](P& p, double v) { set_base_or_10(p.x.scale, v); }, true, "XBaseLog"),
    row(
        "YBaseLog", [](const P& p) { return p.y.scale.base(); },
        [](P& p, double v) { set_base_or_10(p.y.scale, v); }, true, "YBaseLog"),
};

}  // namespace

void read_chart_properties(ChartProperties& properties, const PropertyBag& bag) {
    ChartProperties defaults;
    defaults.font = properties.font;
    defaults.title_font = properties.title_font;
    const auto read = [&](const PropertyRow& property) {
        const PropertyValue usual = property.get(defaults);
        const PropertyValue found = bag.read_property(property.read_key, usual);
        property.set(properties, found.index() == usual.index() ? found : usual);
    };
    for (const PropertyRow& property : rows) read(property);
    // A cutoff is a power of the base, and the bases come last.
    read(x_cutoff_row);
    read(y_cutoff_row);
}

void write_chart_properties(const ChartProperties& properties, PropertyBag& bag) {
    const ChartProperties defaults;
    for (const PropertyRow& property : rows) {
        const PropertyValue usual = property.get(defaults);
        bag.write_property(property.write_key, property.get(properties), property.always ? nullptr : &usual);
    }
}

}  // namespace anomalis::chart
