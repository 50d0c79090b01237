#pragma once

#include <QDialog>

namespace anomalis::window {

/// Help, Keyboard shortcuts: every key in groups.
class Form_keyboard_shortcuts : public QDialog {
    Q_OBJECT

  public:
    explicit Form_keyboard_shortcuts(QWidget* parent = nullptr);
};

}  // namespace anomalis::window
