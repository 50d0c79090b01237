#include "chart/qt/pointer_cursor.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace anomalis::chart {

namespace {

constexpr int side = 24, middle = 12;  // pixels
constexpr double radius = 6.5;

/// Three quarters of a circle with an arrow head at its end, open to the right.
QPainterPath turning_arrow() {
    const QRectF circle(middle - radius, middle - radius, 2 * radius, 2 * radius);
    QPainterPath path;
    path.arcMoveTo(circle, 45);
    path.arcTo(circle, 45, 270);
    const QPointF end = path.currentPosition();
    path.moveTo(end + QPointF(-4.5, 0.5));
    path.lineTo(end + QPointF(0.5, 0));
    path.lineTo(end + QPointF(0, 5));
    return path;
}

/// No desktop has a cursor for turning. Black in a white rim, legible on any ground.
QCursor turning_cursor() {
    QPixmap picture(side, side);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPainterPath arrow = turning_arrow();
    painter.strokePath(arrow, QPen(Qt::white, 4.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.strokePath(arrow, QPen(Qt::black, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.end();
    return QCursor(picture, middle, middle);
}

}  // namespace

QCursor pointer_cursor(PointerShape shape) {
    switch (shape) {
        case PointerShape::choose:
            return Qt::PointingHandCursor;
        case PointerShape::move:
            return Qt::SizeAllCursor;
        case PointerShape::across:
            return Qt::SizeHorCursor;
        case PointerShape::upright:
            return Qt::SizeVerCursor;
        case PointerShape::falling:
            return Qt::SizeFDiagCursor;
        case PointerShape::rising:
            return Qt::SizeBDiagCursor;
        case PointerShape::turn:
            return turning_cursor();
        case PointerShape::usual:
            break;
    }
    return Qt::ArrowCursor;
}

}  // namespace anomalis::chart
