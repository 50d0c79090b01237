#pragma once

#include <array>

#include <QWidget>

namespace anomalis::flow {
class LimitBars;
}  // namespace anomalis::flow

namespace anomalis::window {

/// One of the two bars; it tells where on itself the mouse is.
class LimitBar : public QWidget {
    Q_OBJECT

  public:
    LimitBar(int index, QWidget* parent);

  signals:
    void pressed(double x);
    void moved(double x);
    void released();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
};

/// `Picture_inversion_limits`: the strip over the plot of a chart that the two bars move in. Between the bars
/// the mouse reaches the chart.
class LimitStripView : public QWidget {
    Q_OBJECT

  public:
    static constexpr double twips_a_pixel = 15;

    explicit LimitStripView(QWidget& chart);

    LimitBar& bar(int index) { return *bars_.at(static_cast<std::size_t>(index)); }
    /// Puts strip and bars where they belong over the plot, given in pixels of the chart.
    void place(const QRectF& plot, const flow::LimitBars& bars, bool shown);

  signals:
    /// The chart was painted: its plot may lie elsewhere or show another part of the line.
    void chart_painted();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    std::array<LimitBar*, 2> bars_{};
};

}  // namespace anomalis::window
