#include "window/survey/survey_filters.h"

#include <array>
#include <optional>

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

#include "core/numbers.h"
#include "window/shell/look.h"
#include "window/survey/survey_words.h"
#include "window/widgets/panel.h"

namespace anomalis::window {

namespace {

constexpr int gap = 6;  // pixels
constexpr int number_width = 48;

QString trimmed_words(const QLineEdit& box) {
    return box.text().trimmed();
}

bool is_right(const QLineEdit& box) {
    double value = 0;
    return trimmed_words(box).isEmpty() || parse_number(trimmed_words(box).toStdString(), value);
}

/// A text that is no number asks for nothing, and is marked.
std::optional<double> number_in(const QLineEdit& box) {
    double value = 0;
    if (trimmed_words(box).isEmpty() || !parse_number(trimmed_words(box).toStdString(), value)) return {};
    return value;
}

void show_right(QLineEdit& box) {
    const bool refused = !is_right(box);
    if (box.property("refused").toBool() == refused) return;
    box.setProperty("refused", refused);
    box.style()->unpolish(&box);
    box.style()->polish(&box);
}

template <class Value>
QComboBox* choice_of(const char* name, const QString& caption, const QString& tip, const QString& all,
                     const std::array<Value, 4>& values, QString (*words)(Value)) {
    auto* list = new QComboBox;
    name_control(*list, name, caption, tip);
    list->addItem(all);
    for (const Value value : values) list->addItem(words(value), static_cast<int>(value));
    return list;
}

template <class Value>
std::optional<Value> chosen_in(const QComboBox& list) {
    if (list.currentIndex() <= 0) return {};
    return static_cast<Value>(list.currentData().toInt());
}

QLabel* quiet_label(const QString& text) {
    auto* label = new QLabel(text);
    make_quiet(*label);
    return label;
}

}  // namespace

SurveyFilters::SurveyFilters(QWidget* parent) : QWidget(parent) {
    using enum survey::RowStatus;
    using survey::LineFlag;
    setObjectName("Frame_survey_filters");
    text_ = new QLineEdit;
    name_control(*text_, "Text_survey_filter", tr("Find"),
                 tr("Lines that have this in their name, their message or their note"));
    text_->setClearButtonEnabled(true);
    text_->setPlaceholderText(tr("Name, message or note"));
    status_ = choice_of("Combo_survey_status", tr("Status"), tr("Lines of this status alone"),
                        tr("Any status"), std::array{done, failed, waiting, damaged}, &status_words);
    flag_ = choice_of("Combo_survey_flag", tr("Flag"), tr("Lines with this flag alone"), tr("Any flag"),
                      std::array{LineFlag::none, LineFlag::accept, LineFlag::look_again, LineFlag::reject},
                      &flag_words);
    rms_ = number_box("Text_survey_rms", tr("rms above"), tr("Lines whose rms is above this, nT or mGal"));
    from_ = number_box(
        "Text_survey_depth_from", tr("Depth from"),
        tr("Lines whose shallowest body lies at this depth or deeper, m below the ground, or the sensor"));
    to_ = number_box(
        "Text_survey_depth_to", tr("to"),
        tr("Lines whose shallowest body lies at this depth or higher, m below the ground, or the sensor"));
    interval_ = number_box("Text_survey_interval", tr("Interval above"),
                           tr("Lines where the 90 % interval of that depth is wider than this, m"));
    clear_ = make_button({"Command_survey_clear", "Show all", "", "Empty all of these boxes"});
    unit_ = quiet_label("nT");
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(gap);
    auto* first = new QHBoxLayout;
    auto* second = new QHBoxLayout;
    for (QHBoxLayout* row : {first, second}) {
        row->setSpacing(gap);
        column->addLayout(row);
    }
    first->addWidget(make_caption(tr("Find"), text_));
    first->addWidget(text_, 1);
    first->addWidget(status_);
    first->addWidget(flag_);
    second->addWidget(make_caption(tr("rms above"), rms_));
    second->addWidget(rms_);
    second->addWidget(unit_);
    second->addSpacing(gap);
    second->addWidget(make_caption(tr("Depth from"), from_));
    second->addWidget(from_);
    second->addWidget(make_caption(tr("to"), to_));
    second->addWidget(to_);
    second->addWidget(quiet_label("m"));
    second->addSpacing(gap);
    second->addWidget(make_caption(tr("Interval above"), interval_));
    second->addWidget(interval_);
    second->addWidget(quiet_label("m"));
    second->addStretch();
    second->addWidget(clear_);
    wire();
}

QLineEdit* SurveyFilters::number_box(const char* name, const QString& caption, const QString& tip) {
    auto* box = new QLineEdit;
    name_control(*box, name, caption, tip);
    box->setFixedWidth(number_width);
    box->setAlignment(Qt::AlignRight);
    return box;
}

void SurveyFilters::wire() {
    for (QLineEdit* box : {text_, rms_, from_, to_, interval_})
        connect(box, &QLineEdit::textChanged, this, &SurveyFilters::tell);
    for (QComboBox* list : {status_, flag_})
        connect(list, &QComboBox::currentIndexChanged, this, &SurveyFilters::tell);
    connect(clear_, &QPushButton::clicked, this, &SurveyFilters::clear);
    clear_->setEnabled(false);
}

void SurveyFilters::tell() {
    for (QLineEdit* box : {rms_, from_, to_, interval_}) show_right(*box);
    if (filling_) return;
    bool empty = status_->currentIndex() == 0 && flag_->currentIndex() == 0;
    for (const QLineEdit* box : {text_, rms_, from_, to_, interval_}) empty = empty && box->text().isEmpty();
    clear_->setEnabled(!empty);
    emit changed();
}

survey::RowFilter SurveyFilters::filter() const {
    return {.text = trimmed_words(*text_).toStdString(),
            .status = chosen_in<survey::RowStatus>(*status_),
            .flag = chosen_in<survey::LineFlag>(*flag_),
            .rms_above = number_in(*rms_),
            .depth_from = number_in(*from_),
            .depth_to = number_in(*to_),
            .interval_above = number_in(*interval_)};
}

void SurveyFilters::clear() {
    filling_ = true;
    for (QLineEdit* box : {text_, rms_, from_, to_, interval_}) box->clear();
    for (QComboBox* list : {status_, flag_}) list->setCurrentIndex(0);
    filling_ = false;
    tell();
}

void SurveyFilters::show_unit(const QString& unit) {
    unit_->setText(unit);
}

}  // namespace anomalis::window
