#include "flow/model_page.h"

#include <algorithm>

#include "core/failure.h"
#include "edit/zoom.h"
#include "show/fit_quality.h"
#include "show/page_layout.h"

namespace anomalis::flow {

namespace {

constexpr double page_margin = 8 * chart::units_per_screen_pixel;
constexpr double caption_line = 16 * chart::units_per_screen_pixel;
/// A page below this is a thumbnail.
constexpr double least_height_of_captioned = 400 * chart::units_per_screen_pixel;
const chart::Font caption_font{.name = "Sans Serif", .size = 9, .bold = false};

std::vector<std::string> caption_of(const Workspace& workspace) {
    std::vector<std::string> lines;
    for (const int channel : {channel_mag, channel_grav})
        if (const auto quality = show::fit_quality(workspace, channel))
            lines.push_back((channel == channel_mag ? "Magnetics: " : "Gravity: ") +
                            show::fit_quality_text(*quality, channel));
    return lines;
}

/// The splitters as somebody has moved them; else a gradient, which nobody can draw larger on paper, has as
/// much room as its data.
edit::PaneFractions places_on_paper(const edit::ViewState& view) {
    edit::PaneFractions places = view.pane_fractions;
    for (const edit::PaneSplitter splitter : {edit::splitter_mag, edit::splitter_grav})
        if (places[splitter] == 0) places[splitter] = 0.5F;
    return places;
}

}  // namespace

ShownView shown_view(const edit::Workbench& workbench, show::ModelCharts& charts) {
    ShownView shown{workbench.view, {}};
    for (int i = 0; i < edit::model_chart_count; ++i)
        shown.zooms.at(static_cast<std::size_t>(i)) = charts.chart(i).CurrentZoom();
    shown.zooms.back() = charts.plan().CurrentZoom();
    return shown;
}

ModelPage::ModelPage(Session& session, chart::SurfaceSize size, const Choice& choice,
                     const MakeSurface& make_surface)
    : workbench_(session),
      size_(size),
      bare_(choice.bare),
      margin_(choice.bare ? 0 : page_margin),
      captioned_(!choice.bare && size.height >= least_height_of_captioned) {
    choose_view(choice);
    place_charts(size, make_surface);

    std::array<chart::AX_Grapher*, edit::model_chart_count> charts{};
    for (std::size_t i = 0; i < charts.size(); ++i) charts[i] = &charts_[i];
    ModelViewHost& host = *this;
    view_ = std::make_unique<ModelView>(workbench_, charts, charts_.back(), host);
    for (int i = 0; i <= edit::model_chart_count; ++i)
        charts_.at(static_cast<std::size_t>(i)).SetEvents(&view_->events(i));
    view_->charts().set_up(workbench_.view.show_axes);
    // Nobody zooms a sheet: its numbers need no room for more digits.
    for (chart::AX_Grapher& chart : charts_) chart.ZoomEnabled(choice.as_shown.has_value());
    view_->display_model(true);
    if (choice.as_shown) take_zooms(*choice.as_shown);
    if (captioned_) caption_ = caption_of(session.workspace);
}

void ModelPage::choose_view(const Choice& choice) {
    edit::ViewState& view = workbench_.view;
    if (choice.as_shown) {
        view = choice.as_shown->view;
        view.body_held = false;
    } else {
        view.current_body = 1;
        view.show_plan = choice.view.plan;
        view.wanted = choice.view.charts;
        edit::reset_view(workbench_.session.workspace, view, workbench_.session.prompts);
    }
    view.highlight_on = false;
}

/// Charts that were zoomed by hand; the section's overlay hangs on its window.
void ModelPage::take_zooms(const ShownView& shown) {
    for (std::size_t i = 0; i < charts_.size(); ++i) {
        const chart::ZoomValues& zoom = shown.zooms[i];
        if (zoom != chart::ZoomValues{} && charts_[i].HasPlotDefined())
            charts_[i].SetZoomValues(zoom.zoom_x, zoom.centre_x, zoom.zoom_y, zoom.centre_y);
    }
    if (!workbench_.view.show_plan && charts_[edit::chart_section].HasPlotDefined())
        view_->charts().refresh_section(workbench_.session.workspace, workbench_.view);
}

show::FigureScale ModelPage::scale() {
    show::FigureScale scale;
    for (std::size_t i = 0; i < edit::model_chart_count; ++i)
        if (charts_[i].HasPlotDefined()) scale.along = charts_[i].XAxisScale();
    if (charts_[edit::chart_section].HasPlotDefined()) scale.down = charts_[edit::chart_section].YAxisScale();
    if (charts_.back().HasPlotDefined()) scale.plan = charts_.back().XAxisScale();
    return scale;
}

double ModelPage::caption_height() const {
    if (!captioned_) return 0;
    const Workspace& workspace = workbench_.session.workspace;
    return caption_line * ((workspace.has_mag() ? 1 : 0) + (workspace.has_grav() ? 1 : 0));
}

void ModelPage::place_charts(chart::SurfaceSize size, const MakeSurface& make_surface) {
    const double width = size.width - 2 * margin_;
    const double height = size.height - 2 * margin_ - caption_height();
    const edit::ViewState& view = workbench_.view;
    auto shown = show::charts_with_data(workbench_.session.workspace);
    for (std::size_t i = 0; i < shown.size(); ++i) shown[i] = shown[i] && view.wanted[i];
    shown[edit::chart_section] = shown[edit::chart_section] || view.show_plan;
    if (std::none_of(shown.begin(), shown.end(), [](bool is) { return is; }))
        throw Fault("the line has no data for this chart");
    const show::ChartHeights heights = show::share_height(
        static_cast<int>(height), shown, bare_ ? places_on_paper(view) : edit::PaneFractions{});
    double top = size.height - margin_;
    for (std::size_t i = 0; i < charts_.size(); ++i) {
        const bool is_plan = i == edit::model_chart_count;
        const double own = is_plan ? heights[edit::chart_section] : heights[i];
        if (!is_plan) top -= own;
        places_[i] = {margin_, top, {width, own}};
        surfaces_[i] = make_surface(places_[i].size);
        charts_[i].SetSurface(surfaces_[i].get());
    }
}

void ModelPage::draw(chart::DrawingDevice& device, chart::OutputTarget kind,
                     const chart::SurfaceMapping& whole) {
    for (std::size_t i = 0; i < charts_.size(); ++i) {
        if (!charts_[i].HasPlotDefined()) continue;
        chart::SurfaceMapping mapping = whole;
        mapping.device_offset_x += whole.device_scale * places_[i].left;
        mapping.device_offset_y -= whole.device_scale * places_[i].bottom;
        if (charts_[i].DrawTo(device, kind, mapping, places_[i].size) != 0)
            throw Fault("a chart of the page cannot be drawn");
    }
    draw_caption(device, whole);
}

/// A line that is wider than the page has smaller letters.
void ModelPage::draw_caption(chart::DrawingDevice& device, const chart::SurfaceMapping& whole) const {
    chart::SurfaceMapping mapping = whole;
    mapping.device_offset_x += whole.device_scale * page_margin;
    device.set_mapping(mapping);
    double bottom = page_margin + caption_line * static_cast<double>(caption_.size());
    for (const std::string& line : caption_) {
        bottom -= caption_line;
        chart::Font font = caption_font;
        const double room = size_.width - 2 * page_margin;
        const double width = device.measure(line, font).width;
        if (width > room) font.size *= room / width;
        device.text({0, bottom}, 0, line, font, chart::black);
    }
}

}  // namespace anomalis::flow
