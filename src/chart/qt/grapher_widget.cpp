#include "chart/qt/grapher_widget.h"

#include <utility>

#include <QGestureEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QPainter>
#include <QWheelEvent>

#include "chart/qt/chart_dialogs.h"
#include "chart/qt/chart_menu.h"
#include "chart/qt/dark_ground.h"
#include "chart/qt/event_relay.h"
#include "chart/qt/key_numbers.h"
#include "chart/qt/pointer_cursor.h"
#include "chart/qt/screen_device.h"

namespace anomalis::chart {

namespace {

/// How far one step of a horizontal wheel pans.
constexpr double pixels_a_wheel_step = 40.0;

int button_number(Qt::MouseButton button) {
    switch (button) {
        case Qt::LeftButton:
            return 1;
        case Qt::RightButton:
            return 2;
        case Qt::MiddleButton:
            return 4;
        default:
            return 0;
    }
}

int button_mask(Qt::MouseButtons buttons) {
    int mask = 0;
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton})
        if (buttons.testFlag(button)) mask |= button_number(button);
    return mask;
}

int shift_mask(Qt::KeyboardModifiers modifiers) {
    return (modifiers.testFlag(Qt::ShiftModifier) ? 1 : 0) |
           (modifiers.testFlag(Qt::ControlModifier) ? 2 : 0) | (modifiers.testFlag(Qt::AltModifier) ? 4 : 0);
}

/// What was held down, and whether a finger did it: Qt hands on what a touch screen tells as a mouse.
int marks_of(const QMouseEvent& event) {
    return shift_mask(event.modifiers()) |
           (event.pointerType() == QPointingDevice::PointerType::Finger ? finger_mark : 0);
}

float units(double pixels) {
    return static_cast<float>(pixels * units_per_screen_pixel);
}

}  // namespace

/// Takes what the widget itself must do and hands everything on.
class GrapherWidget::Relay : public EventRelay {
  public:
    explicit Relay(GrapherWidget& widget) : widget_(widget) {}
    void MenuRequested(float x, float y) override {
        EventRelay::MenuRequested(x, y);
        widget_.open_menu(x, y);
    }
    void Failed(const std::string& text) override {
        if (host()) return host()->Failed(text);
        widget_.dialogs().message(&widget_, QString::fromStdString(text));
    }

  private:
    GrapherWidget& widget_;
};

GrapherWidget::GrapherWidget(QWidget* parent)
    : QWidget(parent),
      screen_(std::make_unique<ScreenDevice>([this] { update(); })),
      relay_(std::make_unique<Relay>(*this)),
      own_dialogs_(std::make_unique<ChartDialogs>()),
      menu_(make_chart_menu(*this)) {
    chart_.SetSurface(screen_.get());
    chart_.SetEvents(relay_.get());
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setContextMenuPolicy(Qt::PreventContextMenu);
    grabGesture(Qt::PinchGesture);
    chart_.WearPalette(screen_palette(palette()));
}

GrapherWidget::~GrapherWidget() {
    chart_.SetEvents(nullptr);
    chart_.SetSurface(nullptr);
}

void GrapherWidget::set_host(GrapherEvents* host) {
    relay_->set_host(host);
}

void GrapherWidget::set_dialogs(ChartDialogs* dialogs) {
    dialogs_ = dialogs;
}

ChartDialogs& GrapherWidget::dialogs() {
    if (dialogs_) return *dialogs_;
    for (QWidget* widget = this; widget; widget = widget->parentWidget())
        if (auto* host = dynamic_cast<ChartDialogsHost*>(widget)) return host->chart_dialogs();
    return *own_dialogs_;
}

void GrapherWidget::show_top_layer(bool show) {
    top_layer_shown_ = show;
    update();
}

/// The control's own border stands around the surface, so that it hides no line of the chart.
int GrapherWidget::border() const {
    return screen_->border_style() != 0 ? 1 : 0;
}

