#pragma once

#include <functional>

#include <QApplication>
#include <QDialog>
#include <QPushButton>
#include <QTest>
#include <QTimer>

namespace anomalis::window {

/// Presses a button of the window whose modal form `act` then drives, and closes the form when that is left
/// to it.
inline void drive(const std::function<void()>& open, const std::function<void(QDialog&)>& act) {
    bool seen = false;
    QTimer::singleShot(0, qApp, [&] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!dialog) return;
        seen = true;
        act(*dialog);
        if (dialog->isVisible()) dialog->reject();
    });
    open();
    QVERIFY(seen);
}

inline void press(QDialog& dialog, const char* name) {
    auto* button = dialog.findChild<QPushButton*>(name);
    QVERIFY2(button, name);
    button->click();
}

}  // namespace anomalis::window
