#include "window/shell/form_load_report.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

#include "intake/load_report.h"
#include "window/shell/look.h"
#include "window/widgets/plain_text.h"

namespace anomalis::window {

namespace {

constexpr int margin = 18, line_gap = 8, column_gap = 18;  // pixels
constexpr QSize designed_size{620, 520};

QLabel* make_text(const QString& words) {
    auto* label = new QLabel(words);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

void make_bold(QLabel& label) {
    QFont font = label.font();
    font.setBold(true);
    label.setFont(font);
}

}  // namespace

FormLoadReport::FormLoadReport(QWidget* parent)
    : QDialog(parent), summary_(make_text({})), scroll_(new QScrollArea) {
    setObjectName("Form_load_report");
    setWindowTitle(tr("Report of the load"));
    resize(designed_size);
    make_bold(*summary_);
    scroll_->setWidgetResizable(true);
    scroll_->setFrameShape(QFrame::NoFrame);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    QPushButton* copy_button = buttons->addButton(tr("Copy"), QDialogButtonBox::ActionRole);
    copy_button->setObjectName("Command_copy_load_report");
    copy_button->setToolTip(tr("All lines as text to the clipboard"));
    buttons->button(QDialogButtonBox::Close)->setToolTip(tr("Back to the window"));
    connect(copy_button, &QPushButton::clicked, this, &FormLoadReport::copy);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* page = new QVBoxLayout(this);
    page->setContentsMargins(margin, margin, margin, margin);
    page->setSpacing(margin);
    page->addWidget(summary_);
    page->addWidget(scroll_, 1);
    page->addWidget(buttons);
}

void FormLoadReport::show_report(const intake::LoadReport& report) {
    summary_->setText(report.stations > 0 ? tr("%n stations", nullptr, static_cast<int>(report.stations))
                                          : tr("Nothing was loaded"));
    auto* holder = new QWidget;
    auto* grid = new QGridLayout(holder);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(column_gap);
    grid->setVerticalSpacing(line_gap);
    text_.clear();
    int row = 0;
    for (const intake::ReportItem& item : intake::report_items(report)) {
        const QString label = QString::fromStdString(item.label);
        const QString words = shown(item.text);
        text_ += label + "\t" + words + "\n";
        auto* name = new QLabel(label);
        QLabel* value = make_text(words);
        if (item.severity == Severity::remark) {
            make_quiet(*name);
        } else {
            make_bold(*name);
        }
        value->setProperty("doubt", item.severity != Severity::remark);
        grid->addWidget(name, row, 0, Qt::AlignTop);
        grid->addWidget(value, row++, 1, Qt::AlignTop);
    }
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(row, 1);
    scroll_->setWidget(holder);
    show();
    raise();
}

void FormLoadReport::copy() const {
    QApplication::clipboard()->setText(text_);
}

}  // namespace anomalis::window
