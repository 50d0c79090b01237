#include "window/shell/export_controller.h"

#include <QApplication>
#include <QPushButton>

#include "core/failure.h"
#include "edit/workbench.h"
#include "flow/export_drawing.h"
#include "window/panels/chart_file_dialogs.h"
#include "window/panels/charts_panel.h"
#include "window/panels/export_notice.h"
#include "window/panels/status_panels.h"
#include "window/shell/actions.h"
#include "window/shell/entry_gate.h"
#include "window/shell/form_figure.h"
#include "window/shell/screenshot.h"
#include "window/widgets/panel.h"

namespace anomalis::window {

namespace {

/// A picture shows data and model, and nothing that is for the person at work.
class PlainCharts {
  public:
    explicit PlainCharts(ChartsPanel& charts) : charts_(charts) { charts_.set_plain(true); }
    ~PlainCharts() { charts_.set_plain(false); }
    PlainCharts(const PlainCharts&) = delete;
    PlainCharts& operator=(const PlainCharts&) = delete;

  private:
    ChartsPanel& charts_;
};

}  // namespace

ExportController::ExportController(QWidget& window, edit::Workbench& workbench, Actions& actions,
                                   const EntryGate& gate, ChartsPanel& charts, StatusPanels& status,
                                   ChartFileDialogs& dialogs)
    : QObject(&window),
      window_(window),
      workbench_(workbench),
      charts_(charts),
      status_(status),
      dialogs_(dialogs) {
    actions.on(ActionId::print_figure, [this] { print_figure(); });
    actions.on(ActionId::export_solids, [this] { export_table(flow::export_body_dxf); });
    actions.on(ActionId::export_plan, [this] { export_table(flow::export_plan_dxf); });
    actions.on(ActionId::export_profile, [this] { export_table(flow::export_profile_data); });
    actions.on(ActionId::export_clean_profile, [this] { export_table(flow::export_clean_profile); });
    actions.on(ActionId::export_clean_bodies, [this] { export_table(flow::export_clean_model); });
    actions.on(ActionId::export_geojson, [this] { export_table(flow::export_geojson); });
    actions.on(ActionId::export_geopackage, [this] {
        export_table([](edit::Workbench& bench) {
            return flow::export_geopackage(bench, output::GisSystem::of_line);
        });
    });
    actions.on(ActionId::export_geopackage_wgs84, [this] {
        export_table([](edit::Workbench& bench) {
            return flow::export_geopackage(bench, output::GisSystem::geographic);
        });
    });
    const auto add = [&](const ControlText& text, flow::ScreenshotKind kind) {
        connect(charts.add_button(text), &QPushButton::clicked, this, [this, &gate, kind] {
            if (gate.pass()) screenshot(kind);
        });
    };
    add({"Command_Save_Screenshot_0", "Screenshot", "",
         "Picture of the charts, or of the plan, to the clipboard and as a bitmap beside the workspace file"},
        flow::ScreenshotKind::charts);
    add({"Command_Save_Screenshot_1", "Whole form", "",
         "Picture of the whole window with the misfit, to the clipboard and as a bitmap beside the workspace "
         "file"},
        flow::ScreenshotKind::form);
    make_misfit_frame(window);
}

void ExportController::export_table(flow::Exported (*export_flow)(edit::Workbench&)) {
    const flow::Exported exported = export_flow(workbench_);
    if (exported.outcome == flow::ExportOutcome::nothing) QApplication::beep();
    tell_export(status_, exported);
}

void ExportController::print_figure() {
    if (!edit::line_loaded(workbench_.session.workspace)) return;
    Form_figure(&window_, workbench_.session, flow::shown_view(workbench_, charts_.view().charts()), dialogs_)
        .exec();
}

void ExportController::screenshot(flow::ScreenshotKind kind) {
    report_failure(workbench_.session.prompts, "An error occurred while saving the screenshot: ", [&] {
        const PlainCharts plain(charts_);
        const std::string path = save_screenshot(window_, workbench_, kind);
        if (path.empty()) return status_.show_text(tr("The picture is on the clipboard"));
        tell_export(status_, tr("The picture is on the clipboard and in the file"),
                    QString::fromStdString(path));
    });
}

}  // namespace anomalis::window
