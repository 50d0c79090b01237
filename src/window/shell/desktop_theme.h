#pragma once

#include <QObject>

class QApplication;

namespace anomalis::window {

/// Puts the look on anew when the desktop turns dark or light while the program runs.
class DesktopTheme : public QObject {
    Q_OBJECT

  public:
    explicit DesktopTheme(QApplication& application);
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void look_again();

    QApplication& application_;
    bool asked_ = false;
};

}  // namespace anomalis::window
