#pragma once

#include <array>
#include <functional>
#include <memory>

#include "chart/ax_grapher.h"
#include "workbench/model_view.h"
#include "workbench/page_view.h"
#include "workbench/workbench.h"

namespace anomalis {

/// The page of the model on paper: the charts that the window shows, one under the other, at any size and on
/// any device.
class ModelPage : private ModelViewHost {
  public:
    /// Makes a surface that measures text as the final device will; what is drawn on it is not looked at.
    using MakeSurface = std::function<std::unique_ptr<DrawingDevice>(SurfaceSize)>;

    /// Brings the model of a loaded session up to date and lays the page out. No body is highlighted; the
    /// label of body 1 follows the workspace. Raises Fault when the line has nothing of what the view wants.
    ModelPage(Session& session, SurfaceSize size, const PageView& view, const MakeSurface& make_surface);

    /// Draws the page. Raises Fault when a chart cannot be drawn.
    void draw(DrawingDevice& device, OutputTarget kind, const SurfaceMapping& whole);

  private:
    struct Place {
        double left = 0;
        double bottom = 0;
        SurfaceSize size;
    };

    void arrange_charts(const std::array<bool, model_chart_count>&) override {}
    void show_pointer(const PointerPanels&) override {}
    void show_misfit(const MisfitPair&) override {}
    void show_base_level(const std::string&) override {}
    void show_window(bool) override {}
    void show_current_body() override {}
    void place_charts(SurfaceSize size, const MakeSurface& make_surface);

    Workbench workbench_;
    /// The last one is the plan.
    std::array<AX_Grapher, model_chart_count + 1> charts_;
    std::array<Place, model_chart_count + 1> places_;
    std::array<std::unique_ptr<DrawingDevice>, model_chart_count + 1> surfaces_;
    std::unique_ptr<ModelView> view_;
};

}  // namespace anomalis
