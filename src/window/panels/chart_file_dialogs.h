#pragma once

#include "chart/qt/chart_dialogs.h"

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

namespace anomalis::window {

/// The dialogs of the charts. A picture is not saved over a file that is open.
class ChartFileDialogs : public chart::ChartDialogs {
  public:
    explicit ChartFileDialogs(const edit::Workbench& workbench) : workbench_(workbench) {}
    std::optional<QString> save_path(QWidget* parent, const QString& title, const QString& filter,
                                     const QString& extension) override;

  private:
    const edit::Workbench& workbench_;
};

}  // namespace anomalis::window
