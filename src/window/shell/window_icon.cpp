#include "window/shell/window_icon.h"

#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

/// The drawings stand in a static library, which a program takes in only as far as it is asked for.
static void hold_drawings() {
    Q_INIT_RESOURCE(icons);
}

namespace anomalis::window {

namespace {

QPixmap drawn(int size) {
    QSvgRenderer drawing(size < 32 ? QString(":/icons/anomalis-small.svg") : QString(":/icons/anomalis.svg"));
    QPixmap picture(size, size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    drawing.render(&painter);
    return picture;
}

}  // namespace

QIcon window_icon() {
    hold_drawings();
    QIcon icon;
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256}) icon.addPixmap(drawn(size));
    return icon;
}

}  // namespace anomalis::window
