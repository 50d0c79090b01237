#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include <QPointF>
#include <QWidget>

#include "chart/ax_grapher.h"

class QMenu;
class QPinchGesture;

namespace anomalis::chart {

class ChartDialogs;
class ScreenDevice;

/// Hosts one chart: shows its picture, turns mouse, wheel, pinch and keys into its handlers, and holds its
/// pop-up menu. Pointer moves, and turns of a wheel, that arrive faster than the event loop turns are merged
/// into one.
class GrapherWidget : public QWidget {
  public:
    explicit GrapherWidget(QWidget* parent = nullptr);
    ~GrapherWidget() override;

    AX_Grapher& chart() { return chart_; }
    /// The chart's events go to the host after the widget has had its share. Not owned.
    void set_host(GrapherEvents* host);
    /// The pop-up menu `mnuPopUp`; hosts may add entries of their own.
    QMenu* menu() { return menu_; }
    /// Called just before the menu opens, with the pointer in surface units from the left and top edge.
    void set_menu_opening(std::function<void(float x, float y)> opening) {
        menu_opening_ = std::move(opening);
    }
    /// Called before (true) and after a picture of the chart is taken: a host takes off, and puts back, what
    /// it has drawn for the screen alone.
    void set_picture_taking(std::function<void(bool)> taking) { picture_taking_ = std::move(taking); }
    void tell_picture(bool begins) {
        if (picture_taking_) picture_taking_(begins);
    }
    /// What is painted above the picture, such as highlight and handles, is left out while it is false.
    void show_top_layer(bool show);
    /// Replaces the dialogs of the menu's actions. Not owned; null has those of the window that the chart
    /// stands in, a `ChartDialogsHost`, or else Qt's.
    void set_dialogs(ChartDialogs* dialogs);
    ChartDialogs& dialogs();

    QSize sizeHint() const override { return {600, 240}; }

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;

  private:
    class Relay;
    struct PendingMove {
        int buttons;
        int shift;
        QPointF position;
    };

    struct PendingWheel {
        int shift;
        QPointF position;
        int turned;    ///< eighths of a degree, forward positive
        double aside;  ///< pixels to pan, to the right positive
    };

    int border() const;
    QPointF on_surface(QPointF position) const;
    void fit_surface();
    void post_delivery();
    void show_pointer();
    /// Hands over what has been gathered, in the order in which it came.
    void deliver();
    void deliver_move();
    void deliver_wheel();
    void pinch(const QPinchGesture& gesture);
    bool press_key(const QKeyEvent& event);
    void open_menu(float x, float y);

    std::unique_ptr<ScreenDevice> screen_;
    AX_Grapher chart_;
    std::unique_ptr<Relay> relay_;
    std::unique_ptr<ChartDialogs> own_dialogs_;
    ChartDialogs* dialogs_ = nullptr;
    QMenu* menu_;
    std::function<void(float, float)> menu_opening_;
    std::function<void(bool)> picture_taking_;
    bool top_layer_shown_ = true;
    std::optional<PendingMove> pending_move_;
    std::optional<PendingWheel> pending_wheel_;
    bool delivery_posted_ = false;
    PointerShape pointer_ = PointerShape::usual;  ///< as the widget shows it
    std::pair<double, QPointF> last_pinch_{1.0, QPointF()};
};

}  // namespace anomalis::chart
