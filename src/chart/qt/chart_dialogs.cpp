#include "chart/qt/chart_dialogs.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>

namespace anomalis::chart {

namespace {

/// Names of files are no markup.
int show_plain(QWidget* parent, QMessageBox::Icon icon, const QString& text,
               QMessageBox::StandardButtons buttons) {
    QMessageBox box(icon, "Anomalis", text, buttons, parent);
    box.setTextFormat(Qt::PlainText);
    return box.exec();
}

}  // namespace

QString ChartDialogs::ask_path(QWidget* parent, const SaveQuestion& question) {
    return QFileDialog::getSaveFileName(parent, question.title, question.proposal, question.filter);
}

std::optional<QString> ChartDialogs::save_path(QWidget* parent, const SaveQuestion& question) {
    const QString path = ask_path(parent, question);
    if (path.isEmpty()) return {};
    const QString whole = with_extension(path, question.extension);
    // The dialog asked about the name as it was typed.
    if (whole != path && QFileInfo::exists(whole) &&
        !ask(parent, QFileInfo(whole).fileName() + " already exists. Replace it?"))
        return {};
    return whole;
}

QString ChartDialogs::with_extension(const QString& path, const QString& extension) {
    const QString ending = "." + extension;
    return path.endsWith(ending, Qt::CaseInsensitive) ? path : path + ending;
}

bool ChartDialogs::ask(QWidget* parent, const QString& question) {
    return show_plain(parent, QMessageBox::Question, question, QMessageBox::Yes | QMessageBox::No) ==
           QMessageBox::Yes;
}

void ChartDialogs::message(QWidget* parent, const QString& text) {
    show_plain(parent, QMessageBox::Information, text, QMessageBox::Ok);
}

void ChartDialogs::done(QWidget* parent, const QString& text, const QString&) {
    message(parent, text);
}

bool ChartDialogs::choose_printer(QWidget* parent, QPrinter& printer) {
    return QPrintDialog(&printer, parent).exec() == QDialog::Accepted;
}

}  // namespace anomalis::chart
