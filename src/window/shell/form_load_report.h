#pragma once

#include <QDialog>

class QGridLayout;
class QLabel;
class QScrollArea;

namespace anomalis::intake {
struct LoadReport;
}  // namespace anomalis::intake

namespace anomalis::window {

/// All that a load has to tell, line by line, beside the window: work goes on meanwhile.
class FormLoadReport : public QDialog {
    Q_OBJECT

  public:
    explicit FormLoadReport(QWidget* parent = nullptr);

    /// Shows a report, in place of the one before.
    void show_report(const intake::LoadReport& report);

  private:
    void copy() const;

    QLabel* summary_;
    QScrollArea* scroll_;
    QString text_;  ///< for the clipboard
};

}  // namespace anomalis::window
