#include "window/shell/window_place.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string_view>

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QRegion>
#include <QScreen>
#include <QTimer>

#include "core/numbers.h"
#include "core/text.h"

namespace anomalis::window {

namespace {

/// Until a window is on show nobody knows its frame; a usual one.
constexpr QMargins usual_frame{4, 36, 4, 4};

QMargins frame_of(const QWidget& window) {
    const QRect outer = window.frameGeometry(), inner = window.geometry();
    if (!window.isVisible() || outer == inner) return usual_frame;
    return {inner.left() - outer.left(), inner.top() - outer.top(), outer.right() - inner.right(),
            outer.bottom() - inner.bottom()};
}

qint64 area_of(const QRect& rectangle) {
    return rectangle.isEmpty() ? 0 : qint64{rectangle.width()} * rectangle.height();
}

qint64 squared_distance(const QPoint& a, const QPoint& b) {
    const qint64 x = a.x() - b.x(), y = a.y() - b.y();
    return x * x + y * y;
}

void put(QWidget& window, const QRect& frame) {
    const QRect inner = frame.marginsRemoved(frame_of(window));
    window.resize(inner.size());
    window.move(frame.topLeft());
}

std::optional<int> whole_number(std::string_view token) {
    constexpr double most = 1e6;  // pixels; no desk is as wide
    if (!is_numeric(token)) return {};
    const double value = prefix_number(token);
    return std::abs(value) <= most ? std::optional(static_cast<int>(value)) : std::nullopt;
}

}  // namespace

QRect place_inside(QRect frame, const QRect& area) {
    frame.setSize(frame.size().boundedTo(area.size()));
    frame.moveLeft(std::clamp(frame.left(), area.left(), area.right() - frame.width() + 1));
    frame.moveTop(std::clamp(frame.top(), area.top(), area.bottom() - frame.height() + 1));
    return frame;
}

QRect place_on_screens(const QRect& frame, const QList<QRect>& screens) {
    const QRect* best = nullptr;
    qint64 most = -1, nearest = std::numeric_limits<qint64>::max();
    for (const QRect& screen : screens) {
        const qint64 shown = area_of(screen & frame);
        const qint64 distance = squared_distance(screen.center(), frame.center());
        if (shown < most || (shown == most && (shown > 0 || distance >= nearest))) continue;
        most = shown;
        nearest = distance;
        best = &screen;
    }
    return best ? place_inside(frame, *best) : frame;
}

bool lies_on_screens(const QRect& frame, const QList<QRect>& screens) {
    QRegion rest(frame);
    for (const QRect& screen : screens) rest -= screen;
    return rest.isEmpty();
}

std::string place_text(const WindowPlace& place) {
    return number_to_text(std::int32_t{place.corner.x()}) + ";" +
           number_to_text(std::int32_t{place.corner.y()}) + (place.maximised ? ";1" : ";0");
}

std::optional<WindowPlace> place_of_text(const std::string& text) {
    std::string_view rest = text;
    const auto x = whole_number(next_token(rest));
    const auto y = whole_number(next_token(rest));
    if (!x || !y) return {};
    return WindowPlace{QPoint(*x, *y), trim_blanks(next_token(rest)) == "1"};
}

QList<QRect> available_areas() {
    QList<QRect> areas;
    for (const QScreen* screen : QGuiApplication::screens()) {
        if (screen == QGuiApplication::primaryScreen()) {
            areas.prepend(screen->availableGeometry());
        } else {
            areas.append(screen->availableGeometry());
        }
    }
    return areas;
}

WindowPlacer::WindowPlacer(QWidget& window) : QObject(&window), window_(window) {
    connect(qGuiApp, &QGuiApplication::screenAdded, this, &WindowPlacer::watch_screens);
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &WindowPlacer::screens_changed);
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, &WindowPlacer::screens_changed);
    watch_screens();
    qApp->installEventFilter(this);
}

void WindowPlacer::watch_screens() {
    for (const QScreen* screen : QGuiApplication::screens()) {
        connect(screen, &QScreen::availableGeometryChanged, this, &WindowPlacer::screens_changed,
                Qt::UniqueConnection);
        connect(screen, &QScreen::geometryChanged, this, &WindowPlacer::screens_changed,
                Qt::UniqueConnection);
    }
}

/// The window system moves windows itself first.
void WindowPlacer::screens_changed() {
    QTimer::singleShot(0, this, [this] { keep_on(available_areas()); });
}

void WindowPlacer::keep_on(const QList<QRect>& screens) {
    if (screens.isEmpty() || window_.isMaximized() || window_.isFullScreen() || window_.isMinimized()) return;
    const QRect frame = window_.geometry().marginsAdded(frame_of(window_));
    if (!lies_on_screens(frame, screens)) put(window_, place_on_screens(frame, screens));
}

void WindowPlacer::open(const QSize& size, const std::optional<WindowPlace>& place) {
    const QList<QRect> screens = available_areas();
    const QSize outer = size.grownBy(frame_of(window_));
    if (place) {
        put(window_, place_on_screens(QRect(place->corner, outer), screens));
        if (place->maximised) window_.setWindowState(window_.windowState() | Qt::WindowMaximized);
    } else if (!screens.isEmpty()) {
        // The window system finds the place.
        window_.resize(outer.boundedTo(screens.front().size()).shrunkBy(frame_of(window_)));
    }
}

WindowPlace WindowPlacer::place() const {
    const bool maximised = window_.isMaximized();
    return {maximised ? window_.normalGeometry().topLeft() : window_.pos(), maximised};
}

QSize WindowPlacer::size() const {
    const QRect normal = window_.normalGeometry();
    return window_.isMaximized() && normal.isValid() ? normal.size() : window_.size();
}

/// The frames are known once the window is on show.
bool WindowPlacer::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::Show || !watched->isWidgetType()) return false;
    auto* shown = static_cast<QWidget*>(watched);
    if (shown == &window_) {
        screens_changed();
    } else if (const auto* dialog = qobject_cast<QDialog*>(shown); dialog && dialog->isWindow()) {
        const QSize most = shown->screen()->availableGeometry().size().shrunkBy(usual_frame);
        if (shown->width() > most.width() || shown->height() > most.height())
            shown->resize(shown->size().boundedTo(most));
    }
    return false;
}

}  // namespace anomalis::window
