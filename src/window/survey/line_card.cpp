#include "window/survey/line_card.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include "core/susceptibility.h"
#include "survey/desk/survey_desk.h"
#include "window/shell/look.h"
#include "window/survey/survey_words.h"
#include "window/widgets/chief_button.h"
#include "window/widgets/model_card.h"
#include "window/widgets/panel.h"
#include "window/widgets/plain_text.h"

namespace anomalis::window {

namespace {

constexpr int gap = 6, margin = 8;  // pixels
constexpr QSize picture_size{176, 92};
constexpr int row_height = 21;
constexpr double metres_a_kilometre = 1000;

enum BodyColumn { of_name, of_depth, of_dip, of_width, of_property, body_columns };

survey::IntervalValue scaled(survey::IntervalValue value, double by) {
    return {value.value * by, value.lower * by, value.upper * by};
}

QTableWidgetItem* cell(const QString& text, bool number = true) {
    auto* item = new QTableWidgetItem(text);
    item->setTextAlignment(Qt::AlignVCenter | (number ? Qt::AlignRight : Qt::AlignLeft));
    return item;
}

/// What a person would ask of a line, in one breath.
QStringList facts_of(const survey::LineResult& result) {
    QStringList facts;
    if (!result.source.empty()) facts << shown(result.source);
    if (result.stations > 0) facts << LineCard::tr("%n stations", nullptr, result.stations);
    if (!std::isnan(result.length_m))
        facts << LineCard::tr("%1 km").arg(result.length_m / metres_a_kilometre, 0, 'f', 2);
    if (!std::isnan(result.rms_nT))
        facts << LineCard::tr("rms %1, noise %2")
                     .arg(number_words(result.rms_nT, "nT"), number_words(result.noise_nT, "nT"));
    if (!std::isnan(result.rms_mGal))
        facts << LineCard::tr("rms %1, noise %2")
                     .arg(number_words(result.rms_mGal, "mGal"), number_words(result.noise_mGal, "mGal"));
    if (result.regional_degree >= 0)
        facts << LineCard::tr("regional of degree %1").arg(result.regional_degree);
    return facts;
}

/// As much of a text as two lines of a label hold; words that do not fit a line leave some of it free.
QString two_lines(const QString& text, const QLabel& label) {
    constexpr double filled = 1.85;
    return label.fontMetrics().elidedText(text, Qt::ElideRight, static_cast<int>(filled * label.width()));
}

}  // namespace

SectionPicture::SectionPicture(QWidget* parent) : QWidget(parent) {
    setObjectName("Picture_survey_section");
    setFixedSize(picture_size);
    setToolTip(tr("The section under the line at a glance: ground and bodies, as wide as the line"));
}

double SectionPicture::aspect() const {
    return static_cast<double>(height()) / width();
}

void SectionPicture::show_section(std::optional<show::SectionThumbnail> section) {
    section_ = std::move(section);
    update();
}

void SectionPicture::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF room = QRectF(rect()).adjusted(0, 0, -1, -1);
    if (section_) return paint_section(painter, room, *section_, palette());
    painter.setPen(palette().color(QPalette::Midlight));
    painter.drawRect(room);
    painter.setPen(quiet_text(palette()));
    painter.drawText(room, Qt::AlignCenter, tr("no section"));
}

LineCard::LineCard(const survey::SurveyDesk& desk, SusceptibilityUnit unit, QWidget* parent)
    : QFrame(parent), desk_(desk), unit_(unit) {
    setObjectName("Frame_survey_line");
    setProperty("card", true);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(gap);
    column->addLayout(make_head());
    facts_ = new QLabel;
    facts_->setObjectName("Label_survey_facts");
    facts_->setTextFormat(Qt::PlainText);
    facts_->setWordWrap(true);
    facts_->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    facts_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    facts_->setFixedHeight(2 * facts_->fontMetrics().lineSpacing());
    facts_->setContentsMargins(0, 0, 0, 0);
    facts_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    column->addWidget(facts_);
    column->addLayout(make_middle());
    column->addLayout(make_flags());
    column->addLayout(make_note());
}

