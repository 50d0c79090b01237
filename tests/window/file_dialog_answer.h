#pragma once

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

namespace anomalis::window {

/// Types a name into the file dialog that comes next, and agrees to whatever is asked of it.
class FileDialogAnswer {
  public:
    explicit FileDialogAnswer(const QString& path) {
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [path] {
            QWidget* shown = QApplication::activeModalWidget();
            if (auto* question = qobject_cast<QMessageBox*>(shown)) {
                question->button(QMessageBox::Yes)->click();
            } else if (auto* dialog = qobject_cast<QFileDialog*>(shown)) {
                // Typed, for a name that is selected is not taken while its box has the keys.
                dialog->findChild<QLineEdit*>("fileNameEdit")->setText(path);
                // Not within the timer, which would not tick for a question that accepting asks.
                QMetaObject::invokeMethod(dialog, "accept", Qt::QueuedConnection);
            }
        });
        timer_.start(20);
    }

  private:
    QTimer timer_;
};

}  // namespace anomalis::window
