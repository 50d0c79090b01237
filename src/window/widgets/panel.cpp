#include "window/widgets/panel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "window/shell/look.h"

namespace anomalis::window {

namespace {

constexpr int columns_a_pair = 4;  // caption, control, unit, gap
constexpr int control_width = 84;
constexpr int unit_width = 56;
constexpr int pair_gap = 12;
constexpr int gap = 6;

/// What follows a colon in a heading stands back.
QHBoxLayout* make_heading(const QString& heading) {
    const auto colon = heading.indexOf(": ");
    auto* row = new QHBoxLayout;
    row->setSpacing(6);
    auto* title = new QLabel(colon < 0 ? heading : heading.left(colon));
    title->setProperty("heading", true);
    row->addWidget(title);
    if (colon >= 0) {
        auto* note = new QLabel(heading.mid(colon + 2));
        make_quiet(*note);
        row->addWidget(note);
    }
    row->addStretch();
    return row;
}

}  // namespace

Panel::Panel(const char* object_name, const QString& heading, QWidget* parent, int caption_width)
    : QFrame(parent) {
    setObjectName(object_name);
    setProperty("card", true);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(12, 8, 12, 10);
    column->setSpacing(6);
    if (!heading.isEmpty()) column->addLayout(make_heading(heading));
    grid_ = new QGridLayout;
    grid_->setHorizontalSpacing(0);  // widths alone place the columns, so that panels line up
    grid_->setVerticalSpacing(6);
    for (int pair = 0; pair < 2; ++pair) {
        const int first = pair * columns_a_pair;
        grid_->setColumnMinimumWidth(first, caption_width + gap);
        grid_->setColumnMinimumWidth(first + 1, control_width);
        grid_->setColumnMinimumWidth(first + 2, unit_width);
        grid_->setColumnStretch(first + 1, 1);
    }
    grid_->setColumnMinimumWidth(columns_a_pair - 1, pair_gap);
    column->addLayout(grid_);
}

QLabel* Panel::place(int row, int pair, const ControlText& text, QWidget* control) {
    const int first = pair * columns_a_pair;
    QLabel* caption = make_caption(tr(text.caption), control);
    // The grid's columns say how wide a control is, not its contents.
    control->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    grid_->addWidget(caption, row, first);
    // A list of words has the room of the unit that it has not.
    const bool wide = text.unit[0] == '\0' && qobject_cast<QComboBox*>(control);
    grid_->addWidget(control, row, first + 1, 1, wide ? 2 : 1);
    if (text.unit[0] != '\0') {
        auto* unit = new QLabel(QString::fromUtf8(text.unit), this);
        make_quiet(*unit);
        unit->setIndent(gap);
        grid_->addWidget(unit, row, first + 2);
    }
    return caption;
}

void Panel::place_bare(int row, int pair, QWidget* control) {
    grid_->addWidget(control, row, pair * columns_a_pair, 1, columns_a_pair - 1);
}

void name_control(QWidget& control, const char* name, const QString& caption, const QString& tip) {
    control.setObjectName(name);
    control.setAccessibleName(caption);
    control.setAccessibleDescription(tip);
    control.setToolTip(tip);
}

QLabel* make_caption(const QString& caption, QWidget* control) {
    auto* label = new QLabel(caption);
    label->setBuddy(control);
    label->setToolTip(control->toolTip());
    return label;
}

QCheckBox* make_check(const ControlText& text) {
    auto* check = new QCheckBox(QString::fromUtf8(text.caption));
    name_control(*check, text.name, check->text(), QString::fromUtf8(text.tip));
    return check;
}

QPushButton* make_button(const ControlText& text) {
    auto* button = new QPushButton(QString::fromUtf8(text.caption));
    name_control(*button, text.name, button->text(), QString::fromUtf8(text.tip));
    return button;
}

QComboBox* make_list(const ControlText& text, const QStringList& entries) {
    auto* list = new QComboBox;
    name_control(*list, text.name, QString::fromUtf8(text.caption), QString::fromUtf8(text.tip));
    list->addItems(entries);
    list->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    return list;
}

QLineEdit* make_result_box(const ControlText& text) {
    auto* box = new QLineEdit;
    name_control(*box, text.name, QString::fromUtf8(text.caption), QString::fromUtf8(text.tip));
    box->setReadOnly(true);
    box->setAcceptDrops(false);
    box->setFocusPolicy(Qt::NoFocus);
    box->setAlignment(Qt::AlignRight);
    box->setFrame(false);
    return box;
}

}  // namespace anomalis::window
