#include "window/shell/export_controller.h"

#include <QApplication>
#include <QPushButton>

#include "core/failure.h"
#include "core/paths.h"
#include "edit/workbench.h"
#include "flow/export_drawing.h"
#include "window/panels/charts_panel.h"
#include "window/panels/status_panels.h"
#include "window/shell/actions.h"
#include "window/shell/entry_gate.h"
#include "window/shell/screenshot.h"
#include "window/widgets/panel.h"

namespace anomalis::window {

namespace {

/// A picture shows the model, not the marks to take hold of it.
class WithoutHandles {
  public:
    explicit WithoutHandles(flow::BodyHand& hand) : hand_(hand) { hand_.hide(true); }
    ~WithoutHandles() { hand_.hide(false); }
    WithoutHandles(const WithoutHandles&) = delete;
    WithoutHandles& operator=(const WithoutHandles&) = delete;

  private:
    flow::BodyHand& hand_;
};

}  // namespace

ExportController::ExportController(QWidget& window, edit::Workbench& workbench, Actions& actions,
                                   const EntryGate& gate, ChartsPanel& charts, StatusPanels& status)
    : QObject(&window), window_(window), workbench_(workbench), charts_(charts), status_(status) {
    actions.on(ActionId::export_solids, [this] { flow::export_body_dxf(workbench_.session); });
    actions.on(ActionId::export_plan, [this] { flow::export_plan_dxf(workbench_.session); });
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

void ExportController::export_table(flow::ExportOutcome (*export_flow)(edit::Workbench&)) {
    if (export_flow(workbench_) == flow::ExportOutcome::nothing) QApplication::beep();
}

void ExportController::screenshot(flow::ScreenshotKind kind) {
    report_failure(workbench_.session.prompts, "An error occurred while saving the screenshot: ", [&] {
        const WithoutHandles plain(charts_.view().hand());
        const std::string path = save_screenshot(window_, workbench_, kind);
        status_.show_text(path.empty() ? tr("The picture is on the clipboard")
                                       : tr("The picture is on the clipboard and in %1")
                                             .arg(QString::fromStdString(file_name(path))));
    });
}

}  // namespace anomalis::window
