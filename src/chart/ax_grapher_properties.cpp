#include <algorithm>
#include <cmath>

#include "chart/ax_grapher.h"
#include "chart/detail/grapher_state.h"

// The properties: what each holds, and that its bag is told of a change under its key.
namespace anomalis::chart {

namespace {

template <class Value>
void set(GrapherState& state, Value& property, const Value& value, const char* key) {
    property = value;
    if (state.bag != nullptr) state.bag->property_changed(key);
}

/// A base without a logarithm to divide by leaves the old one, and the bag is not told.
void set_base(GrapherState& state, AxisTransform& scale, double base, const char* key) {
    if (scale.set_base(base) && state.bag != nullptr) state.bag->property_changed(key);
}

void set_cutoff(GrapherState& state, AxisTransform& scale, double cutoff, const char* key) {
    scale.set_cutoff(cutoff);
    if (state.bag != nullptr) state.bag->property_changed(key);
}

}  // namespace

Colour AX_Grapher::BackColor() const {
    return state_->properties.back_colour;
}
void AX_Grapher::BackColor(Colour value) {
    set(*state_, state_->properties.back_colour, value, "BackColor");
    state_->base_kept = false;
}
Colour AX_Grapher::ForeColor() const {
    return state_->properties.fore_colour;
}
void AX_Grapher::ForeColor(Colour value) {
    set(*state_, state_->properties.fore_colour, value, "ForeColor");
}
bool AX_Grapher::Enabled() const {
    return state_->properties.enabled;
}
void AX_Grapher::Enabled(bool value) {
    set(*state_, state_->properties.enabled, value, "Enabled");
}
int AX_Grapher::BackStyle() const {
    return state_->properties.back_style;
}
void AX_Grapher::BackStyle(int value) {
    set(*state_, state_->properties.back_style, value, "BackStyle");
    state_->base_kept = false;
}
int AX_Grapher::BorderStyle() const {
    return state_->properties.border_style;
}
void AX_Grapher::BorderStyle(int value) {
    set(*state_, state_->properties.border_style, value, "BorderStyle");
}
int AX_Grapher::ChartType() const {
    return state_->properties.chart_type;
}
void AX_Grapher::ChartType(int value) {
    set(*state_, state_->properties.chart_type, value, "ChartType");
}
bool AX_Grapher::DisplayLegend() const {
    return state_->properties.display_legend;
}
void AX_Grapher::DisplayLegend(bool value) {
    set(*state_, state_->properties.display_legend, value, "DisplayLegend");
}
bool AX_Grapher::DisplayAxes() const {
    return state_->properties.display_axes;
}
void AX_Grapher::DisplayAxes(bool value) {
    set(*state_, state_->properties.display_axes, value, "DisplayAxes");
}
bool AX_Grapher::DisplayBorder() const {
    return state_->properties.display_border;
}
void AX_Grapher::DisplayBorder(bool value) {
    set(*state_, state_->properties.display_border, value, "DisplayBorder");
}
bool AX_Grapher::ZoomEnabled() const {
    return state_->properties.zoom_enabled;
}
void AX_Grapher::ZoomEnabled(bool value) {
    set(*state_, state_->properties.zoom_enabled, value, "ZoomEnabled");
}
bool AX_Grapher::PlotPoints() const {
    return state_->properties.plot_points;
}
void AX_Grapher::PlotPoints(bool value) {
    set(*state_, state_->properties.plot_points, value, "PlotPoints");
}
int AX_Grapher::AxisLabellingLocation() const {
    return state_->properties.labelling_location;
}
void AX_Grapher::AxisLabellingLocation(int value) {
    set(*state_, state_->properties.labelling_location, value, "AxisLabellingLocation");
}
int AX_Grapher::XAxisLabellingPosition() const {
    return state_->properties.x.position;
}
void AX_Grapher::XAxisLabellingPosition(int value) {
    set(*state_, state_->properties.x.position, value, "XAxisLabellingPosition");
}
int AX_Grapher::YAxisLabellingPosition() const {
    return state_->properties.y.position;
}
void AX_Grapher::YAxisLabellingPosition(int value) {
    set(*state_, state_->properties.y.position, value, "YAxisLabellingPosition");
}
std::string AX_Grapher::Title() const {
    return state_->properties.title;
}
void AX_Grapher::Title(const std::string& value) {
    set(*state_, state_->properties.title, value, "Title");
}
std::string AX_Grapher::XAxisLabel() const {
    return state_->properties.x.label;
}
void AX_Grapher::XAxisLabel(const std::string& value) {
    set(*state_, state_->properties.x.label, value, "XAxisLabel");
}
std::string AX_Grapher::YAxisLabel() const {
    return state_->properties.y.label;
}
void AX_Grapher::YAxisLabel(const std::string& value) {
    set(*state_, state_->properties.y.label, value, "YAxisLabel");
}
double AX_Grapher::XAxisMin() const {
    return state_->properties.x.min;
}
void AX_Grapher::XAxisMin(double value) {
    set(*state_, state_->properties.x.min, value, "XAxisMin");
}
double AX_Grapher::XAxisMax() const {
    return state_->properties.x.max;
}
void AX_Grapher::XAxisMax(double value) {
    set(*state_, state_->properties.x.max, value, "XAxisMax");
}
double AX_Grapher::YAxisMin() const {
    return state_->properties.y.min;
}
void AX_Grapher::YAxisMin(double value) {
    set(*state_, state_->properties.y.min, value, "YAxisMin");
}
double AX_Grapher::YAxisMax() const {
    return state_->properties.y.max;
}
void AX_Grapher::YAxisMax(double value) {
    set(*state_, state_->properties.y.max, value, "YAxisMax");
}
double AX_Grapher::XTickInterval() const {
    return state_->properties.x.tick_interval;
}
void AX_Grapher::XTickInterval(double value) {
    set(*state_, state_->properties.x.tick_interval, value, "XTickInterval");
}
double AX_Grapher::YTickInterval() const {
    return state_->properties.y.tick_interval;
}
void AX_Grapher::YTickInterval(double value) {
    set(*state_, state_->properties.y.tick_interval, value, "YTickInterval");
}
int AX_Grapher::XAxisType() const {
    return state_->properties.x.scale.type;
}
void AX_Grapher::XAxisType(int value) {
    set(*state_, state_->properties.x.scale.type, value, "XAxisType");
}
int AX_Grapher::YAxisType() const {
    return state_->properties.y.scale.type;
}
void AX_Grapher::YAxisType(int value) {
    set(*state_, state_->properties.y.scale.type, value, "YAxisType");
}
float AX_Grapher::YAxisTopMargin() const {
    return state_->properties.y.high_margin;
}
void AX_Grapher::YAxisTopMargin(float value) {
    set(*state_, state_->properties.y.high_margin, value, "YAxisTopMargin");
}
float AX_Grapher::YAxisBottomMargin() const {
    return state_->properties.y.low_margin;
}
void AX_Grapher::YAxisBottomMargin(float value) {
    set(*state_, state_->properties.y.low_margin, value, "YAxisBottomMargin");
}
float AX_Grapher::XAxisLeftMargin() const {
    return state_->properties.x.low_margin;
}
void AX_Grapher::XAxisLeftMargin(float value) {
    set(*state_, state_->properties.x.low_margin, value, "XAxisLeftMargin");
}
float AX_Grapher::XAxisRightMargin() const {
    return state_->properties.x.high_margin;
}
void AX_Grapher::XAxisRightMargin(float value) {
    set(*state_, state_->properties.x.high_margin, value, "XAxisRightMargin");
}
double AX_Grapher::DataNull() const {
    return state_->properties.data_null;
}
void AX_Grapher::DataNull(double value) {
    set(*state_, state_->properties.data_null, value, "DataNull");
}
int AX_Grapher::MarkerSize() const {
    return state_->properties.marker_size;
}
void AX_Grapher::MarkerSize(int value) {
    set(*state_, state_->properties.marker_size, value, "MarkerSize");
}

bool AX_Grapher::LightGrid() const {
    return state_->properties.light_grid;
}
void AX_Grapher::LightGrid(bool value) {
    state_->properties.light_grid = value;
}
double AX_Grapher::NumberRoom() const {
    return state_->properties.number_room;
}
void AX_Grapher::NumberRoom(double value) {
    state_->properties.number_room = std::isfinite(value) ? std::max(value, 0.0) : 0.0;
}

Font AX_Grapher::FONT() const {
    return state_->properties.font;
}
void AX_Grapher::FONT(const Font& value) {
    set(*state_, state_->properties.font, value, "Font");
}
Font AX_Grapher::TitleFont() const {
    return state_->properties.title_font;
}
void AX_Grapher::TitleFont(const Font& value) {
    set(*state_, state_->properties.title_font, value, "TitleFont");
}

double AX_Grapher::XBaseLog() const {
    return state_->properties.x.scale.base();
}
void AX_Grapher::XBaseLog(double value) {
    set_base(*state_, state_->properties.x.scale, value, "XBaseLog");
}
double AX_Grapher::XAxisCutoff() const {
    return state_->properties.x.scale.cutoff();
}
void AX_Grapher::XAxisCutoff(double value) {
    set_cutoff(*state_, state_->properties.x.scale, value, "XAxisCutoff");
}
double AX_Grapher::YBaseLog() const {
    return state_->properties.y.scale.base();
}
void AX_Grapher::YBaseLog(double value) {
    set_base(*state_, state_->properties.y.scale, value, "YBaseLog");
}
double AX_Grapher::YAxisCutoff() const {
    return state_->properties.y.scale.cutoff();
}
void AX_Grapher::YAxisCutoff(double value) {
    set_cutoff(*state_, state_->properties.y.scale, value, "YAxisCutoff");
}

}  // namespace anomalis::chart
