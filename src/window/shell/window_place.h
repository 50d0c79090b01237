#pragma once

#include <optional>
#include <string>

#include <QList>
#include <QMargins>
#include <QObject>
#include <QRect>

class QWidget;

// Where windows stand on the screens that are there. Rectangles are in the desktop's pixels, frames included.
namespace anomalis::window {

/// The nearest place inside an area: the size is cut to it, then the rectangle is moved.
QRect place_inside(QRect frame, const QRect& area);

/// The same on the screen that shows most of the rectangle, or nearest to it when none shows any; as it is
/// without screens.
QRect place_on_screens(const QRect& frame, const QList<QRect>& screens);

/// True when every part of the rectangle lies on one of the screens, as it may over two beside each other.
bool lies_on_screens(const QRect& frame, const QList<QRect>& screens);

/// Where a window stood when the program was left.
struct WindowPlace {
    QPoint corner;  ///< upper left, of the frame
    bool maximised = false;
    bool operator==(const WindowPlace&) const = default;
};
/// As the settings keep it: " 12; 40;0". A text of no sense gives nothing.
std::string place_text(const WindowPlace& place);
std::optional<WindowPlace> place_of_text(const std::string& text);

/// Keeps one window, and every dialog as it opens, on the screens: at the start, and when a screen goes,
/// comes or changes.
class WindowPlacer : public QObject {
    Q_OBJECT

  public:
    explicit WindowPlacer(QWidget& window);

    /// A window of this size without its frame, at a place of an earlier session if there is one.
    void open(const QSize& size, const std::optional<WindowPlace>& place);
    /// Of the window as it stands; of a maximised one the place that it would go back to.
    WindowPlace place() const;
    /// Size without the frame, in the same sense.
    QSize size() const;
    /// Moves and cuts the window when it does not lie on these screens.
    void keep_on(const QList<QRect>& screens);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void watch_screens();
    void screens_changed();

    QWidget& window_;
};

/// What windows may use of each screen, the primary one first.
QList<QRect> available_areas();

}  // namespace anomalis::window
