#include "chart/qt/dark_ground.h"

#include <QApplication>
#include <QEvent>
#include <QPalette>
#include <QVariant>
#include <QWidget>

#include "chart/qt/grapher_widget.h"

namespace anomalis::chart {

namespace {

constexpr const char* light_charts = "light_charts";
constexpr int middle_grey = 128;

Colour of(const QColor& colour) {
    return colour_of(colour.red(), colour.green(), colour.blue());
}

}  // namespace

bool follows_dark_desktop() {
    return qApp == nullptr || !qApp->property(light_charts).toBool();
}

void follow_dark_desktop(bool follow) {
    if (qApp == nullptr || follow == follows_dark_desktop()) return;
    qApp->setProperty(light_charts, !follow);
    for (QWidget* widget : QApplication::allWidgets()) {
        QEvent change(QEvent::PaletteChange);
        if (dynamic_cast<GrapherWidget*>(widget) != nullptr) QApplication::sendEvent(widget, &change);
        widget->update();
    }
}

std::optional<ScreenPalette> screen_palette(const QPalette& palette) {
    const QColor ground = palette.color(QPalette::Active, QPalette::Base);
    if (!follows_dark_desktop() || ground.lightness() >= middle_grey) return std::nullopt;
    return ScreenPalette{of(ground), of(palette.color(QPalette::Active, QPalette::Text))};
}

}  // namespace anomalis::chart
