#include "window/widgets/parameter_stepper.h"

#include <QHBoxLayout>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QStyleOptionFocusRect>
#include <QStylePainter>
#include <QToolButton>
#include <QToolTip>

namespace anomalis::window {

namespace {

constexpr int button_width = 23;  // pixels
constexpr int button_height = 19;
constexpr int repeat_delay = 300;  // ms
constexpr int repeat_interval = 40;

}  // namespace

ParameterStepper::ParameterStepper(const QString& object_name, bool fine, QWidget* parent)
    : QWidget(parent), fine_(fine) {
    setObjectName(object_name);
    setFocusPolicy(Qt::StrongFocus);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(1, 1, 1, 1);
    row->setSpacing(0);
    for (const int direction : {-1, 1}) {
        auto* button = new QToolButton;
        button->setText(direction < 0 ? "−" : "+");
        button->setAccessibleName(direction < 0 ? tr("Less") : tr("More"));
        button->setAutoRepeat(true);
        button->setAutoRepeatDelay(repeat_delay);
        button->setAutoRepeatInterval(repeat_interval);
        button->setFocusPolicy(Qt::NoFocus);  // the bar has it
        button->setFixedSize(button_width, button_height);
        // What is being typed elsewhere is taken over before the step.
        connect(button, &QToolButton::pressed, this, [this] { setFocus(Qt::MouseFocusReason); });
        connect(button, &QToolButton::clicked, this, [this, direction] { emit stepped(fine_, direction); });
        row->addWidget(button);
    }
}

bool ParameterStepper::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip && tip_) {
        setToolTip(tip_());
        if (tip_page_) {
            QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), tip_page_(toolTip()), this);
            return true;
        }
    }
    return QWidget::event(event);
}

void ParameterStepper::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    const bool more = key == Qt::Key_Right || key == Qt::Key_Up || key == Qt::Key_Plus;
    const bool less = key == Qt::Key_Left || key == Qt::Key_Down || key == Qt::Key_Minus;
    if (!more && !less) return QWidget::keyPressEvent(event);
    emit stepped(fine_ || event->modifiers().testFlag(Qt::ShiftModifier), more ? 1 : -1);
}

void ParameterStepper::paintEvent(QPaintEvent*) {
    if (!hasFocus()) return;
    QStylePainter painter(this);
    painter.setPen(palette().color(QPalette::Highlight));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

}  // namespace anomalis::window
