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

}  // namespace

ModelPage::ModelPage(Session& session, chart::SurfaceSize size, const show::PageView& view,
                     const MakeSurface& make_surface)
    : workbench_(session), size_(size) {
    workbench_.view.highlight_on = false;
    workbench_.view.current_body = 1;
    workbench_.view.show_plan = view.plan;
    workbench_.view.wanted = view.charts;
    edit::reset_view(session.workspace, workbench_.view, session.prompts);
    place_charts(size, make_surface);

    std::array<chart::AX_Grapher*, edit::model_chart_count> charts{};
    for (std::size_t i = 0; i < charts.size(); ++i) charts[i] = &charts_[i];
    ModelViewHost& host = *this;
    view_ = std::make_unique<ModelView>(workbench_, charts, charts_.back(), host);
    for (int i = 0; i <= edit::model_chart_count; ++i)
        charts_.at(static_cast<std::size_t>(i)).SetEvents(&view_->events(i));
    view_->charts().set_up(true);
    // Nobody zooms a sheet: its numbers need no room for more digits.
    for (chart::AX_Grapher& chart : charts_) chart.ZoomEnabled(false);
    view_->display_model(true);
    if (caption_height() > 0) caption_ = caption_of(session.workspace);
}

double ModelPage::caption_height() const {
    if (size_.height < least_height_of_captioned) return 0;
    const Workspace& workspace = workbench_.session.workspace;
    return caption_line * ((workspace.has_mag() ? 1 : 0) + (workspace.has_grav() ? 1 : 0));
}

void ModelPage::place_charts(chart::SurfaceSize size, const MakeSurface& make_surface) {
    const double width = size.width - 2 * page_margin;
    const double height = size.height - 2 * page_margin - caption_height();
    const edit::ViewState& view = workbench_.view;
    auto shown = show::charts_with_data(workbench_.session.workspace);
    for (std::size_t i = 0; i < shown.size(); ++i) shown[i] = shown[i] && view.wanted[i];
    shown[edit::chart_section] = shown[edit::chart_section] || view.show_plan;
    if (std::none_of(shown.begin(), shown.end(), [](bool is) { return is; }))
        throw Fault("the line has no data for this chart");
    const show::ChartHeights heights = show::share_height(static_cast<int>(height), shown);
    double top = size.height - page_margin;
    for (std::size_t i = 0; i < charts_.size(); ++i) {
        const bool is_plan = i == edit::model_chart_count;
        const double own = is_plan ? heights[edit::chart_section] : heights[i];
        if (!is_plan) top -= own;
        places_[i] = {page_margin, top, {width, own}};
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