QPointF GrapherWidget::on_surface(QPointF position) const {
    return position - QPointF(border(), border());
}

void GrapherWidget::fit_surface() {
    const double ratio = devicePixelRatioF();
    const QSize inside = (size() - QSize(2 * border(), 2 * border())).expandedTo(QSize(0, 0));
    if (screen_->logical_size() == inside && screen_->device_pixel_ratio() == ratio) return;
    screen_->resize(inside, ratio);
    chart_.Resize();
}

bool GrapherWidget::event(QEvent* event) {
    // Qt moves the focus by these before they are a key of the widget.
    if (event->type() == QEvent::KeyPress) {
        const auto& key = *static_cast<QKeyEvent*>(event);
        const bool tab = key.key() == Qt::Key_Tab || key.key() == Qt::Key_Backtab;
        if (tab && press_key(key)) return true;
    }
    if (event->type() == QEvent::NativeGesture) {
        const auto* gesture = static_cast<QNativeGestureEvent*>(event);
        if (gesture->gestureType() == Qt::ZoomNativeGesture) {
            const QPointF at = on_surface(gesture->position());
            chart_.HandlePinch(1.0 + gesture->value(), units(at.x()), units(at.y()));
            return true;
        }
    }
    if (event->type() == QEvent::Gesture) {
        auto* gestures = static_cast<QGestureEvent*>(event);
        if (auto* gesture = gestures->gesture(Qt::PinchGesture)) {
            gestures->accept(gesture);
            pinch(*static_cast<QPinchGesture*>(gesture));
            return true;
        }
    }
    return QWidget::event(event);
}

/// Two fingers on a touch screen: apart zooms in about their middle, together they drag the view.
void GrapherWidget::pinch(const QPinchGesture& gesture) {
    deliver();
    // Qt hands each step to its recogniser twice, by way of the window and of the widget.
    const std::pair step(gesture.scaleFactor(), gesture.centerPoint());
    if (std::exchange(last_pinch_, step) == step) return;
    const QPointF middle = on_surface(mapFromGlobal(gesture.centerPoint()));
    const QPointF moved = gesture.centerPoint() - gesture.lastCenterPoint();
    chart_.HandlePinch(gesture.scaleFactor(), units(middle.x()), units(middle.y()));
    if (!moved.isNull()) chart_.PanBy(-units(moved.x()), units(moved.y()));
}

void GrapherWidget::paintEvent(QPaintEvent*) {
    fit_surface();
    QPainter painter(this);
    // Filled, not drawn: at a fractional scale a line would leave part of a pixel open beside it.
    if (border() != 0) painter.fillRect(rect(), palette().color(QPalette::Mid));
    const QRect inside = rect().adjusted(border(), border(), -border(), -border());
    if (chart_.BackStyle() == 0) painter.fillRect(inside, palette().color(QPalette::Window));
    screen_->begin_top();
    if (top_layer_shown_) chart_.DrawTopLayer(*screen_);
    screen_->end_top();
    screen_->show(painter, QPointF(border(), border()));
}

void GrapherWidget::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    fit_surface();
}

void GrapherWidget::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) {
        chart_.WearPalette(screen_palette(palette()));
        chart_.RefreshGraph(0);
    }
}

void GrapherWidget::post_delivery() {
    if (delivery_posted_) return;
    delivery_posted_ = true;
    QMetaObject::invokeMethod(
        this, [this] { deliver(); }, Qt::QueuedConnection);
}

void GrapherWidget::deliver() {
    delivery_posted_ = false;
    // Only one of them can wait: each delivers the other before it starts to wait itself.
    deliver_move();
    deliver_wheel();
}

void GrapherWidget::deliver_move() {
    if (!pending_move_) return;
    const PendingMove move = *std::exchange(pending_move_, std::nullopt);
    chart_.HandleMouseMove(move.buttons, move.shift, units(move.position.x()), units(move.position.y()));
    show_pointer();
}

