#include "flow/model_view.h"

#include <utility>

#include "chart/ax_grapher.h"
#include "core/failure.h"
#include "core/numbers.h"
#include "edit/ensemble_in_force.h"
#include "edit/workbench.h"
#include "edit/zoom.h"
#include "model/refresh_model.h"
#include "vector/upper_halves.h"

namespace anomalis::flow {

namespace {

constexpr int plan_chart = edit::model_chart_count;

}  // namespace

/// What one chart tells, with the number of the chart.
class ModelView::ChartLink : public chart::GrapherEvents {
  public:
    ChartLink(ModelView& view, int chart) : view_(view), chart_(chart) {}

    void MouseMove(int buttons, int, float x, float y, int outside, double world_x, double world_y, double,
                   double) override {
        view_.chart_moved(chart_, outside != 0, world_x, world_y);
        if (buttons == 0) view_.hand_.hover(chart_, x, y);
    }
    bool HoldPress(int button, int marks, float x, float y) override {
        return view_.hand_.press(chart_, button, marks, x, y);
    }
    void HeldMoved(int marks, float x, float y) override { view_.hand_.drag(marks, x, y); }
    void HeldEnded(bool given_up) override { view_.hand_.end(given_up); }
    void PointerLeft() override {
        view_.charts_.hide_crosshair();
        view_.hand_.leave(chart_);
    }
    void KeyDown(int& code, int marks) override {
        if (view_.hand_.key(chart_, code, marks)) code = 0;
    }
    void GraphicSelected(int, int index, double, double) override { view_.polygon_clicked(chart_, index); }
    void ViewChanged() override { view_.chart_view_changed(chart_); }
    void ZoomCleared() override { view_.chart_view_changed(chart_); }
    void Failed(const std::string& text) override { view_.workbench_.session.prompts.message(text); }

