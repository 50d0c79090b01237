#include "window/panels/body_panel.h"

#include <algorithm>

#include <QCheckBox>
#include <QColorDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QPixmap>
#include <QToolButton>
#include <QVBoxLayout>

#include "edit/body_form.h"
#include "edit/workbench.h"
#include "window/shell/look.h"
#include "window/widgets/entry_box.h"
#include "window/widgets/panel.h"
#include "window/widgets/stepper_bar.h"

namespace anomalis::window {

namespace {

constexpr int patch_size = 14;  // pixels
constexpr int heading_width = 104;
constexpr int byte_mask = 0xFF;

std::int32_t stored_colour(const QColor& colour) {
    return colour.blue() << 16 | colour.green() << 8 | colour.red();
}

QHBoxLayout* make_row(QWidget* holder) {
    auto* row = new QHBoxLayout(holder);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    return row;
}

}  // namespace

BodyPanel::BodyPanel(edit::Workbench& workbench, FormGuards& guards, ModelNews& news)
    : workbench_(workbench), guards_(guards), news_(news) {
    setObjectName("Frame_body");
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(4);
    column->addWidget(make_selector());
    column->addWidget(make_name());
    column->addWidget(make_marks());
    choose_colour_ = [this](const QColor& present) -> std::optional<QColor> {
        const QColor chosen = QColorDialog::getColor(present, this, tr("Colour of the body"));
        return chosen.isValid() ? std::optional(chosen) : std::nullopt;
    };
    wire();
}

QWidget* BodyPanel::make_selector() {
    auto* holder = new QWidget;
    auto* row = make_row(holder);
    heading_ = new QLabel;
    heading_->setObjectName("Label_body");
    heading_->setProperty("heading", true);
    heading_->setMinimumWidth(heading_width);
    selector_ = new RisingBar;
    name_control(*selector_, "HScroll_body", tr("Current body"),
                 tr("Which body is the current one, from 1 to their number. Page Down and Page Up go to the "
                    "next and to the one before, wherever on the page the focus is"));
    selector_->setPageStep(1);
    row->addWidget(heading_);
    row->addWidget(selector_, 1);
    return holder;
}

QWidget* BodyPanel::make_name() {
    const ControlText text{"Text_body_name", "Name", "",
                           "Name of the current body, any text; it labels the body in the section"};
    const auto accept = [this](const std::string& typed) {
        if (edit::change_body_name(workbench_, typed)) news_.tell(News::parameters);
        return true;
    };
    const auto stored = [this] {
        const ModelBody* body = edit::current_body(workbench_);
        return body ? body->name : std::string();
    };
    name_ = new CommitBox(text, guards_, {accept, stored});
    name_->setAlignment(Qt::AlignLeft);
    colour_ = new QToolButton;
    name_control(*colour_, "Picture_body_colour", tr("Colour"),
                 tr("Colour of the current body in section and plan; white draws its outline alone"));
    colour_->setIconSize({patch_size, patch_size});
    auto* holder = new QWidget;
    auto* row = make_row(holder);
    row->addWidget(make_caption(tr(text.caption), name_));
    row->addWidget(name_, 1);
    row->addWidget(colour_);
    return holder;
}

QWidget* BodyPanel::make_marks() {
    fix_ = make_check({"Check_fix_this_body", "Fix", "",
                       "Checked: no inversion changes this body, whatever its parameters say"});
    off_ = make_check({"Check_turn_off_body", "Turn off", "",
                       "Checked: the body is left out of the model; a saved file does not keep this mark"});
    demagnetisation_ = make_check({"Check_include_demagnetisation", "Demagnetisation", "", ""});
    auto* holder = new QWidget;
    auto* row = make_row(holder);
    row->setSpacing(14);
    for (QCheckBox* check : {fix_, off_, demagnetisation_}) row->addWidget(check);
    row->addStretch();
    return holder;
}

void BodyPanel::wire() {
    connect(selector_, &QScrollBar::valueChanged, this, [this](int number) {
        if (guards_.pass()) emit body_wanted(number);
    });
    connect(fix_, &QCheckBox::toggled, this, [this](bool on) { mark_clicked(edit::change_body_fixed, on); });
    connect(off_, &QCheckBox::toggled, this,
            [this](bool on) { mark_clicked(edit::change_body_turned_off, on); });
    connect(demagnetisation_, &QCheckBox::toggled, this,
            [this](bool on) { mark_clicked(edit::change_body_demagnetisation, on); });
    connect(colour_, &QToolButton::clicked, this, &BodyPanel::colour_clicked);
}

void BodyPanel::mark_clicked(bool (*change)(edit::Workbench&, bool), bool on) {
    if (!guards_.pass()) return;
    if (change(workbench_, on)) news_.tell(News::parameters);
}

void BodyPanel::colour_clicked() {
    if (!guards_.pass()) return;
    const ModelBody* body = edit::current_body(workbench_);
    if (!body) return;
    const auto chosen = choose_colour_(shown_colour(body->colour));
    if (chosen && edit::change_body_colour(workbench_, stored_colour(*chosen))) news_.tell(News::parameters);
}

void BodyPanel::show_colour() {
    const ModelBody* body = edit::current_body(workbench_);
    const int colour = body ? body->colour : -1;
    if (colour == patch_colour_) return;
    patch_colour_ = colour;
    QPixmap patch(patch_size, patch_size);
    patch.fill(body ? shown_colour(body->colour) : palette().color(QPalette::Window));
    colour_->setIcon(patch);
}

void BodyPanel::fill() {
    const SuspendEvents suspend(guards_);
    const ModelBody* body = edit::current_body(workbench_);
    const int count = workbench_.session.workspace.body_count;
    const int number = workbench_.view.current_body;
    heading_->setText(body ? tr("Body %1 of %2").arg(number).arg(count) : tr("No body"));
    selector_->setRange(1, std::max(1, count));
    selector_->setValue(body ? number : 1);
    selector_->setEnabled(body && count > 1);
    name_->refill();
    show_colour();
    fix_->setChecked(body && body->vary == 0);
    off_->setChecked(body && body->turned_off == 1);
    demagnetisation_->setChecked(body && body->include_demagnetisation == 1);
    const QString tip = QString::fromStdString(edit::demagnetisation_tip(workbench_));
    demagnetisation_->setToolTip(tip);
    demagnetisation_->setAccessibleDescription(tip);
    for (QWidget* control : std::initializer_list<QWidget*>{name_, colour_, fix_, off_, demagnetisation_})
        control->setEnabled(body != nullptr);
}

}  // namespace anomalis::window
