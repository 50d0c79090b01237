#include "chart/qt/chart_dialogs.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>

namespace anomalis {

std::optional<QString> ChartDialogs::save_path(QWidget* parent, const QString& title, const QString& filter,
                                               const QString& extension) {
    QString path = QFileDialog::getSaveFileName(parent, title, QString(), filter);
    if (path.isEmpty()) return {};
    if (QFileInfo(path).suffix().isEmpty()) path += "." + extension;
    return path;
}

bool ChartDialogs::ask(QWidget* parent, const QString& question) {
    return QMessageBox::question(parent, "Anomalis", question) == QMessageBox::Yes;
}

void ChartDialogs::message(QWidget* parent, const QString& text) {
    QMessageBox::information(parent, "Anomalis", text);
}

bool ChartDialogs::choose_printer(QWidget* parent, QPrinter& printer) {
    return QPrintDialog(&printer, parent).exec() == QDialog::Accepted;
}

}  // namespace anomalis