void GrapherWidget::show_pointer() {
    const PointerShape shape = chart_.Pointer();
    if (std::exchange(pointer_, shape) == shape) return;
    if (shape == PointerShape::usual) return unsetCursor();
    setCursor(pointer_cursor(shape));
}

void GrapherWidget::deliver_wheel() {
    if (!pending_wheel_) return;
    const PendingWheel wheel = *std::exchange(pending_wheel_, std::nullopt);
    if (wheel.aside != 0.0) chart_.PanBy(units(wheel.aside), 0);
    if (wheel.turned != 0)
        chart_.HandleWheel(wheel.shift, wheel.turned, units(wheel.position.x()), units(wheel.position.y()));
}

void GrapherWidget::mousePressEvent(QMouseEvent* event) {
    deliver();
    const QPointF at = on_surface(event->position());
    chart_.HandleMouseDown(button_number(event->button()), marks_of(*event), units(at.x()), units(at.y()));
    show_pointer();
}

void GrapherWidget::mouseMoveEvent(QMouseEvent* event) {
    deliver_wheel();
    pending_move_ = {button_mask(event->buttons()), marks_of(*event), on_surface(event->position())};
    post_delivery();
}

void GrapherWidget::mouseReleaseEvent(QMouseEvent* event) {
    deliver();
    const QPointF at = on_surface(event->position());
    chart_.HandleMouseUp(button_number(event->button()), marks_of(*event), units(at.x()), units(at.y()));
    show_pointer();
}

void GrapherWidget::mouseDoubleClickEvent(QMouseEvent* event) {
    deliver();
    const QPointF at = on_surface(event->position());
    const int button = button_number(event->button());
    if (!chart_.HandleHold(button, marks_of(*event), units(at.x()), units(at.y())))
        chart_.HandleDoubleClick(button);
    show_pointer();
}

void GrapherWidget::leaveEvent(QEvent*) {
    deliver();
    chart_.HandleMouseLeave();
    show_pointer();
}

void GrapherWidget::wheelEvent(QWheelEvent* event) {
    deliver_move();
    const int shift = shift_mask(event->modifiers());
    if (pending_wheel_ && pending_wheel_->shift != shift) deliver_wheel();
    if (!pending_wheel_) pending_wheel_ = {shift, {}, 0, 0.0};
    const QPoint angle = event->angleDelta();
    const QPoint pixels = event->pixelDelta();
    pending_wheel_->position = on_surface(event->position());
    pending_wheel_->turned += angle.y();
    // A turn to the right is negative.
    pending_wheel_->aside -= pixels.x() != 0 ? pixels.x() : angle.x() / 120.0 * pixels_a_wheel_step;
    post_delivery();
    event->accept();
}

/// Tells host and chart of a key. True when one of them has used it.
bool GrapherWidget::press_key(const QKeyEvent& event) {
    deliver();
    const int key = key_number(event);
    bool used = key != 0 && chart_.HandleKeyDown(key, shift_mask(event.modifiers()));
    if (const int character = typed_character(event)) used = chart_.HandleKeyPress(character) || used;
    show_pointer();
    return used;
}

void GrapherWidget::keyPressEvent(QKeyEvent* event) {
    // A tab key has been told already: see event().
    const bool tab = event->key() == Qt::Key_Tab || event->key() == Qt::Key_Backtab;
    if (tab || !press_key(*event)) QWidget::keyPressEvent(event);
}

void GrapherWidget::keyReleaseEvent(QKeyEvent* event) {
    const int key = key_number(*event);
    if (key == 0 || !chart_.HandleKeyUp(key, shift_mask(event->modifiers()))) QWidget::keyReleaseEvent(event);
}

void GrapherWidget::open_menu(float x, float y) {
    if (menu_opening_) menu_opening_(x, y);
    const QPointF at(x / units_per_screen_pixel + border(), y / units_per_screen_pixel + border());
    menu_->popup(mapToGlobal(at.toPoint()));
}

}  // namespace anomalis::chart
