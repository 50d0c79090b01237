#include "window/shell/form_field.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/failure.h"
#include "core/numbers.h"
#include "core/workspace.h"
#include "intake/coordinates/coordinate_system.h"
#include "window/shell/look.h"
#include "window/widgets/chief_button.h"
#include "window/widgets/panel.h"
#include "window/widgets/plain_text.h"

namespace anomalis::window {

namespace {

constexpr int margin = 14, gap = 10, width_of_form = 540;  // pixels
constexpr int columns_a_pair = 3;

QString answer_words(const field::MainField& field) {
    const auto number = [](double value, const char* pattern) {
        return QString::fromStdString(format_number(value, pattern));
    };
    return Form_field::tr("Intensity %1 nT\nInclination %2°, declination %3°")
        .arg(number(field.total_nT, "0.0"), number(field.inclination_deg, "0.00"),
             number(field.declination_deg, "0.00"));
}

/// A label of data, which wraps and keeps room for two lines, so that nothing jumps.
QLabel* make_words(const char* name) {
    auto* label = new QLabel;
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setMinimumHeight(2 * label->fontMetrics().lineSpacing());
    label->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    return label;
}

}  // namespace

Form_field::Form_field(const Workspace& workspace, QWidget* parent)
    : QDialog(parent), workspace_(workspace), grid_(new QGridLayout) {
    setObjectName("Form_field");
    setWindowTitle(tr("Field from place and date"));
    auto* purpose = new QLabel(
        tr("The earth's main field of IGRF-14, from 1900 to 2030. It takes the place of the three boxes."));
    purpose->setWordWrap(true);
    grid_->setHorizontalSpacing(gap - 4);
    grid_->setVerticalSpacing(gap - 2);
    make_boxes(flow::field_question(workspace));
    answer_ = make_words("Label_field_answer");
    auto* page = new QVBoxLayout(this);
    page->setContentsMargins(margin, margin, margin, margin);
    page->setSpacing(gap);
    page->addWidget(purpose);
    page->addLayout(grid_);
    page->addWidget(answer_);
    page->addStretch();
    page->addWidget(make_buttons());
    for (QLineEdit* box : {system_, latitude_, longitude_, height_, date_})
        connect(box, &QLineEdit::textEdited, this, &Form_field::show_answer);
    connect(system_, &QLineEdit::textEdited, this, &Form_field::show_system);
    connect(middle_, &QCheckBox::toggled, this, &Form_field::show_answer);
    show_system();
    show_answer();
    resize(width_of_form, sizeHint().height());
    (system_->text().isEmpty() ? system_ : date_)->setFocus();
}

QLineEdit* Form_field::add_box(int row, int pair, const ControlText& text, const std::string& value) {
    auto* box = new QLineEdit(QString::fromStdString(value));
    name_control(*box, text.name, tr(text.caption), tr(text.tip));
    const int column = pair * columns_a_pair;
    grid_->addWidget(make_caption(tr(text.caption), box), row, column);
    grid_->addWidget(box, row, column + 1);
    auto* unit = new QLabel(QString::fromUtf8(text.unit));
    make_quiet(*unit);
    grid_->addWidget(unit, row, column + 2);
    return box;
}

void Form_field::make_boxes(const flow::FieldQuestion& question) {
    system_ =
        add_box(0, 0,
                {"Text_field_system", "Coordinate system", "",
                 "The system that the line's coordinates are in: an EPSG number (32754) or a name (WGS 84 / "
                 "UTM zone 54S). It is kept with the model"},
                question.coordinate_system);
    system_name_ = new QLabel;
    system_name_->setObjectName("Label_field_system");
    system_name_->setTextFormat(Qt::PlainText);
    make_quiet(*system_name_);
    grid_->addWidget(system_name_, 0, columns_a_pair, 1, columns_a_pair);
    middle_ = make_check({"Check_field_middle", "At the middle of the line", "",
                          "Take latitude, longitude and height of the station in the middle"});
    middle_->setChecked(question.at_middle);
    middle_->setEnabled(question.at_middle);
    grid_->addWidget(middle_, 1, 1, 1, 4);
    latitude_ = add_box(2, 0,
                        {"Text_field_latitude", "Latitude", "°",
                         "Degrees north of the equator, -90 to 90; below 0 in the south"},
                        question.latitude);
    longitude_ = add_box(2, 1,
                         {"Text_field_longitude", "Longitude", "°",
                          "Degrees east of Greenwich, -180 to 360; below 0 in the west"},
                         question.longitude);
    height_ = add_box(
        3, 0,
        {"Text_field_height", "Height", "m", "Of the sensor above the ellipsoid, m; 100 m make 2 to 3 nT"},
        question.height);
    date_ = add_box(3, 1,
                    {"Text_field_date", "Date", "",
                     "Of the survey: a day such as 1990-07-01 or a decimal year, 1900 to 2030"},
                    question.date);
    date_->setPlaceholderText(tr("1990-07-01"));
    grid_->setColumnStretch(1, 1);
    grid_->setColumnStretch(columns_a_pair + 1, 1);
}

QWidget* Form_field::make_buttons() {
    apply_ = make_button(
        {"Command_apply_field", "Apply", "", "Make this the field of the model; one step takes it back"});
    auto* cancel = make_button({"Command_cancel_field", "Cancel", "", "Close and leave the field as it was"});
    apply_->setDefault(true);
    set_chief(*apply_, true);
    cancel->setAutoDefault(false);
    connect(apply_, &QPushButton::clicked, this, &Form_field::accept);
    connect(cancel, &QPushButton::clicked, this, &Form_field::reject);
    auto* holder = new QWidget;
    auto* row = new QHBoxLayout(holder);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(gap);
    row->addStretch();
    row->addWidget(apply_);
    row->addWidget(cancel);
    return holder;
}

flow::FieldQuestion Form_field::question() const {
    return {middle_->isChecked(),
            system_->text().toStdString(),
            latitude_->text().toStdString(),
            longitude_->text().toStdString(),
            height_->text().toStdString(),
            date_->text().toStdString()};
}

void Form_field::show_system() {
    QString name;
    if (!system_->text().trimmed().isEmpty()) {
        try {
            name = shown(intake::find_coordinate_system(system_->text().toStdString()).name);
        } catch (const Fault&) {
            name = tr("not known");
        }
    }
    system_name_->setText(name);
    system_name_->setToolTip(plain_tip(name));
}

void Form_field::show_answer() {
    const bool at_middle = middle_->isChecked();
    for (QLineEdit* box : {latitude_, longitude_, height_}) box->setReadOnly(at_middle);
    const flow::FieldQuestion asked = question();
    try {
        if (at_middle) {
            const field::Place place = flow::middle_of_line(workspace_, asked.coordinate_system);
            latitude_->setText(QString::fromStdString(format_number(place.latitude, "0.00000")));
            longitude_->setText(QString::fromStdString(format_number(place.longitude, "0.00000")));
            height_->setText(QString::fromStdString(format_number(place.height_m, "0.#")));
        }
        answer_->setText(answer_words(flow::answer(asked, workspace_).field));
        apply_->setEnabled(true);
    } catch (const Fault& fault) {
        answer_->setText(shown(fault.what()));
        apply_->setEnabled(false);
    }
}

}  // namespace anomalis::window
