#include "window/panels/export_notice.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QUrl>

#include "flow/export_flow.h"
#include "window/panels/status_panels.h"

namespace anomalis::window {

void tell_export(StatusPanels& status, const QString& text, const QString& path) {
    status.show_text(text);
    if (path.isEmpty()) return;
    const QFileInfo file(path);
    status.add_text(file.fileName());
    status.show_link(StatusPanels::tr("Show in folder"), [folder = file.absolutePath()] {
        QDesktopServices::openUrl(QUrl::fromLocalFile(folder));
    });
}

void tell_export(StatusPanels& status, const flow::Exported& exported) {
    if (exported.outcome == flow::ExportOutcome::written)
        tell_export(status, flow::output_complete, QString::fromStdString(exported.path));
}

}  // namespace anomalis::window
