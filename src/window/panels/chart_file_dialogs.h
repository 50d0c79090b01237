#pragma once

#include <functional>
#include <string>

#include "chart/qt/chart_dialogs.h"

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

namespace anomalis::window {

/// The dialogs of charts and figures. They open in the folder of the last picture with a name after the
/// model; a picture is not saved over a file that is open.
class ChartFileDialogs : public chart::ChartDialogs {
  public:
    explicit ChartFileDialogs(const edit::Workbench& workbench) : workbench_(workbench) {}
    /// Who tells of a picture that is done, in place of a message box.
    using Tell = std::function<void(const QString& text, const QString& path)>;
    void set_told(Tell tell) { tell_ = std::move(tell); }

    std::optional<QString> save_path(QWidget* parent, const chart::SaveQuestion& question) override;
    void done(QWidget* parent, const QString& text, const QString& path) override;
    /// The path that is proposed for "section.pdf": folder of the last picture, or of the model, and its name
    /// in front.
    std::string proposed_path(const std::string& name) const;

  private:
    const edit::Workbench& workbench_;
    Tell tell_;
};

}  // namespace anomalis::window
