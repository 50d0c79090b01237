#include "window/panels/chart_file_dialogs.h"

#include <QFileInfo>

#include "core/paths.h"
#include "edit/workbench.h"
#include "flow/kept_files.h"

namespace anomalis::window {

namespace {

constexpr const char* folder_key = "PictureFolder";

bool is_folder(const std::string& path) {
    return !path.empty() && QFileInfo(QString::fromStdString(path)).isDir();
}

/// The model, or the line while there is no file of a model.
const std::string& named_after(const Workspace& workspace) {
    return workspace.model_file.empty() ? workspace.definition.data_file : workspace.model_file;
}

}  // namespace

std::string ChartFileDialogs::proposed_path(const std::string& name) const {
    const Session& session = workbench_.session;
    const std::string& file = named_after(session.workspace);
    std::string folder = session.settings.get(settings_section, folder_key, "");
    if (!is_folder(folder)) folder = folder_name(file);
    if (!folder.empty() && folder.back() != '/') folder += '/';
    return folder + (file.empty() ? "" : base_name(file) + "_") + name;
}

std::optional<QString> ChartFileDialogs::save_path(QWidget* parent, const chart::SaveQuestion& question) {
    chart::SaveQuestion own = question;
    own.proposal = QString::fromStdString(proposed_path(question.proposal.toStdString()));
    auto path = chart::ChartDialogs::save_path(parent, own);
    Session& session = workbench_.session;
    if (path &&
        flow::refused_over_open_file("The picture", path->toStdString(), session.workspace, session.prompts))
        path.reset();
    if (path)
        session.settings.set(settings_section, folder_key, QFileInfo(*path).absolutePath().toStdString());
    return path;
}

void ChartFileDialogs::done(QWidget* parent, const QString& text, const QString& path) {
    if (!tell_) return chart::ChartDialogs::done(parent, text, path);
    tell_(text, path);
}

}  // namespace anomalis::window
