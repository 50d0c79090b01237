#include "workbench/qt/model_page.h"

#include <array>

#include "chart/qt/screen_device.h"
#include "core/failure.h"
#include "workbench/model_view.h"
#include "workbench/page_layout.h"
#include "workbench/workbench.h"
#include "workbench/zoom.h"

namespace anomalis {

namespace {

/// The charts of one session, laid out for a page instead of a window.
class ModelPage : private ModelViewHost {
  public:
    ModelPage(Session& session, const ModelPageOptions& options)
        : workbench_(session), options_(options), view_(workbench_, pointers(), plan_, *this) {
        if (!line_loaded(session.workspace)) throw Fault("There is no line to draw");
        for (std::size_t i = 0; i < charts_.size(); ++i) charts_.at(i).SetSurface(&surfaces_.at(i));
        plan_.SetSurface(&plan_surface_);
        workbench_.view.show_plan = options.plan;
        workbench_.view.highlight_on = false;
        calculate_zoom_settings(session.workspace, workbench_.view, session.prompts);
        view_.charts().set_up(true);
        view_.display_model(true);
    }

    /// From the lowest chart upward, each on its share of the height.
    void draw(DrawingDevice& device, OutputTarget kind, const SurfaceMapping& page) {
        double bottom = 0;
        for (int i = model_chart_count - 1; i >= 0; --i) {
            const auto at = static_cast<std::size_t>(i);
            if (heights_.at(at) == 0) continue;
            const bool plan = options_.plan && i == chart_section;
            AX_Grapher& chart = plan ? plan_ : charts_.at(at);
            SurfaceMapping mapping = page;
            mapping.device_offset_y -= page.device_scale * bottom;
            const SurfaceSize size{options_.width * units_per_screen_pixel,
                                   heights_.at(at) * units_per_screen_pixel};
            if (chart.DrawTo(device, kind, mapping, size) != 0) throw Fault("The page cannot be drawn");
            bottom += size.height;
        }
    }

  private:
    std::array<AX_Grapher*, model_chart_count> pointers() {
        std::array<AX_Grapher*, model_chart_count> all{};
        for (std::size_t i = 0; i < all.size(); ++i) all.at(i) = &charts_.at(i);
        return all;
    }
    void arrange_charts(const std::array<bool, model_chart_count>& shown) override {
        heights_ = share_height(options_.height, shown);
        for (std::size_t i = 0; i < heights_.size(); ++i)
            surfaces_.at(i).resize(QSize(options_.width, heights_.at(i)), 1.0);
        plan_surface_.resize(QSize(options_.width, heights_.at(chart_section)), 1.0);
    }
    void show_pointer(const PointerPanels&) override {}
    void show_misfit(const MisfitPair&) override {}
    void show_base_level(const std::string&) override {}
    void show_window(bool) override {}
    void show_current_body() override {}

    Workbench workbench_;
    ModelPageOptions options_;
    ChartHeights heights_{};
    std::array<ScreenDevice, model_chart_count> surfaces_;
    ScreenDevice plan_surface_;
    std::array<AX_Grapher, model_chart_count> charts_;
    AX_Grapher plan_;
    ModelView view_;
};

}  // namespace

std::string model_page_bytes(Session& session, PictureFormat format, const ModelPageOptions& options) {
    ModelPage page(session, options);
    const SurfaceSize size{options.width * units_per_screen_pixel, options.height * units_per_screen_pixel};
    return page_bytes(format, size,
                      [&](DrawingDevice& device, OutputTarget kind, const SurfaceMapping& mapping) {
                          page.draw(device, kind, mapping);
                      });
}

}  // namespace anomalis
