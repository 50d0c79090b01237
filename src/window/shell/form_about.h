#pragma once

#include <QDialog>

namespace anomalis::window {

/// Which version this is, and, on a page of its own, what it takes from others and under which terms.
class FormAbout : public QDialog {
    Q_OBJECT

  public:
    /// `words` tell of the program.
    explicit FormAbout(const QString& words, QWidget* parent = nullptr);
};

/// NOTICES.md as it was shipped.
QString notices();

}  // namespace anomalis::window
