#include "window/shell/desktop_theme.h"

#include <QApplication>
#include <QEvent>
#include <QTimer>

#include "window/shell/look.h"

namespace anomalis::window {

DesktopTheme::DesktopTheme(QApplication& application) : application_(application) {
    application.installEventFilter(this);
}

/// Every window hears of it; one look is enough.
bool DesktopTheme::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ThemeChange && !asked_) {
        asked_ = true;
        QTimer::singleShot(0, this, &DesktopTheme::look_again);
    }
    return QObject::eventFilter(watched, event);
}

/// The palette of the desktop shows where the application has none of its own.
void DesktopTheme::look_again() {
    asked_ = false;
    const bool before = is_dark(QApplication::palette());
    QApplication::setPalette(QPalette());
    const bool now = is_dark(QApplication::palette());
    QApplication::setPalette(look_palette(now));
    if (now != before) apply_look(application_);
}

}  // namespace anomalis::window
