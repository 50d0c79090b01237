#include "window/widgets/limit_strip.h"

#include <cmath>

#include <QMouseEvent>
#include <QPainter>

#include "flow/limit_bars.h"
#include "window/widgets/panel.h"

namespace anomalis::window {

namespace {

constexpr int margin = 12;  // pixels beside the plot, for a bar at its end
constexpr int handle_height = 26;
constexpr int line_width = 2;
constexpr int corner = 3;
constexpr int line_opacity = 110;

QRect handle_of(const QSize& bar) {
    return {0, (bar.height() - handle_height) / 2, bar.width(), std::min(handle_height, bar.height())};
}
QRect line_of(const QSize& bar) {
    return {(bar.width() - line_width) / 2, 0, line_width, bar.height()};
}

}  // namespace

LimitBar::LimitBar(int index, QWidget* parent) : QWidget(parent) {
    const QString tip = index == 0
                            ? tr("Move this slider to select the first point to be used in the inversion")
                            : tr("Move this slider to select the last point to be used in the inversion");
    name_control(*this, index == 0 ? "Image_inversion_limit_0" : "Image_inversion_limit_1",
                 index == 0 ? tr("First point of the inversion") : tr("Last point of the inversion"), tip);
    setCursor(Qt::SizeHorCursor);
}

void LimitBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor colour = palette().color(QPalette::Highlight);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawRoundedRect(handle_of(size()), corner, corner);
    colour.setAlpha(line_opacity);
    painter.fillRect(line_of(size()), colour);
}

void LimitBar::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) emit pressed(event->position().x());
}

void LimitBar::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons().testFlag(Qt::LeftButton)) emit moved(event->position().x());
}

void LimitBar::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) emit released();
}

LimitStripView::LimitStripView(QWidget& chart) : QWidget(&chart) {
    setObjectName("Picture_inversion_limits");
    setToolTip(tr("The stations between the bars are used in the inversion"));
    for (int i = 0; i < 2; ++i) bars_.at(static_cast<std::size_t>(i)) = new LimitBar(i, this);
    chart.installEventFilter(this);
    hide();
}

bool LimitStripView::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parent() && event->type() == QEvent::Paint) emit chart_painted();
    return false;
}

void LimitStripView::place(const QRectF& plot, const flow::LimitBars& bars, bool shown) {
    QRegion region;
    if (shown) {
        const QRect place(static_cast<int>(std::lround(plot.left())) - margin,
                          static_cast<int>(std::lround(plot.top())),
                          static_cast<int>(std::lround(plot.width())) + 2 * margin,
                          static_cast<int>(std::lround(plot.height())));
        if (geometry() != place) setGeometry(place);
        for (int i = 0; i < 2; ++i) {
            const flow::LimitBars::Bar& bar = bars.bar(i);
            LimitBar& view = *bars_.at(static_cast<std::size_t>(i));
            const QRect where(margin + static_cast<int>(std::lround(bar.left / twips_a_pixel)), 0,
                              static_cast<int>(std::lround(bar.width / twips_a_pixel)), place.height());
            if (view.geometry() != where) view.setGeometry(where);
            if (view.isHidden() == bar.in_use) view.setVisible(bar.in_use);
            if (!bar.in_use) continue;
            region += handle_of(where.size()).translated(where.topLeft());
            region += line_of(where.size()).translated(where.topLeft());
        }
    }
    const bool visible = !region.isEmpty();
    if (visible && mask() != region) setMask(region);
    if (isHidden() == visible) setVisible(visible);
}

}  // namespace anomalis::window
