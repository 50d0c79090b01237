#include "chart/ax_grapher.h"

#include <algorithm>
#include <utility>

#include "chart/detail/display.h"
#include "chart/detail/gestures.h"
#include "chart/detail/grapher_state.h"
#include "chart/detail/output.h"
#include "chart/detail/property_table.h"
#include "chart/detail/zoom.h"

namespace anomalis::chart {

AX_Grapher::AX_Grapher() : state_(std::make_unique<GrapherState>()) {}
AX_Grapher::~AX_Grapher() = default;

// -- Surroundings.

void AX_Grapher::SetSurface(DrawingDevice* surface) {
    state_->surface = surface;
    state_->base_kept = false;
}
DrawingDevice* AX_Grapher::Surface() const {
    return state_->surface;
}
void AX_Grapher::SetEvents(GrapherEvents* events) {
    state_->events = events;
}
void AX_Grapher::SetPropertyBag(PropertyBag* bag) {
    state_->bag = bag;
}
void AX_Grapher::ReadProperties(const PropertyBag& bag) {
    read_chart_properties(state_->properties, bag);
    state_->base_kept = false;
}
void AX_Grapher::WriteProperties(PropertyBag& bag) const {
    write_chart_properties(state_->properties, bag);
}

// -- Series.

void AX_Grapher::RegisterData(std::span<const ChartRow> rows) {
    if (state_->busy_refresh) return;
    const bool on_black = resolved_colour(*state_, state_->properties.back_colour) == black;
    try {
        // The mark of what was chosen goes with it.
        if (state_->selected) state_->shown.forget();
        state_->selected.reset();
        state_->series.register_rows(rows, state_->properties, on_black ? white : black);
    } catch (const std::exception& failure) {
        state_->series.clear();
        tell_failure(*state_, failure.what());
    }
}

void AX_Grapher::RegisterData(const ChartTable& table) {
    std::vector<std::vector<double>> cells(table.size());
    std::vector<ChartRow> rows(table.size());
    for (std::size_t row = 0; row < table.size(); ++row) {
        const auto end =
            std::find(table[row].begin() + (table[row].empty() ? 0 : 1), table[row].end(), std::nullopt);
        for (auto cell = table[row].begin(); cell != end; ++cell)
            if (cell != table[row].begin()) cells[row].push_back(**cell);
        const bool coded = !table[row].empty() && table[row].front().has_value();
        rows[row] = {coded ? *table[row].front() : chart_type_series, cells[row]};
    }
    RegisterData(rows);
}

void AX_Grapher::RegisterBands(std::span<const ChartBand> bands) {
    if (state_->busy_refresh) return;
    try {
        state_->bands.register_bands(bands, state_->properties);
    } catch (const std::exception& failure) {
        state_->bands.clear();
        tell_failure(*state_, failure.what());
    }
}

void AX_Grapher::RegisterTracks(std::span<const ChartTrack> tracks) {
    if (state_->busy_refresh) return;
    try {
        state_->tracks.register_tracks(tracks, state_->properties);
    } catch (const std::exception& failure) {
        state_->tracks.clear();
        tell_failure(*state_, failure.what());
    }
}

void AX_Grapher::RegisterDots(std::span<const ChartDot> dots) {
    if (state_->busy_refresh) return;
    try {
        state_->dots.register_dots(dots, state_->properties);
    } catch (const std::exception& failure) {
        state_->dots.clear();
        tell_failure(*state_, failure.what());
    }
}

void AX_Grapher::SetSeriesOptions(int group, int series, Colour colour, const std::string& name, int marker,
                                  int visible, int width) {
    if (const char* wrong = state_->series.check(group, series)) {
        tell_failure(*state_, wrong);
        return;
    }
    SeriesOptions& options = state_->series.options(state_->series.group(group).first + series - 1);
    if (!name.empty()) options.name = name;
    if (colour >= 0) options.colour = colour;
    options.marker = marker;
    if (visible >= 0) options.visible = visible != 0;
    if (width > 0) options.width = width;
}

void AX_Grapher::SetSeriesCasing(int group, int series, bool cased) {
    if (const char* wrong = state_->series.check(group, series)) {
        tell_failure(*state_, wrong);
        return;
    }
    state_->series.options(state_->series.group(group).first + series - 1).cased = cased;
}

void AX_Grapher::SetSeriesLineStyle(int group, int series, LineStyle style) {
    if (const char* wrong = state_->series.check(group, series)) {
        tell_failure(*state_, wrong);
        return;
    }
    state_->series.options(state_->series.group(group).first + series - 1).style = style;
}

void AX_Grapher::RegisterMarker(const MarkerTable& markers, int group, int series, int point) {
    const char* wrong =
        state_->series.set_points(SeriesTable::PointTable::markers, markers, group, series, point);
    if (wrong != nullptr) tell_failure(*state_, wrong);
}

void AX_Grapher::RegisterMarkerColour(const MarkerTable& colours, int group, int series, int point) {
    const char* wrong =
        state_->series.set_points(SeriesTable::PointTable::colours, colours, group, series, point);
    if (wrong != nullptr) tell_failure(*state_, wrong);
}

int AX_Grapher::PointMarker(int series, int point) const {
    return state_->series.marker(series, point);
}
void AX_Grapher::PointMarker(int series, int point, int style) {
    state_->series.set_marker(series, point, style);
}
Colour AX_Grapher::set_pen_colour(int index) {
    return default_pen_colour(index);
}

// -- Display.

int AX_Grapher::Layout() {
    return layout_only(*state_);
}
int AX_Grapher::DisplayChart() {
    return display_chart(*state_);
}
int AX_Grapher::display_current_chart() {
    return draw_current(*state_);
}
int AX_Grapher::RefreshGraph(int mode) {
    return refresh_graph(*state_, mode);
}
void AX_Grapher::Resize() {
    resize(*state_);
}

void AX_Grapher::PictureLegend(bool value) {
    state_->picture_legend = value;
}
void AX_Grapher::ShowColourKey(std::optional<ColourKey> key) {
    state_->colour_key = std::move(key);
}
void AX_Grapher::WearPalette(const std::optional<ScreenPalette>& palette) {
    if (palette == state_->palette) return;
    state_->palette = palette;
    resize(*state_);
}

void AX_Grapher::Clear() {
    GrapherState& state = *state_;
    clear_zoom(state);
    state.saved_zoom = ZoomValues{};
    state.zoom_saved = false;
    state.displayed = false;
    state.selected.reset();
    state.gesture = Gesture{};
    state.series.clear();
    state.bands.clear();
    state.tracks.clear();
    state.dots.clear();
    state.overlay.clear();
    show_background(state);
}

void AX_Grapher::ClearAll() {
    state_->base_kept = false;
    state_->series.clear();
    state_->bands.clear();
    state_->tracks.clear();
    state_->dots.clear();
    state_->overlay.clear();
}

void AX_Grapher::DrawTopLayer(DrawingDevice& target) {
    if (!state_->layout.valid || state_->busy_refresh) return;
    target.set_mapping(screen_mapping(state_->layout.height));
    Canvas canvas(state_->notes);
    canvas.open(target, state_->fonts(), state_->palette);
    paint_top_layer(*state_, canvas);
}

int AX_Grapher::DrawTo(DrawingDevice& target, OutputTarget kind, const SurfaceMapping& mapping,
                       std::optional<SurfaceSize> size) {
    return draw_to(*state_, target, kind, mapping, size);
}

// -- Readers.

int AX_Grapher::MouseMode() const {
    return static_cast<int>(state_->gesture.mode);
}
double AX_Grapher::XAxisScale() const {
    return state_->layout.x_scale;
}
double AX_Grapher::YAxisScale() const {
    return state_->layout.y_scale;
}
bool AX_Grapher::HasPlotDefined() const {
    return state_->displayed;
}

Rect AX_Grapher::ViewRange() const {
    return {state_->x.view.low, state_->x.view.high, state_->y.view.low, state_->y.view.high};
}
Rect AX_Grapher::FullRange() const {
    return {state_->x.full.low, state_->x.full.high, state_->y.full.low, state_->y.full.high};
}
Rect AX_Grapher::ViewLimits() const {
    const AxisTransform& x = state_->properties.x.scale;
    const AxisTransform& y = state_->properties.y.scale;
    const Rect view = ViewRange();
    return {x.inverse(view.x_low), x.inverse(view.x_high), y.inverse(view.y_low), y.inverse(view.y_high)};
}
Rect AX_Grapher::PlotRect() const {
    return state_->layout.plot;
}

NaturalMargins AX_Grapher::PlotMargins() const {
    return {state_->layout.left - state_->properties.x.drawn_low_margin(),
            state_->layout.right - state_->properties.x.drawn_high_margin()};
}

double AX_Grapher::TextWidth(const std::string& text) const {
    return state_->surface == nullptr ? 0.0 : state_->surface->measure(text, state_->properties.font).width;
}
double AX_Grapher::TextHeight() const {
    return state_->surface == nullptr ? 0.0 : state_->surface->measure("M", state_->properties.font).height();
}

Point AX_Grapher::UserToSurface(Point user) const {
    const ChartProperties& p = state_->properties;
    return state_->layout.to_surface(state_->x, state_->y,
                                     {p.x.scale.forward(user.x), p.y.scale.forward(user.y)});
}
Point AX_Grapher::SurfaceToUser(Point surface) const {
    if (!state_->layout.valid) return {};
    const Point world = state_->layout.to_world(state_->x, state_->y, surface);
    return {state_->properties.x.scale.inverse(world.x), state_->properties.y.scale.inverse(world.y)};
}

double AX_Grapher::WidestNumber() const {
    if (state_->surface == nullptr || !state_->properties.numbers_outside()) return 0.0;
    return widest_number_at_any_zoom(state_->properties, state_->y, *state_->surface);
}

void align_plots(std::span<AX_Grapher* const> charts) {
    double numbers = 0.0;
    for (AX_Grapher* chart : charts) {
        chart->NumberRoom(0.0);
        if (chart->Layout() == 0) numbers = std::max(numbers, chart->WidestNumber());
    }
    NaturalMargins widest;
    for (AX_Grapher* chart : charts) {
        chart->NumberRoom(numbers);
        if (chart->Layout() != 0) continue;
        const NaturalMargins own = chart->PlotMargins();
        widest = {std::max(widest.left, own.left), std::max(widest.right, own.right)};
    }
    for (AX_Grapher* chart : charts) {
        const NaturalMargins own = chart->PlotMargins();
        chart->XAxisLeftMargin(static_cast<float>(std::max(0.0, widest.left - own.left)));
        chart->XAxisRightMargin(static_cast<float>(std::max(0.0, widest.right - own.right)));
        chart->Layout();
    }
}

}  // namespace anomalis::chart
