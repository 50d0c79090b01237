#include "window/import/form_import.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSplitter>
#include <QVBoxLayout>

#include "flow/import_desk.h"
#include "flow/import_words.h"
#include "window/import/import_card.h"
#include "window/import/import_preview.h"
#include "window/import/line_list.h"
#include "window/import/survey_map_view.h"
#include "window/shell/look.h"
#include "window/widgets/chief_button.h"
#include "window/widgets/panel.h"
#include "window/widgets/plain_text.h"

namespace anomalis::window {

namespace {

constexpr int margin = 12, gap = 8;  // pixels
constexpr QSize designed_size{1220, 740};
constexpr int poll_pause = 40;  // ms
constexpr int report_lines = 3;
constexpr int progress_width = 120;

}  // namespace

Form_import::Form_import(flow::ImportDesk& desk, QWidget* parent) : QDialog(parent), desk_(desk) {
    setObjectName("Form_import");
    setWindowTitle(tr("Import survey"));
    setWindowModality(Qt::WindowModal);
    auto* page = new QVBoxLayout(this);
    page->setContentsMargins(margin, margin, margin, margin);
    page->setSpacing(gap);
    card_ = new ImportCard(desk_);
    page->addWidget(card_);
    page->addWidget(make_questions());
    lines_ = new LineList;
    map_ = new SurveyMapView;
    auto* left = new QSplitter(Qt::Vertical);
    preview_ = new ImportPreview(desk_);
    left->addWidget(preview_);
    left->addWidget(lines_);
    left->setStretchFactor(0, 1);
    left->setStretchFactor(1, 1);
    auto* middle = new QSplitter(Qt::Horizontal);
    middle->addWidget(left);
    middle->addWidget(map_);
    for (QSplitter* splitter : {left, middle}) {
        splitter->setChildrenCollapsible(false);
        splitter->setHandleWidth(gap);
    }
    middle->setStretchFactor(0, 1);
    middle->setStretchFactor(1, 1);
    page->addWidget(middle, 1);
    page->addWidget(make_report());
    page->addWidget(make_bottom());
    poll_.setInterval(poll_pause);
    connect(&poll_, &QTimer::timeout, this, [this] { desk_.poll(); });
    wire();
    resize(designed_size);
    middle->setSizes({560, 640});
}

/// A box that loses the focus as the page goes would hand its text to what is gone already.
Form_import::~Form_import() {
    hide();
}

/// A strip that stands out: which of several columns is meant.
QWidget* Form_import::make_questions() {
    questions_ = new QFrame;
    questions_->setObjectName("Frame_import_questions");
    questions_->setAutoFillBackground(true);
    QPalette palette = questions_->palette();
    palette.setColor(QPalette::Window, column_tint(palette, 1));
    questions_->setPalette(palette);
    question_row_ = new QHBoxLayout(questions_);
    question_row_->setContentsMargins(margin, 5, margin, 5);
    question_row_->setSpacing(gap);
    questions_->hide();
    return questions_;
}

QWidget* Form_import::make_report() {
    report_ = new QLabel;
    report_->setObjectName("Label_import_report");
    report_->setTextFormat(Qt::PlainText);
    report_->setWordWrap(true);
    report_->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    report_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    report_->setFixedHeight(report_lines * report_->fontMetrics().lineSpacing() + 2);
    report_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    return report_;
}

QWidget* Form_import::make_bottom() {
    all_ =
        make_check({"Check_import_all", "All lines", "",
                    "Leave a table and a workspace of every line in the folder; the chosen one is opened"});
    bodies_ = make_check({"Check_import_bodies", "Bodies go to the next line", "",
                          "Ctrl+PgDown and Ctrl+PgUp take the bodies along their strikes to the next and "
                          "the previous line of the survey; without the mark those begin without bodies"});
    into_ =
        make_check({"Check_import_into", "Into the open model", "",
                    "The line replaces the data of the model that is open: its bodies, processing and file "
                    "stay. Without the mark a new untitled model begins"});
    folder_ = new QLineEdit;
    name_control(*folder_, "Text_import_folder", tr("Left in"),
                 tr("The folder that gets the table NAME_LINE.csv, which any program can read"));
    folder_->setReadOnly(true);
    folder_->setFocusPolicy(Qt::NoFocus);
    folder_button_ = make_button(
        {"Command_import_folder", "Choose...", "", "Choose another folder for the table of the line"});
    bar_ = new QProgressBar;
    name_control(*bar_, "Progress_import", tr("Progress"), tr("How much of the file was read"));
    bar_->setTextVisible(false);
    bar_->setRange(0, 1000);
    bar_->setFixedWidth(progress_width);
    stop_ = make_button({"Command_import_stop", "Stop", "", "Stop reading the file"});
    import_ = make_button({"Command_import", "Import", "",
                           "Open the chosen line as a new workspace; Ctrl+Z brings the one before back"});
    close_ = make_button({"Command_import_close", "Close", "", "Close this page; what it shows is kept"});
    set_chief(*import_, true);
    // Enter in a box takes its text over and no more.
    for (QPushButton* button : {folder_button_, stop_, import_, close_}) button->setAutoDefault(false);
    for (QWidget* widget : {static_cast<QWidget*>(bar_), static_cast<QWidget*>(stop_)}) {
        QSizePolicy kept = widget->sizePolicy();
        kept.setRetainSizeWhenHidden(true);
        widget->setSizePolicy(kept);
        widget->hide();
    }
    auto* holder = new QWidget;
    auto* row = new QHBoxLayout(holder);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(gap);
    row->addWidget(all_);
    row->addSpacing(gap);
    row->addWidget(into_);
    row->addSpacing(gap);
    row->addWidget(bodies_);
    row->addSpacing(gap);
    row->addWidget(make_caption(tr("Left in"), folder_));
    row->addWidget(folder_, 1);
    row->addWidget(folder_button_);
    row->addWidget(bar_);
    for (QPushButton* button : {stop_, import_, close_}) row->addWidget(button);
    return holder;
}

void Form_import::wire() {
    connect(card_, &ImportCard::file_wanted, this, &Form_import::file_wanted);
    connect(card_, &ImportCard::refused, this, &Form_import::show_refused);
    connect(preview_, &ImportPreview::refused, this, &Form_import::show_refused);
    connect(folder_button_, &QPushButton::clicked, this, &Form_import::folder_wanted);
    connect(import_, &QPushButton::clicked, this, &Form_import::accept);
    connect(close_, &QPushButton::clicked, this, &Form_import::reject);
    connect(stop_, &QPushButton::clicked, this, [this] { desk_.stop_reading(); });
    connect(all_, &QCheckBox::clicked, this, [this](bool on) { desk_.choose_all_lines(on); });
    connect(bodies_, &QCheckBox::clicked, this, [this](bool on) { desk_.choose_keep_bodies(on); });
    connect(into_, &QCheckBox::clicked, this, [this](bool on) { desk_.choose_into_open_model(on); });
    connect(lines_, &LineList::line_chosen, this,
            [this](std::size_t line, std::optional<std::size_t> piece) { desk_.choose_line(line, piece); });
    connect(lines_, &LineList::line_wanted, this, &Form_import::accept);
    connect(map_, &SurveyMapView::line_chosen, this, [this](std::size_t line) { desk_.choose_line(line); });
}

void Form_import::show_layout() {
    refused_.clear();
    card_->show_layout();
    preview_->show_layout();
    fill_questions();
}

void Form_import::fill_questions() {
    while (QLayoutItem* item = question_row_->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    const intake::SurveyLayout* layout = desk_.layout();
    questions_->setVisible(layout && !desk_.questions().empty());
    if (!layout) return;
    for (const intake::RoleQuestion& question : desk_.questions()) {
        const QString role = QString::fromUtf8(role_title(question.role).data());
        auto* list = new QComboBox;
        name_control(*list, "Combo_import_question", role, tr("Which of these columns is meant"));
        for (const std::size_t column : question.columns) {
            list->addItem(shown(layout->columns[column].name), QVariant::fromValue<qulonglong>(column));
            if (layout->columns[column].role == question.role) list->setCurrentIndex(list->count() - 1);
        }
        connect(list, &QComboBox::activated, this, [this, list, wanted = question.role](int at) {
            const auto column = static_cast<std::size_t>(list->itemData(at).toULongLong());
            QTimer::singleShot(0, this, [this, column, wanted] { desk_.choose_role(column, wanted); });
        });
        question_row_->addWidget(
            new QLabel(tr("%1: %2 columns could be meant. Take").arg(role).arg(question.columns.size())));
        question_row_->addWidget(list);
        question_row_->addSpacing(2 * gap);
    }
    question_row_->addStretch();
}

void Form_import::show_lines() {
    lines_->show_lines(desk_.index());
    map_->show_survey(desk_.index());
    const bool reading = desk_.reading();
    bar_->setVisible(reading);
    stop_->setVisible(reading);
    if (reading)
        poll_.start();
    else
        poll_.stop();
    show_choice();
}

void Form_import::show_choice() {
    lines_->show_chosen(desk_.line(), desk_.piece());
    map_->choose(desk_.line(), desk_.piece());
    card_->show_choice();
    all_->setChecked(desk_.all_lines());
    bodies_->setChecked(desk_.keep_bodies());
    into_->setChecked(desk_.into_open_model());
    folder_->setText(shown(desk_.folder()));
    show_report();
}

void Form_import::take_focus() {
    if (!card_->take_focus()) lines_->setFocus();
}

void Form_import::show_progress() {
    bar_->setValue(static_cast<int>(desk_.part_read() * bar_->maximum()));
}

void Form_import::show_report() {
    const QString refusal = shown(desk_.refusal());
    QStringList lines;
    if (!refused_.isEmpty()) lines << refused_;
    if (!refusal.isEmpty()) lines << refusal;
    if (const intake::SurveyIndex* index = desk_.index())
        for (const intake::ReportItem& item : flow::reading_items(*index))
            lines << shown(item.label + ": " + item.text);
    if (desk_.imported())
        for (const Faults::Entry& note : desk_.imported()->notes.entries())
            lines << shown(counted_text(note));
    report_->setText(lines.join('\n'));
    report_->setToolTip(plain_tip(lines.join('\n')));
    import_->setEnabled(refusal.isEmpty());
    import_->setText(desk_.all_lines() ? tr("Import all") : tr("Import"));
}

void Form_import::show_refused(const QString& why) {
    refused_ = why;
    show_report();
}

void Form_import::accept() {
    if (import_->isEnabled()) emit import_wanted();
}

void Form_import::reject() {
    desk_.stop_reading();
    QDialog::reject();
}

}  // namespace anomalis::window
