#pragma once

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "chart/ax_grapher.h"
#include "edit/workbench.h"
#include "flow/model_view.h"
#include "show/figure_content.h"
#include "show/page_view.h"

namespace anomalis::flow {

/// The charts as somebody has them on show.
struct ShownView {
    edit::ViewState view;
    std::array<chart::ZoomValues, edit::model_chart_count + 1> zooms;  ///< by hand; the last one is the plan
};
ShownView shown_view(const edit::Workbench& workbench, show::ModelCharts& charts);

/// The page of the model on paper: the charts that the window shows, one under the other, at any size and on
/// any device. How well each channel fits stands below the charts of a page that has room for it.
class ModelPage : private ModelViewHost {
  public:
    /// Makes a surface that measures text as the final device will; what is drawn on it is not looked at.
    using MakeSurface = std::function<std::unique_ptr<chart::DrawingDevice>(chart::SurfaceSize)>;

    /// What a page holds of the line, and around the charts.
    struct Choice {
        show::PageView view;
        std::optional<ShownView> as_shown = {};  ///< zoom, pan and axes too; else the whole line
        bool bare = false;                       ///< no margin and no line about the fit
    };

    /// Brings the model of a loaded session up to date and lays the page out. No body is highlighted; the
    /// label of body 1 follows the workspace. Raises Fault when the line has nothing of what the view wants.
    ModelPage(Session& session, chart::SurfaceSize size, const Choice& choice,
              const MakeSurface& make_surface);
    ModelPage(Session& session, chart::SurfaceSize size, const show::PageView& view,
              const MakeSurface& make_surface)
        : ModelPage(session, size, Choice{view}, make_surface) {}

    /// Draws the page. Raises Fault when a chart cannot be drawn.
    void draw(chart::DrawingDevice& device, chart::OutputTarget kind, const chart::SurfaceMapping& whole);
    /// How many surface units a metre takes.
    show::FigureScale scale();

  private:
    struct Place {
        double left = 0;
        double bottom = 0;
        chart::SurfaceSize size;
    };

    void arrange_charts(const std::array<bool, edit::model_chart_count>&) override {}
    void show_pointer(const show::PointerPanels&) override {}
    void show_misfit(const MisfitPair&) override {}
    void show_base_level(int, const std::string&) override {}
    void show_window(const edit::ShownWindow&) override {}
    void show_current_body() override {}
    void choose_view(const Choice& choice);
    void take_zooms(const ShownView& shown);
    void place_charts(chart::SurfaceSize size, const MakeSurface& make_surface);
    double caption_height() const;
    void draw_caption(chart::DrawingDevice& device, const chart::SurfaceMapping& whole) const;

    edit::Workbench workbench_;
    /// The last one is the plan.
    std::array<chart::AX_Grapher, edit::model_chart_count + 1> charts_;
    std::array<Place, edit::model_chart_count + 1> places_;
    std::array<std::unique_ptr<chart::DrawingDevice>, edit::model_chart_count + 1> surfaces_;
    std::unique_ptr<ModelView> view_;
    chart::SurfaceSize size_;
    bool bare_;
    double margin_;
    bool captioned_;
    std::vector<std::string> caption_;  ///< how well each channel fits; a line each, the top one first
};

}  // namespace anomalis::flow
