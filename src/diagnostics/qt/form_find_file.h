#pragma once

#include <QDialog>

#include "diagnostics/environment_report.h"

class QLineEdit;
class QPlainTextEdit;

namespace anomalis::diagnostics {

/// Shows the file environment report, copies it, and looks a file up in the search path.
class Form_find_file : public QDialog {
    Q_OBJECT

  public:
    /// `prompts` outlives the form.
    Form_find_file(const SystemInfo& system, const EnvironmentFacts& facts, Prompts& prompts,
                   QWidget* parent = nullptr);

  private:
    QWidget* make_search_row();
    QWidget* make_buttons();
    void find_file();

    EnvironmentFacts facts_;
    Prompts& prompts_;
    QPlainTextEdit* report_;
    QLineEdit* file_name_;
};

}  // namespace anomalis::diagnostics