QLayout* LineCard::make_head() {
    title_ = new QLabel;
    title_->setObjectName("Label_survey_line");
    title_->setTextFormat(Qt::PlainText);
    title_->setProperty("heading", true);
    title_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    previous_ = make_button({"Command_survey_previous", "Previous", "", "The line above on the list"});
    next_ = make_button({"Command_survey_next", "Next", "", "The line below on the list"});
    open_ = make_button({"Command_survey_open", "Open line", "",
                         "Open the workspace of the line with its model; Ctrl+Z brings the one before back"});
    set_chief(*open_, true);
    connect(previous_, &QPushButton::clicked, this, [this] { emit step_wanted(-1); });
    connect(next_, &QPushButton::clicked, this, [this] { emit step_wanted(1); });
    connect(open_, &QPushButton::clicked, this, &LineCard::open_wanted);
    auto* row = new QHBoxLayout;
    row->setSpacing(gap);
    row->addWidget(title_, 1);
    for (QPushButton* button : {previous_, next_, open_}) row->addWidget(button);
    return row;
}

QLayout* LineCard::make_middle() {
    picture_ = new SectionPicture;
    bodies_ = new QTableWidget;
    name_control(
        *bodies_, "Table_survey_bodies", tr("Bodies of the line"),
        tr("The bodies that explain the line, with 90 % intervals in brackets; ? where the data leave a side "
           "open"));
    bodies_->setColumnCount(body_columns);
    bodies_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    bodies_->setSelectionMode(QAbstractItemView::NoSelection);
    bodies_->setFocusPolicy(Qt::NoFocus);
    bodies_->setShowGrid(false);
    bodies_->setWordWrap(false);
    bodies_->setFixedHeight(picture_size.height());
    bodies_->verticalHeader()->hide();
    bodies_->verticalHeader()->setDefaultSectionSize(row_height);
    bodies_->horizontalHeader()->setHighlightSections(false);
    bodies_->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    auto* row = new QHBoxLayout;
    row->setSpacing(gap);
    row->addWidget(picture_);
    row->addWidget(bodies_, 1);
    return row;
}

QLayout* LineCard::make_flags() {
    struct Flag {
        survey::LineFlag flag;
        ControlText text;
    };
    const std::array buttons{
        Flag{survey::LineFlag::accept,
             {"Command_survey_accept", "Accept", "",
              "The model is right as it is. Key A on the list or the map"}},
        Flag{survey::LineFlag::look_again,
             {"Command_survey_look", "Look again", "",
              "Somebody should look at it. Key L on the list or the map"}},
        Flag{survey::LineFlag::reject,
             {"Command_survey_reject", "Reject", "",
              "The model is not to be used. Key R on the list or the map"}},
        Flag{survey::LineFlag::none,
             {"Command_survey_no_flag", "No flag", "", "Take the flag away. Key N on the list or the map"}}};
    auto* row = new QHBoxLayout;
    row->setSpacing(gap);
    flags_.resize(buttons.size());
    for (const Flag& flag : buttons) {
        QPushButton* button = make_button(flag.text);
        button->setCheckable(true);
        flags_[static_cast<std::size_t>(flag.flag)] = button;
        connect(button, &QPushButton::clicked, this, [this, which = flag.flag] {
            show_flag();  // the desk says what is in force
            emit flag_wanted(which);
        });
        row->addWidget(button);
    }
    undo_ = make_button(
        {"Command_survey_undo", "Undo", "", "Take the last flag or note back; Ctrl+Z on this page"});
    redo_ = make_button({"Command_survey_redo", "Redo", "", "Give it again; Ctrl+Shift+Z on this page"});
    connect(undo_, &QPushButton::clicked, this, &LineCard::undo_wanted);
    connect(redo_, &QPushButton::clicked, this, &LineCard::redo_wanted);
    row->addStretch();
    row->addWidget(undo_);
    row->addWidget(redo_);
    return row;
}

QLayout* LineCard::make_note() {
    note_ = new QLineEdit;
    name_control(*note_, "Text_survey_note", tr("Note"),
                 tr("What there is to say of the line; kept with the flag"));
    connect(note_, &QLineEdit::editingFinished, this, &LineCard::settle);
    auto* row = new QHBoxLayout;
    row->setSpacing(gap);
    row->addWidget(make_caption(tr("Note"), note_));
    row->addWidget(note_, 1);
    return row;
}

