#include "diagnostics/qt/form_find_file.h"

#include <QApplication>
#include <QClipboard>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace anomalis::diagnostics {

namespace {

constexpr QSize designed_size{860, 560};
constexpr int longest_name = 255;

QPushButton* make_named_button(const char* name, const QString& text, const QString& tip) {
    auto* button = new QPushButton(text);
    button->setObjectName(name);
    button->setToolTip(tip);
    button->setAutoDefault(false);
    return button;
}

}  // namespace

Form_find_file::Form_find_file(const SystemInfo& system, const EnvironmentFacts& facts, Prompts& prompts,
                               QWidget* parent)
    : QDialog(parent),
      facts_(facts),
      prompts_(prompts),
      report_(new QPlainTextEdit),
      file_name_(new QLineEdit) {
    setObjectName("Form_find_file");
    setWindowTitle(QString::fromStdString(environment_caption(system)));
    report_->setObjectName("Text_report");
    report_->setAccessibleName(tr("Report"));
    report_->setToolTip(tr("What the program found of its files and folders; it can be copied and sent"));
    report_->setReadOnly(true);
    report_->setLineWrapMode(QPlainTextEdit::NoWrap);
    report_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    report_->setPlainText(QString::fromStdString(environment_report(system, facts_, prompts_)));
    auto* column = new QVBoxLayout(this);
    column->addWidget(report_, 1);
    column->addWidget(make_search_row());
    column->addWidget(make_buttons());
    resize(designed_size);
}

QWidget* Form_find_file::make_search_row() {
    auto* widget = new QWidget;
    auto* row = new QHBoxLayout(widget);
    row->setContentsMargins(0, 0, 0, 0);
    file_name_->setObjectName("Text_file_name");
    file_name_->setAccessibleName(tr("File name"));
    file_name_->setMaxLength(longest_name);
    file_name_->setToolTip(
        tr("The name of a file to look for in the folders of the search path, up to 255 letters"));
    auto* label = new QLabel(tr("&File name"));
    label->setBuddy(file_name_);
    label->setToolTip(file_name_->toolTip());
    auto* find = make_named_button("Command_find_file_in_path", tr("Find in path"),
                                   tr("List the folders of the search path that hold this file"));
    row->addWidget(label);
    row->addWidget(file_name_, 1);
    row->addWidget(find);
    connect(find, &QPushButton::clicked, this, &Form_find_file::find_file);
    connect(file_name_, &QLineEdit::returnPressed, this, &Form_find_file::find_file);
    return widget;
}

QWidget* Form_find_file::make_buttons() {
    auto* widget = new QWidget;
    auto* row = new QHBoxLayout(widget);
    row->setContentsMargins(0, 0, 0, 0);
    auto* copy =
        make_named_button("Command_copy_text", tr("Copy text"), tr("Put the whole text on the clipboard"));
    auto* leave = make_named_button("Command_Done", tr("Done"), tr("Close this window"));
    row->addWidget(copy);
    row->addStretch();
    row->addWidget(leave);
    connect(copy, &QPushButton::clicked, this,
            [this] { QApplication::clipboard()->setText(report_->toPlainText()); });
    connect(leave, &QPushButton::clicked, this, &QDialog::accept);
    return widget;
}

void Form_find_file::find_file() {
    report_->setPlainText(
        QString::fromStdString(find_file_report(file_name_->text().toStdString(), facts_, prompts_)));
}

}  // namespace anomalis::diagnostics
