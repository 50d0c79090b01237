#include "window/panels/chart_file_dialogs.h"

#include "edit/workbench.h"
#include "flow/kept_files.h"

namespace anomalis::window {

std::optional<QString> ChartFileDialogs::save_path(QWidget* parent, const QString& title,
                                                   const QString& filter, const QString& extension) {
    auto path = chart::ChartDialogs::save_path(parent, title, filter, extension);
    Session& session = workbench_.session;
    if (path &&
        flow::refused_over_open_file("The picture", path->toStdString(), session.workspace, session.prompts))
        path.reset();
    return path;
}

}  // namespace anomalis::window
