#include "flow/model_page.h"

#include <algorithm>

#include "core/failure.h"
#include "edit/zoom.h"
#include "show/page_layout.h"

namespace anomalis::flow {

namespace {

constexpr double page_margin = 8 * chart::units_per_screen_pixel;

}  // namespace

ModelPage::ModelPage(Session& session, chart::SurfaceSize size, const show::PageView& view,
                     const MakeSurface& make_surface)
    : workbench_(session) {
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
    view_->display_model(true);
}

void ModelPage::place_charts(chart::SurfaceSize size, const MakeSurface& make_surface) {
    const double width = size.width - 2 * page_margin;
    const double height = size.height - 2 * page_margin;
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
}

}  // namespace anomalis::flow
