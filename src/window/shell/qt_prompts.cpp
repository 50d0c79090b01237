#include "window/shell/qt_prompts.h"

#include <algorithm>

#include <QApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

#include "core/shown_text.h"

namespace anomalis::window {

namespace {

constexpr qint64 turn_pause = 10;  // ms
const QString dialog_title = QStringLiteral("Anomalis");

QString qt_text(const std::string& text) {
    return QString::fromStdString(text);
}

std::optional<std::string> chosen(const QString& path) {
    if (path.isEmpty()) return {};
    return path.toStdString();
}

}  // namespace

QWidget* QtPrompts::parent() const {
    QWidget* dialog = QApplication::activeModalWidget();
    return dialog ? dialog : window_;
}

void QtPrompts::yield() {
    if (since_turn_.isValid() && since_turn_.elapsed() < turn_pause) return;
    QCoreApplication::processEvents(serve_input_ ? QEventLoop::AllEvents
                                                 : QEventLoop::ExcludeUserInputEvents);
    since_turn_.start();
}

QString QtPrompts::dialog_filter(const std::string& filter) {
    const QStringList parts = qt_text(filter).split('|');
    QStringList entries;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        QString name = parts[i];
        // Qt takes the patterns from the brackets at the end.
        if (const auto bracket = name.indexOf('('); bracket >= 0) name.truncate(bracket);
        QString patterns = parts[i + 1];
        patterns.replace(';', ' ').replace("*.*", "*");
        entries << name.trimmed() + " (" + patterns + ")";
    }
    return entries.join(";;");
}

void QtPrompts::show_message(const std::string& text) {
    QMessageBox box(QMessageBox::Information, dialog_title, qt_text(shown_lines(text)), QMessageBox::Ok,
                    parent());
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

bool QtPrompts::show_question(const std::string& text) {
    QMessageBox box(QMessageBox::Question, dialog_title, qt_text(shown_lines(text)),
                    QMessageBox::Yes | QMessageBox::No, parent());
    box.setTextFormat(Qt::PlainText);
    return box.exec() == QMessageBox::Yes;
}

std::size_t QtPrompts::show_choice(const std::string& text, const std::vector<std::string>& answers) {
    QMessageBox box(QMessageBox::Question, dialog_title, qt_text(shown_lines(text)), QMessageBox::NoButton,
                    parent());
    box.setTextFormat(Qt::PlainText);
    std::vector<QAbstractButton*> buttons;
    for (const std::string& answer : answers) {
        QString caption = qt_text(shown_text(answer));
        buttons.push_back(box.addButton(caption.replace('&', "&&"), QMessageBox::ActionRole));
    }
    box.setDefaultButton(qobject_cast<QPushButton*>(buttons.front()));
    box.setEscapeButton(buttons.back());
    box.exec();
    const auto clicked = std::find(buttons.begin(), buttons.end(), box.clickedButton());
    return static_cast<std::size_t>(std::min(clicked, buttons.end() - 1) - buttons.begin());
}

std::optional<std::string> QtPrompts::show_input_box(const std::string& title, const std::string& prompt,
                                                     const std::string& default_text) {
    QInputDialog dialog(parent());
    dialog.setWindowTitle(qt_text(shown_text(title)));
    dialog.setLabelText(qt_text(shown_lines(prompt)));
    dialog.setTextValue(qt_text(default_text));
    for (QLabel* label : dialog.findChildren<QLabel*>()) label->setTextFormat(Qt::PlainText);
    if (dialog.exec() != QDialog::Accepted) return {};
    return dialog.textValue().toStdString();
}

std::optional<std::string> QtPrompts::show_open_dialog(const FileRequest& request) {
    return chosen(QFileDialog::getOpenFileName(parent(), qt_text(request.title),
                                               qt_text(request.default_name), dialog_filter(request.filter)));
}

std::optional<std::string> QtPrompts::show_save_dialog(const FileRequest& request) {
    // Some flows ask about overwriting themselves, in their own words.
    QFileDialog dialog(parent(), qt_text(request.title), qt_text(request.default_name),
                       dialog_filter(request.filter));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setOption(QFileDialog::DontConfirmOverwrite, !request.confirm_overwrite);
    dialog.setDefaultSuffix(qt_text(request.default_extension));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
    return chosen(dialog.selectedFiles().constFirst());
}

}  // namespace anomalis::window
