#pragma once

#include <QWidget>

#include "chart/qt/grapher_widget.h"

class QToolButton;

namespace anomalis {

/// Two small arrows in the place of a scroll bar used as a stepper: up and down, or in and out.
class StepperBar : public QWidget {
    Q_OBJECT

  public:
    struct Side {
        QString text;
        QString tip;
        int direction;  ///< +1 or -1
    };
    StepperBar(const QString& object_name, const Side& upper, const Side& lower, QWidget* parent = nullptr);

  signals:
    void stepped(int direction);
};

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