  private:
    ModelView& view_;
    int chart_;
};

ModelView::ModelView(edit::Workbench& workbench,
                     const std::array<chart::AX_Grapher*, edit::model_chart_count>& charts,
                     chart::AX_Grapher& plan, ModelViewHost& host)
    : workbench_(workbench), charts_(charts, plan), host_(host), hand_(workbench, charts_, host) {
    for (int i = 0; i <= edit::model_chart_count; ++i)
        links_.at(static_cast<std::size_t>(i)) = std::make_unique<ChartLink>(*this, i);
}

ModelView::~ModelView() = default;

chart::GrapherEvents& ModelView::events(int chart) {
    return *links_.at(static_cast<std::size_t>(chart));
}

void ModelView::set_on_page(bool on_page) {
    workbench_.view.on_page = on_page;
}

void ModelView::display_model(bool forced) {
    Session& session = workbench_.session;
    Workspace& workspace = session.workspace;
    if (calculating_ || !edit::line_loaded(workspace) || !(workbench_.view.on_page || forced)) return;
    if (std::exchange(preview_, nullptr)) hand_.hide(false);
    const MessageScope scope(session.prompts);
    report_failure(session.prompts, "An error occurred while displaying the current model: ", [&] {
        try {
            show_calculated(calculate());
        } catch (const model::CalculationStopped&) {
            // The curves of before, over the bodies as they are.
            redraw();
            host_.calculation_stopped();
        }
    });
}

MisfitPair ModelView::calculate() {
    struct Mark {
        bool& on;
        explicit Mark(bool& mark) : on(mark) { on = true; }
        ~Mark() { on = false; }
    } const under_way(calculating_);
    return model::refresh_model(workbench_.session);
}

void ModelView::show_calculated(const MisfitPair& misfit) {
    const Workspace& workspace = workbench_.session.workspace;
    show_base_levels();
    ranges_ = show::graph_ranges(workspace);
    charts_.set_shown(shown_charts());
    host_.arrange_charts(show::charts_with_data(workspace));
    charts_.set_gradient_texts(workspace.processing.display_total_gradient == 1,
                               workspace.processing.vg_filter_step);
    redraw();
    host_.show_misfit(misfit);
}

const Workspace& ModelView::shown_model() const {
    return preview_ ? *preview_ : workbench_.session.workspace;
}

/// Ghosts and fan go as soon as the model is another one.
template <class Draw>
void ModelView::draw_shown(const Draw& draw) {
    vector::clear_upper_halves();  // the model has just been calculated
    edit::ViewState& view = workbench_.view;
    struct Marks {
        edit::ViewState& view;
        const int number = view.current_body;
        const bool highlight = view.highlight_on;
        ~Marks() {
            view.current_body = number;
            view.highlight_on = highlight;
        }
    } const kept{view};
    if (preview_) view.current_body = 0;
    if (plain_) view.highlight_on = false;
    const bool ensemble = view.show_ensemble && !preview_;
    charts_.take_preferences(workbench_.session.preferences);
    charts_.set_ensemble(ensemble ? edit::ensemble_in_force(workbench_) : nullptr);
    draw(shown_model());
}

void ModelView::show_preview(const Workspace& model) {
    if (calculating_ || !edit::line_loaded(workbench_.session.workspace)) return;
    preview_ = &model;
    hand_.hide(true);
    ranges_ = show::graph_ranges(model);
    charts_.set_shown(shown_charts());
    redraw();
}

void ModelView::end_preview() {
    if (!preview_) return;
    preview_ = nullptr;
    hand_.hide(false);
    if (!edit::line_loaded(workbench_.session.workspace)) return;
    ranges_ = show::graph_ranges(workbench_.session.workspace);
    redraw();
}

/// The plan takes the section's place.
std::array<bool, edit::model_chart_count> ModelView::shown_charts() const {
    auto shown = show::charts_with_data(workbench_.session.workspace);
    shown[edit::chart_section] = !workbench_.view.show_plan;
    for (std::size_t i = 0; i < shown.size(); ++i) shown[i] = shown[i] && workbench_.view.wanted[i];
    return shown;
}

void ModelView::redraw() {
    Session& session = workbench_.session;
    if (!edit::line_loaded(session.workspace) || !ranges_) return;
    report_failure(session.prompts, "An error occurred while displaying the model graphs: ", [&] {
        draw_shown([&](const Workspace& model) { charts_.draw(model, *ranges_, workbench_.view); });
    });
    if (workbench_.view.show_plan) display_plan_view();
    hand_.show();
}

/// A floated base goes into its own box. On a line with both channels a floating magnetic base puts the base
/// of the gravity into the box of the magnetics as well: test
/// `with_a_floating_magnetic_base_its_box_ends_up_showing_the_gravity_base`.
void ModelView::show_base_levels() {
    const Workspace& workspace = workbench_.session.workspace;
    const auto show = [&](int box, const Channel& channel) {
        host_.show_base_level(box, format_number(channel.base, "0.000"));
    };
    const bool mag = workspace.has_mag(), grav = workspace.has_grav();
    if (mag && workspace.mag.float_base == 1) show(channel_mag, workspace.mag);
    if (mag && grav && workspace.mag.float_base == 1) show(channel_mag, workspace.grav);
    if (grav && workspace.grav.float_base == 1) show(channel_grav, workspace.grav);
}

void ModelView::display_maginv_model(int chart) {
    Session& session = workbench_.session;
    if (!edit::line_loaded(session.workspace) || !ranges_) return;
    report_failure(session.prompts, "An error occurred while displaying the model graphs: ", [&] {
        draw_shown(
            [&](const Workspace& model) { charts_.draw_one(chart, model, *ranges_, workbench_.view); });
    });
    hand_.show();
}

void ModelView::display_plan_view() {
    Session& session = workbench_.session;
    if (!edit::line_loaded(session.workspace)) return;
    report_failure(session.prompts, "An error occurred while displaying the plan view: ", [&] {
        Faults faults;
        draw_shown([&](const Workspace& model) { charts_.draw_plan(model, workbench_.view, faults); });
        show_faults(faults, session.prompts);
    });
    hand_.show();
}

void ModelView::redraw_bodies() {
    if (!workbench_.view.on_page) return;
    workbench_.view.show_plan ? display_plan_view() : display_maginv_model(edit::chart_section);
}

void ModelView::update_graph_display() {
    Session& session = workbench_.session;
    if (!edit::line_loaded(session.workspace)) return;
    report_failure(session.prompts, "An error occurred while updating the graphics display: ", [&] {
        draw_shown([&](const Workspace& model) { charts_.apply_windows(model, workbench_.view); });
    });
    if (workbench_.view.show_plan) return display_plan_view();
    hand_.show();
}

void ModelView::update_section_or_plan_view(bool show_plan) {
    Session& session = workbench_.session;
    report_failure(session.prompts, "An error occurred while updating the section/plan view: ", [&] {
        workbench_.view.show_plan = show_plan;
        if (!show_plan) reset_calculated_data(session.workspace, session.prompts);
        display_model();
    });
}

void ModelView::force_recalc() {
    reset_calculated_data(workbench_.session.workspace, workbench_.session.prompts);
    display_model();
}

void ModelView::set_plain(bool plain) {
    if (std::exchange(plain_, plain) == plain || !workbench_.view.highlight_on) return;
    workbench_.view.show_plan ? display_plan_view() : display_maginv_model(edit::chart_section);
}

void ModelView::pan_by_hand(const edit::HandZoom& hand, int pan) {
    Session& session = workbench_.session;
    if (!edit::line_loaded(session.workspace)) return;
    report_failure(session.prompts, "An error occurred while updating the graphics display: ", [&] {
        const edit::HandZoom moved = edit::pan_hand_zoom(workbench_.view, hand, pan);
        draw_shown([&](const Workspace& model) { charts_.pan_by_hand(moved, model, workbench_.view); });
    });
    if (workbench_.view.show_plan) refresh_plan();
    hand_.show();
}

/// The overlay of the plan has texts, which stand elsewhere at another zoom.
void ModelView::refresh_plan() {
    Session& session = workbench_.session;
    Faults faults;
    draw_shown([&](const Workspace& model) { charts_.refresh_plan(model, workbench_.view, faults); });
    show_faults(faults, session.prompts);
}

void ModelView::select_body(int number) {
    const Workspace& workspace = workbench_.session.workspace;
    if (number < 1 || number > workspace.body_count || number == workbench_.view.current_body) return;
    if (!host_.may_leave_body()) return;
    workbench_.view.current_body = number;
    redraw_bodies();
    host_.show_current_body();
}

void ModelView::show_axes() {
    charts_.set_display_axes(workbench_.view.show_axes);
}

void ModelView::clear_charts() {
    preview_ = nullptr;
    ranges_.reset();
    charts_.clear();
    hand_.forget();
}

void ModelView::chart_moved(int chart, bool outside, double x, double y) {
    const chart::Point user{x, y};
    const chart::Point* place = outside ? nullptr : &user;
    if (place && chart != plan_chart && edit::line_loaded(shown_model()))
        charts_.show_crosshair(chart, shown_model(), user);
    else
        charts_.hide_crosshair();
    host_.show_pointer(chart == plan_chart ? show::plan_pointer(shown_model(), place, places_)
                                           : show::profile_pointer(shown_model(), chart, charts_.chart(chart),
                                                                   place, places_));
}

void ModelView::chart_view_changed(int chart) {
    if (!edit::line_loaded(workbench_.session.workspace)) return;
    if (chart != plan_chart || charts_.plan_in_line())
        draw_shown([&](const Workspace& model) { charts_.follow_view(chart, model, workbench_.view); });
    if (workbench_.view.show_plan) refresh_plan();
    hand_.show();
    host_.show_window(shown_window());
}

void ModelView::polygon_clicked(int chart, int polygon) {
    if (preview_) return;
    if (chart == edit::chart_section) select_body(charts_.section_body(polygon));
    if (chart == plan_chart) select_body(charts_.plan_body(polygon));
}

}  // namespace anomalis::flow
