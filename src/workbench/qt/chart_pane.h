#pragma once

#include <QWidget>

#include "chart/qt/grapher_widget.h"
#include "workbench/qt/stepper_bar.h"

namespace anomalis {

/// A chart with the two bars of its vertical window: `VScroll_zoom_i` and `VScroll_pan_i`.
class ChartPane : public QWidget {
    Q_OBJECT

  public:
    ChartPane(int index, QWidget* parent = nullptr);
    AX_Grapher& chart() { return widget_->chart(); }
    GrapherWidget& widget() { return *widget_; }

  signals:
    void zoom_stepped(int direction);
    void pan_stepped(int direction);

  private:
    GrapherWidget* widget_;
};

}  // namespace anomalis
