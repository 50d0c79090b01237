#include "window/shell/save_controller.h"

#include <QPushButton>

#include "edit/workbench.h"
#include "flow/open_flow.h"
#include "window/panels/charts_panel.h"
#include "window/panels/status_panels.h"
#include "window/shell/actions.h"
#include "window/shell/entry_gate.h"
#include "window/widgets/panel.h"
#include "window/widgets/plain_text.h"

namespace anomalis::window {

SaveController::SaveController(QWidget& window, edit::Workbench& workbench, Actions& actions,
                               const EntryGate& gate, const FormGuards& guards, ModelNews& news,
                               ChartsPanel& charts, StatusPanels& status, Layout layout)
    : QObject(&window),
      window_(window),
      workbench_(workbench),
      guards_(guards),
      news_(news),
      status_(status),
      layout_(std::move(layout)),
      button_(charts.add_button({"Command_save_axm_model", "Save", "",
                                 "Write everything into the workspace file it came from (Ctrl+S)"})) {
    button_->setEnabled(false);
    connect(button_, &QPushButton::clicked, this, [this, &gate] {
        if (gate.pass()) save_by_button();
    });
    actions.on(ActionId::save_as, [this] { save_as(); });
    actions.on(ActionId::save, [this] { save(); });
}

void SaveController::save_as() {
    show_saved(flow::save_model(flow::SaveMode::with_dialog, workbench_, layout_()));
}

/// A copy of an example, or a new line, goes by a title until somebody names its file.
void SaveController::save_by_button() {
    if (workbench_.session.workspace.model_file.empty() && !workbench_.history.title().empty())
        return save_as();
    show_saved(flow::save_by_button(workbench_, layout_()));
}

void SaveController::save() {
    if (workbench_.session.workspace.model_file.empty()) {
        save_as();
    } else {
        save_by_button();
    }
}

void SaveController::show_saved(flow::SaveOutcome outcome) {
    const std::string& path = workbench_.session.workspace.model_file;
    if (outcome == flow::SaveOutcome::saved)
        status_.show_text(tr("Saved as %1").arg(QString::fromStdString(path)));
    if (outcome == flow::SaveOutcome::nameless) status_.show_text(tr(flow::nameless_save_text));
    news_.tell(News::file | News::recent_files);
}

void SaveController::follow() {
    const QString caption =
        window_caption(flow::window_caption(workbench_) + (workbench_.unsaved ? " *" : ""));
    if (caption != window_.windowTitle()) window_.setWindowTitle(caption);
    button_->setEnabled(workbench_.session.model_changed && !guards_.busy());
}

}  // namespace anomalis::window
