#include "flow/model_figure.h"

#include <ctime>
#include <utility>

#include "core/failure.h"
#include "core/local_time.h"
#include "model/refresh_model.h"

namespace anomalis::flow {

namespace {

constexpr double least_chart_side = 40 / 25.4 * chart::units_per_inch;  // 40 mm

/// Before the charts are laid out its line is there already.
constexpr show::FigureScale unknown_scale{1, 1, 0};

}  // namespace

ModelFigure::ModelFigure(Session& session, const FigureChoice& choice,
                         const ModelPage::MakeSurface& make_surface)
    : size_(choice.size) {
    if (!edit::line_loaded(session.workspace)) throw Fault("no line is loaded");
    model::refresh_model(session);
    const auto measure = make_surface(size_);
    const std::string date = local_time_text(std::time(nullptr), "%Y-%m-%d %H:%M");
    const auto lay_out = [&](const show::FigureScale& scale) {
        sheets_ = show::lay_out_figure(show::figure_content(session.workspace, scale, choice.title, date),
                                       size_, choice.further_sheets, *measure);
    };
    ModelPage::Choice charts{show::page_views.front(), choice.as_shown, true};
    show::FigureScale scale = unknown_scale;
    if (choice.as_shown && choice.as_shown->view.show_plan) scale = {1, 0, 1};
    // The scale hangs on the room of the charts, which hangs on the lines that the texts take.
    lay_out(scale);
    constexpr int most_turns = 3;
    for (int turn = 0; turn < most_turns; ++turn) {
        const chart::Rect room = *sheets_.front().charts;
        if (room.width() < least_chart_side || room.height() < least_chart_side)
            throw Fault("the sheet is too small for a figure");
        charts_ = std::make_unique<ModelPage>(session, chart::SurfaceSize{room.width(), room.height()},
                                              charts, make_surface);
        lay_out(charts_->scale());
        if (std::exchange(sheets_.front().charts, room) == room) break;
    }
}

void ModelFigure::draw(std::size_t sheet, chart::DrawingDevice& device, chart::OutputTarget kind,
                       const chart::SurfaceMapping& whole) {
    const show::FigureSheet& drawn = sheets_.at(sheet);
    device.set_mapping(whole);
    show::draw_sheet(drawn, device);
    if (!drawn.charts) return;
    chart::SurfaceMapping mapping = whole;
    mapping.device_offset_x += whole.device_scale * drawn.charts->x_low;
    mapping.device_offset_y -= whole.device_scale * drawn.charts->y_low;
    charts_->draw(device, kind, mapping);
}

}  // namespace anomalis::flow
