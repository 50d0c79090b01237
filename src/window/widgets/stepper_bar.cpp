#include "window/widgets/stepper_bar.h"

#include <algorithm>

#include <QKeyEvent>
#include <QStyleOptionFocusRect>
#include <QStylePainter>
#include <QToolButton>
#include <QVBoxLayout>

namespace anomalis::window {

namespace {

constexpr int arrow_width = 20;
constexpr int arrow_height = 18;
constexpr int least_arrow_height = 11;  // so that a chart may be made low
constexpr int coarse_steps = 10;        // over half of the bar's way

QToolButton* arrow(const StepperBar::Side& side) {
    auto* button = new QToolButton;
    button->setText(side.text);
    button->setToolTip(side.tip);
    button->setAccessibleName(side.tip);
    button->setAutoRaise(true);
    button->setAutoRepeat(true);
    button->setFocusPolicy(Qt::NoFocus);  // the bar has it, and one stop a bar is enough
    button->setFixedWidth(arrow_width);
    button->setMinimumHeight(least_arrow_height);
    button->setMaximumHeight(arrow_height);
    button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
    return button;
}

}  // namespace

StepperBar::StepperBar(const QString& object_name, const Side& upper, const Side& lower, QWidget* parent)
    : QWidget(parent), upper_(upper.direction), lower_(lower.direction) {
    setObjectName(object_name);
    setToolTip(upper.tip + "\n" + lower.tip);
    setAccessibleName(upper.tip);
    setFocusPolicy(Qt::StrongFocus);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    for (const Side* side : {&upper, &lower}) {
        QToolButton* button = arrow(*side);
        column->addWidget(button);
        connect(button, &QToolButton::clicked, this, [this, step = side->direction] { emit stepped(step); });
    }
}

void StepperBar::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Up:
        case Qt::Key_Plus:
            emit stepped(upper_);
            break;
        case Qt::Key_Down:
        case Qt::Key_Minus:
            emit stepped(lower_);
            break;
        default:
            QWidget::keyPressEvent(event);
    }
}

void StepperBar::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    update();
}

void StepperBar::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    update();
}

void StepperBar::paintEvent(QPaintEvent*) {
    if (!hasFocus()) return;
    QStylePainter painter(this);
    QStyleOptionFocusRect option;
    option.initFrom(this);
    painter.drawPrimitive(QStyle::PE_FrameFocusRect, option);
}

RisingBar::RisingBar(QWidget* parent) : QScrollBar(Qt::Horizontal, parent) {
    setFocusPolicy(Qt::StrongFocus);
}

void RisingBar::keyPressEvent(QKeyEvent* event) {
    const bool more = event->key() == Qt::Key_Right || event->key() == Qt::Key_Up;
    const bool less = event->key() == Qt::Key_Left || event->key() == Qt::Key_Down;
    if (!more && !less) return QScrollBar::keyPressEvent(event);
    const int step = key_step(event->modifiers().testFlag(Qt::ShiftModifier));
    setValue(value() + (more ? step : -step));
}

int PanBar::key_step(bool shift) const {
    return shift ? singleStep() : std::max(1, maximum() / coarse_steps);
}

}  // namespace anomalis::window
