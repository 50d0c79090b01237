#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>

#include "core/inversion_state.h"
#include "flow/body_hand.h"
#include "show/model_charts.h"
#include "show/pointer_panels.h"

namespace anomalis::chart {
class GrapherEvents;
}  // namespace anomalis::chart
namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

namespace anomalis::flow {

/// What the model view tells the window.
class ModelViewHost {
  public:
    virtual ~ModelViewHost() = default;
    /// These charts have something to show; the others give their room to them.
    virtual void arrange_charts(const std::array<bool, edit::model_chart_count>& shown) = 0;
    virtual void show_pointer(const show::PointerPanels& panels) = 0;
    virtual void show_misfit(const MisfitPair& misfit) = 0;
    /// A floating base level was found; the text goes into the box of the magnetic base.
    /// Into the box of the channel's base level.
    virtual void show_base_level(int channel, const std::string& text) = 0;
    /// Zoom list and pan bar must follow.
    virtual void show_window(const edit::ShownWindow& window) = 0;
    /// Another body is about to become the current one; what is half typed belongs to the one that was.
    /// False: it must not.
    virtual bool may_leave_body() { return true; }
    /// Another body was chosen; the charts show it already.
    virtual void show_current_body() = 0;
    /// A hand is about to change the current body. False: it must not.
    virtual bool may_change_body() { return true; }
    /// The hand has moved the current body: whoever shows it follows, and the model is displayed.
    virtual void body_changed() {}
    /// The current body is to be taken away.
    virtual void delete_body_wanted() {}
    /// The person had the calculation left: the curves are those of before.
    virtual void calculation_stopped() {}
};

/// The page of the model: brings the numbers up to date, draws the charts, answers zoom, pan and clicks.
class ModelView {
  public:
    /// Everything outlives the view.
    ModelView(edit::Workbench& workbench,
              const std::array<chart::AX_Grapher*, edit::model_chart_count>& charts, chart::AX_Grapher& plan,
              ModelViewHost& host);
    ~ModelView();
    ModelView(const ModelView&) = delete;
    ModelView& operator=(const ModelView&) = delete;

    show::ModelCharts& charts() { return charts_; }
    /// Handles and keys of the current body.
    BodyHand& hand() { return hand_; }
    /// What a chart tells goes through these; the plan's number is `model_chart_count`.
    chart::GrapherEvents& events(int chart);

    /// The page is on show; otherwise nothing is drawn.
    void set_on_page(bool on_page);

    /// Elevations, model, filters, misfit, all charts. Without a line nothing happens. `forced` draws even
    /// while the page is not on show.
    void display_model(bool forced = false);
    void display_maginv_model(int chart);
    void display_plan_view();
    /// Another body is the current one: section or plan alone.
    void redraw_bodies();
    /// The charts have another size: scales that hang on it are found anew, nothing is calculated.
    void redraw();
    /// The windows of zoom and pan without calculating anything.
    void update_graph_display();
    /// What zoom list and pan bar tell.
    edit::ShownWindow shown_window();
    void update_section_or_plan_view(bool show_plan);
    /// All responses are calculated anew.
    void force_recalc();

    /// Draws another model of the same line in place of the open one, which stays as it is: charts, zoom and
    /// pan show `model`, without a current body and without bodies that can be clicked. Its numbers are up to
    /// date; it outlives its time on show, which ends with `end_preview` or with the next `display_model`.
    void show_preview(const Workspace& model);
    /// The open model as its rows stand.
    void end_preview();
    /// Section and plan without the mark of the current body while it is true: for pictures.
    void set_plain(bool plain);
    bool previewing() const { return preview_ != nullptr; }

    void choose_zoom_factor(int list_index);
    /// From minus to plus the pan limit of the window that is shown, zoomed by hand or from the list.
    void pan_to(int pan);
    /// One step of a chart's own bars; a direction above 0 zooms in, or pans down.
    void step_zoom(int chart, int direction);
    void step_pan(int chart, int direction);
    void reset_graph_scale();
    void select_body(int number);
    /// Axes on all charts, or none, as the view has it.
    void show_axes();

    /// The stations are gone: so are the curves, and the bodies that could be clicked.
    void clear_charts();

  private:
    class ChartLink;
    void chart_moved(int chart, bool outside, double x, double y);
    void chart_view_changed(int chart);
    void polygon_clicked(int chart, int polygon);
    /// What the charts show: the open model, or the one in its place.
    const Workspace& shown_model() const;
    /// Draws with the ensemble in force, or without it and without a current body while another model is on
    /// show.
    template <class Draw>
    void draw_shown(const Draw& draw);
    MisfitPair calculate();
    void show_calculated(const MisfitPair& misfit);
    void show_base_levels();
    std::array<bool, edit::model_chart_count> shown_charts() const;
    void redraw_after_step(int chart);
    void pan_by_hand(const edit::HandZoom& hand, int pan);
    void refresh_plan();

    edit::Workbench& workbench_;
    show::ModelCharts charts_;
    ModelViewHost& host_;
    BodyHand hand_;
    std::optional<show::GraphRanges> ranges_;  ///< none until the model was displayed
    std::array<std::unique_ptr<ChartLink>, edit::model_chart_count + 1> links_;
    show::GeographicPlaces places_;
    const Workspace* preview_ = nullptr;
    bool plain_ = false;
    bool calculating_ = false;  ///< what is served meanwhile must not begin another calculation
};

}  // namespace anomalis::flow