void LineCard::settle() {
    if (!note_->isModified()) return;
    note_->setModified(false);
    if (!line_.empty()) emit note_given(QString::fromStdString(line_), note_->text());
}

void LineCard::show_unit(SusceptibilityUnit unit) {
    unit_ = unit;
    show_line();
}

void LineCard::show_line() {
    if (line_ != desk_.chosen()) {
        settle();
        line_ = desk_.chosen();
        note_->setModified(false);
    }
    show_facts();
    show_bodies(desk_.watch().result(line_));
    show_flag();
}

void LineCard::resizeEvent(QResizeEvent* event) {
    QFrame::resizeEvent(event);
    show_facts();
}

void LineCard::show_facts() {
    const auto row = desk_.chosen_row();
    const survey::LineResult* result = desk_.watch().result(line_);
    previous_->setEnabled(row && *row > 0);
    next_->setEnabled(row ? *row + 1 < desk_.rows().size() : !desk_.rows().empty());
    open_->setEnabled(result && result->status == survey::LineStatus::done);
    if (!row) {
        title_->setText(tr("No line is chosen"));
        facts_->setText(tr("Choose one on the list or on the map"));
        facts_->setToolTip({});
        return;
    }
    const survey::DeskRow& shown_row = desk_.rows()[*row];
    title_->setText(tr("Line %1: %2").arg(shown(line_), status_words(shown_row.status)));
    QStringList words;
    if (!shown_row.message.empty()) words << shown(shown_row.message);
    if (result) {
        words << facts_of(*result).join(", ");
        for (const std::string& note : result->notes) words << shown(note);
    } else if (words.isEmpty()) {
        words << tr("The survey has not come to this line yet");
    }
    facts_->setText(two_lines(words.join(QString::fromUtf8(" · ")), *facts_));
    facts_->setToolTip(plain_tip(words.join('\n')));
}

void LineCard::show_bodies(const survey::LineResult* result) {
    const bool gravity = result && result->channel == "grav";
    const QString unit = QString::fromUtf8(unit_name(unit_).data());
    const bool below_sensor =
        result && std::ranges::any_of(result->bodies, [](const survey::BodyResult& body) {
            return survey::told_depth(body).below_sensor;
        });
    bodies_->setHorizontalHeaderLabels(
        {tr("Body"), below_sensor ? tr("Below sensor, m") : tr("Below ground, m"), tr("Dip, °"),
         tr("Width, m"), gravity ? tr("Density contrast, g/cc") : tr("Susceptibility, %1").arg(unit)});
    bodies_->setRowCount(result ? static_cast<int>(result->bodies.size()) : 0);
    for (int row = 0; row < bodies_->rowCount(); ++row) {
        const survey::BodyResult& body = result->bodies[static_cast<std::size_t>(row)];
        bodies_->setItem(row, of_name, cell(shown(body.name), false));
        bodies_->setItem(row, of_depth, cell(interval_words(survey::told_depth(body).depth, "")));
        bodies_->setItem(row, of_dip, cell(interval_words(body.dip, "")));
        bodies_->setItem(row, of_width, cell(interval_words(body.width, "")));
        const survey::IntervalValue susceptibility = scaled(body.susceptibility, of_micro_si(unit_));
        bodies_->setItem(row, of_property,
                         cell(interval_words(gravity ? body.density_contrast : susceptibility, "")));
    }
}

void LineCard::show_flag() {
    const survey::LineMark mark = desk_.mark(line_);
    const bool chosen = !line_.empty();
    for (std::size_t i = 0; i < flags_.size(); ++i) {
        flags_[i]->setEnabled(chosen);
        flags_[i]->setChecked(chosen && static_cast<std::size_t>(mark.flag) == i);
    }
    note_->setEnabled(chosen);
    if (!note_->isModified() && note_->text() != shown(mark.note)) note_->setText(shown(mark.note));
    undo_->setEnabled(desk_.can_undo());
    redo_->setEnabled(desk_.can_redo());
}

}  // namespace anomalis::window
