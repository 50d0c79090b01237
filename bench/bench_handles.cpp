// A step of a dragged handle up to the painted charts against the step of a bar that changes the same.

#include <array>
#include <benchmark/benchmark.h>

#include <QMouseEvent>

#include "chart/qt/grapher_widget.h"
#include "core/body_parameters.h"
#include "show/handles/handle_marks.h"
#include "show/handles/plan_handles.h"
#include "show/handles/section_handles.h"
#include "timing.h"
#include "window/shell/look.h"
#include "window_sample.h"

namespace anomalis {
namespace {

constexpr int stations = 8193;
constexpr int sheets = 50;
constexpr int moved = 25;
constexpr int escape_key = 27;

/// One handle of the current body under a pressed button.
class Hand {
  public:
    Hand(ShownWindow& window, show::HandleKind kind, bool plan) : widget_(widget_of(window, plan)) {
        Workspace& w = window.session.workspace;
        const chart::AX_Grapher& chart = widget_.chart();
        const show::HandleView view{chart.ViewLimits(), chart.XAxisScale(), chart.YAxisScale(),
                                    chart.YAxisMin(), window.form->workbench().view.profile_window_max};
        const auto handles =
            plan ? show::plan_handles(w, w.body(moved), view) : show::section_handles(w, w.body(moved), view);
        for (const show::Handle& handle : handles) {
            if (handle.kind != kind) continue;
            const chart::Point at = show::handle_place(chart, handle);
            at_ = {at.x / chart::units_per_screen_pixel,
                   widget_.height() - at.y / chart::units_per_screen_pixel};
            send(QEvent::MouseButtonPress, Qt::LeftButton, at_);
            return;
        }
        throw std::runtime_error("no such handle");
    }
    /// The body goes back to where it was, so that every turn is the same.
    ~Hand() {
        widget_.chart().HandleKeyDown(escape_key, 0);
        send(QEvent::MouseButtonRelease, Qt::LeftButton, at_);
        ShownWindow::settle();
    }
    Hand(const Hand&) = delete;
    Hand& operator=(const Hand&) = delete;

    /// A move of the pointer, up to the painted picture.
    void move(QPointF by) {
        send(QEvent::MouseMove, Qt::NoButton, at_ + by);
        ShownWindow::settle();
    }

  private:
    static chart::GrapherWidget& widget_of(ShownWindow& window, bool plan) {
        return plan ? window.form->charts().plan_widget()
                    : window.form->charts().chart_widget(edit::chart_section);
    }
    void send(QEvent::Type type, Qt::MouseButton button, QPointF at) {
        const auto held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, at, widget_.mapToGlobal(at), button, held, Qt::NoModifier);
        QApplication::sendEvent(&widget_, &event);
    }

    chart::GrapherWidget& widget_;
    QPointF at_;
};

/// Both steps in turn, so that whatever else the machine does weighs on both.
void a_step_of_a_handle(benchmark::State& state, show::HandleKind kind, ParamCode code, bool plan) {
    const WorkFolder folder;
    ShownWindow window(write_line(folder, stations, sheets));
    window.form->workbench().view.current_body = moved;
    if (plan) window.form->charts().show_plan(true);
    ShownWindow::settle();
    BestTime bar, handle;
    int turn = 0;
    for (auto _ : state) {
        const int direction = ++turn % 2 == 0 ? 1 : -1;
        bar.take([&] { window.scroll(code, direction); });
        Hand hand(window, kind, plan);
        hand.move({9, 9});
        state.SetIterationTime(handle.take([&] { hand.move({12, 14}); }));
    }
    state.counters["handle_ms"] = handle.seconds() * 1e3;
    state.counters["bar_ms"] = bar.seconds() * 1e3;
    state.counters["handle_to_bar"] = handle.seconds() / bar.seconds();
    state.counters["pictures_a_second"] = 1 / handle.seconds();
    state.counters["messages"] = static_cast<double>(window.prompts.count());
}
BENCHMARK_CAPTURE(a_step_of_a_handle, dip, show::HandleKind::dip, param_dip, false)
    ->Iterations(40)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(a_step_of_a_handle, place, show::HandleKind::place, param_distance, false)
    ->Iterations(40)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace anomalis

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    anomalis::window::apply_look(application);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
