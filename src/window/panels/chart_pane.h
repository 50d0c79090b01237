#pragma once

#include <QWidget>

#include "chart/qt/grapher_widget.h"
#include "window/widgets/stepper_bar.h"

namespace anomalis::window {

/// A chart with the two bars of its vertical window: `VScroll_zoom_i` and `VScroll_pan_i`.
class ChartPane : public QWidget {
    Q_OBJECT

  public:
    ChartPane(int index, QWidget* parent = nullptr);
    chart::AX_Grapher& chart() { return widget_->chart(); }
    chart::GrapherWidget& widget() { return *widget_; }
    /// What the bars take of the width, pixels.
    int room_beside() const { return room_beside_; }
    /// Takes the bars away, and what is painted above the picture; their room stays.
    void set_plain(bool plain);

  signals:
    void zoom_stepped(int direction);
    void pan_stepped(int direction);

  private:
    chart::GrapherWidget* widget_;
    StepperBar* zoom_;
    StepperBar* pan_;
    int room_beside_ = 0;
};

}  // namespace anomalis::window
