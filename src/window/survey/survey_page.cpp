#include "window/survey/survey_page.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSplitter>
#include <QVBoxLayout>

#include "chart/qt/grapher_widget.h"
#include "survey/desk/survey_desk.h"
#include "survey/joined/joined_bodies.h"
#include "window/shell/look.h"
#include "window/survey/line_card.h"
#include "window/survey/results_map_view.h"
#include "window/survey/survey_filters.h"
#include "window/survey/survey_list.h"
#include "window/survey/survey_words.h"
#include "window/widgets/panel.h"
#include "window/widgets/plain_text.h"

namespace anomalis::window {

namespace {

constexpr int margin = 8, gap = 6;  // pixels
constexpr int progress_width = 110;
constexpr int list_width = 610, map_width = 640;
constexpr double heading_size = 1.2;

std::optional<survey::LineFlag> flag_of_key(int key) {
    switch (key) {
        case Qt::Key_A:
            return survey::LineFlag::accept;
        case Qt::Key_L:
            return survey::LineFlag::look_again;
        case Qt::Key_R:
            return survey::LineFlag::reject;
        case Qt::Key_N:
            return survey::LineFlag::none;
        default:
            return {};
    }
}

/// In the results, as the map numbers them.
std::optional<std::size_t> chosen_result(const survey::SurveyDesk& desk) {
    const survey::LineResult* result = desk.watch().result(desk.chosen());
    if (!result) return {};
    return static_cast<std::size_t>(result - desk.results().lines.data());
}

std::vector<survey::LineFlag> flags_of(const survey::SurveyDesk& desk) {
    std::vector<survey::LineFlag> flags;
    for (const survey::LineResult& line : desk.results().lines) flags.push_back(desk.mark(line.line).flag);
    return flags;
}

}  // namespace

SurveyPage::SurveyPage(survey::SurveyDesk& desk, SusceptibilityUnit unit, QWidget* parent)
    : QWidget(parent), desk_(desk) {
    setObjectName("Form_survey");
    auto* left = new QWidget;
    auto* column = new QVBoxLayout(left);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(gap);
    column->addLayout(make_head());
    trouble_ = new QLabel;
    trouble_->setObjectName("Label_survey_trouble");
    trouble_->setTextFormat(Qt::PlainText);
    trouble_->setWordWrap(true);
    trouble_->setAutoFillBackground(true);
    trouble_->setMargin(gap);
    trouble_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    trouble_->hide();
    column->addWidget(trouble_);
    filters_ = new SurveyFilters;
    column->addWidget(filters_);
    list_ = new SurveyList(desk);
    column->addWidget(list_, 1);
    map_ = new ResultsMapView;
    card_ = new LineCard(desk, unit);
    auto* right = new QWidget;
    auto* beside = new QVBoxLayout(right);
    beside->setContentsMargins(0, 0, 0, 0);
    beside->setSpacing(gap);
    beside->addWidget(map_, 1);
    beside->addWidget(card_);
    auto* middle = new QSplitter(Qt::Horizontal);
    middle->addWidget(left);
    middle->addWidget(right);
    middle->setChildrenCollapsible(false);
    middle->setHandleWidth(gap);
    middle->setStretchFactor(0, 0);
    middle->setStretchFactor(1, 1);
    middle->setSizes({list_width, map_width});
    auto* page = new QVBoxLayout(this);
    page->setContentsMargins(margin, margin, margin, margin);
    page->addWidget(middle);
    wire();
}

QLayout* SurveyPage::make_head() {
    title_ = new QLabel;
    title_->setObjectName("Label_survey_title");
    title_->setTextFormat(Qt::PlainText);
    title_->setProperty("heading", true);
    title_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    QFont font = title_->font();
    font.setPointSizeF(font.pointSizeF() * heading_size);
    title_->setFont(font);
    counts_ = new QLabel;
    counts_->setObjectName("Label_survey_counts");
    counts_->setTextFormat(Qt::PlainText);
    counts_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    make_quiet(*counts_);
    bar_ = new QProgressBar;
    name_control(*bar_, "Progress_survey", tr("Progress"), tr("How many of the results were read"));
    bar_->setTextVisible(false);
    bar_->setFixedWidth(progress_width);
    bar_->hide();
    folder_ =
        make_button({"Command_survey_folder", "Other folder...", "", "Open the results of another survey"});
    close_ = make_button(
        {"Command_survey_close", "Close", "", "Close this page; flags and notes are kept already"});
    auto* row = new QHBoxLayout;
    row->setSpacing(gap);
    auto* words = new QVBoxLayout;
    words->setSpacing(1);
    words->addWidget(title_);
    words->addWidget(counts_);
    row->addLayout(words, 1);
    for (QWidget* widget :
         {static_cast<QWidget*>(bar_), static_cast<QWidget*>(folder_), static_cast<QWidget*>(close_)})
        row->addWidget(widget);
    return row;
}

void SurveyPage::wire() {
    connect(filters_, &SurveyFilters::changed, this, [this] {
        settle();
        desk_.filter(filters_->filter());
        show_rows();
    });
    connect(list_, &SurveyList::sort_wanted, this, &SurveyPage::sort);
    connect(list_, &SurveyList::line_chosen, this, &SurveyPage::line_chosen);
    connect(list_, &SurveyList::line_wanted, this, &SurveyPage::open_wanted);
    connect(map_, &ResultsMapView::line_chosen, this, [this](std::size_t line) {
        emit line_chosen(QString::fromStdString(desk_.results().lines.at(line).line));
    });
    connect(map_, &ResultsMapView::line_wanted, this, &SurveyPage::open_wanted);
    connect(card_, &LineCard::step_wanted, this, &SurveyPage::step_wanted);
    connect(card_, &LineCard::open_wanted, this, &SurveyPage::open_wanted);
    connect(card_, &LineCard::flag_wanted, this, &SurveyPage::flag_wanted);
    connect(card_, &LineCard::note_given, this, &SurveyPage::note_given);
    connect(card_, &LineCard::undo_wanted, this, &SurveyPage::undo_wanted);
    connect(card_, &LineCard::redo_wanted, this, &SurveyPage::redo_wanted);
    connect(folder_, &QPushButton::clicked, this, &SurveyPage::folder_wanted);
    connect(close_, &QPushButton::clicked, this, &SurveyPage::close_wanted);
}

void SurveyPage::sort(int column, Qt::SortOrder order) {
    if (column < 0)
        desk_.sort_as_planned();
    else
        desk_.sort(static_cast<survey::DeskColumn>(column), order == Qt::AscendingOrder);
    show_rows();
}

void SurveyPage::settle() {
    card_->settle();
}

void SurveyPage::show_survey() {
    refused_.clear();
    on_map_ = 0;
    strikes_.clear();
    all_read_ = false;
    map_->show_results(nullptr, {}, false);  // it stands on results that are gone
    map_->choose({});
    show_rows();
}

void SurveyPage::show_rows() {
    show_head();
    list_->show_rows();
    list_->show_chosen(false);
    show_map();
    card_->show_line();
    show_trouble();
}

/// The results are drawn where they changed, and where a flag did.
void SurveyPage::show_map() {
    const std::vector<survey::LineFlag> flags = flags_of(desk_);
    const bool changed = on_map_ != desk_.watch().change();
    if (changed && desk_.watch().lines_to_read() == 0)
        strikes_ = survey::strike_traces(survey::join_bodies(desk_.results()));
    if (changed || flags != flags_)
        map_->show_results(&desk_.results(), {.strikes = strikes_, .flags = flags}, all_read_);
    flags_ = flags;
    on_map_ = desk_.watch().change();
    all_read_ = desk_.watch().lines_to_read() == 0;
    map_->choose(chosen_result(desk_));
}

void SurveyPage::show_chosen() {
    list_->show_chosen(true);
    map_->choose(chosen_result(desk_));
    card_->show_line();
}

void SurveyPage::show_head() {
    const auto& identity = desk_.results().identity;
    title_->setText(shown(identity.name));
    title_->setToolTip(
        plain_tip(tr("Results of %1 in %2").arg(shown(identity.source), shown(desk_.folder()))));
    QStringList counts;
    counts << (desk_.rows().size() == desk_.watch().lines().size()
                   ? tr("%n lines", nullptr, static_cast<int>(desk_.rows().size()))
                   : tr("%1 of %n lines", nullptr, static_cast<int>(desk_.watch().lines().size()))
                         .arg(desk_.rows().size()));
    for (const auto status : {survey::RowStatus::done, survey::RowStatus::failed, survey::RowStatus::waiting,
                              survey::RowStatus::damaged})
        if (const std::size_t count = desk_.watch().count(status))
            counts << QString("%1 %2").arg(count).arg(status_words(status));
    for (const auto flag : {survey::LineFlag::accept, survey::LineFlag::look_again, survey::LineFlag::reject})
        if (const std::size_t count = desk_.count(flag))
            counts << QString("%1 × %2").arg(count).arg(flag_words(flag));
    counts_->setText(counts.join(", "));
    counts_->setToolTip(counts_->text());
    const bool gravity = !desk_.results().lines.empty() && desk_.results().lines.front().channel == "grav";
    filters_->show_unit(gravity ? "mGal" : "nT");
}

void SurveyPage::show_progress() {
    const auto lines = static_cast<int>(desk_.watch().lines().size());
    const auto left = static_cast<int>(desk_.watch().lines_to_read());
    bar_->setVisible(left > 0);
    bar_->setRange(0, lines);
    bar_->setValue(lines - left);
}

void SurveyPage::show_refused(const QString& why) {
    refused_ = why;
    show_trouble();
}

void SurveyPage::show_trouble() {
    QStringList lines;
    if (!refused_.isEmpty()) lines << refused_;
    if (const std::string trouble = desk_.trouble(); !trouble.empty())
        for (const QString& line : QString::fromStdString(trouble).split('\n'))
            lines << shown(line.toStdString());
    QPalette colours = palette();
    colours.setColor(QPalette::Window, column_tint(colours, 1));
    trouble_->setPalette(colours);
    trouble_->setText(lines.join('\n'));
    trouble_->setVisible(!lines.isEmpty());
}

void SurveyPage::take_focus() {
    list_->setFocus();
}

/// On this page undo is of the flags: the model that it would change elsewhere is not on show.
bool SurveyPage::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        auto& key = static_cast<QKeyEvent&>(*event);
        if (key.matches(QKeySequence::Undo) || key.matches(QKeySequence::Redo)) {
            key.accept();
            return true;
        }
    }
    return QWidget::event(event);
}

/// What a box has not taken for itself.
void SurveyPage::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Undo)) return emit undo_wanted();
    if (event->matches(QKeySequence::Redo)) return emit redo_wanted();
    const auto flag = flag_of_key(event->key());
    if (flag && event->modifiers() == Qt::NoModifier && !desk_.chosen().empty())
        return emit flag_wanted(*flag);
    QWidget::keyPressEvent(event);
}

}  // namespace anomalis::window
