#include <cmath>
#include <stdexcept>

#include <QAbstractButton>
#include <QScrollBar>

#include "show/handles/handle_marks.h"
#include "show/handles/section_handles.h"
#include "window/panels/charts_panel.h"
#include "window/tutorials/eyes.h"
#include "window/tutorials/hands.h"
#include "window/widgets/parameter_stepper.h"

// The bodies by bar and by hand.
namespace anomalis::tutorials {

namespace {

int number_of(window::FormSample& sample, const QString& name) {
    const Workspace& workspace = sample.session.workspace;
    for (int i = 1; i <= workspace.body_count; ++i)
        if (QString::fromStdString(workspace.body(i).name) == name) return i;
    throw std::runtime_error("the model has no body " + name.toStdString());
}

QPoint pixel_of(chart::GrapherWidget& widget, chart::Point surface) {
    return {static_cast<int>(std::lround(surface.x / chart::units_per_screen_pixel)),
            static_cast<int>(std::lround(widget.height() - surface.y / chart::units_per_screen_pixel))};
}

void move(chart::GrapherWidget& widget, QPoint at) {
    QMouseEvent event(QEvent::MouseMove, at, widget.mapToGlobal(at), Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(&widget, &event);
}

/// The pointer goes on its way, and its crosshair with it.
void leave(chart::GrapherWidget& widget) {
    QEvent event(QEvent::Leave);
    QApplication::sendEvent(&widget, &event);
}

}  // namespace

void step_bar(window::FormSample& sample, const Order& order) {
    const bool fine = order.manner == "fine";
    for (auto* bar : sample.form->findChildren<window::ParameterStepper*>()) {
        if (!bar->isVisible() || bar->accessibleName() != order.what) continue;
        if (bar->objectName().endsWith(fine ? "_0" : "_1")) continue;
        for (auto* half : bar->findChildren<QAbstractButton*>())
            if (half->text() == order.value && half->isEnabled())
                return QTest::mouseClick(half, Qt::LeftButton);
    }
    throw std::runtime_error("there is no bar " + order.what.toStdString() + " with " +
                             order.value.toStdString());
}

void click_body(window::FormSample& sample, const QString& name, bool plan) {
    const ModelBody& body = sample.session.workspace.body(number_of(sample, name));
    auto& charts = sample.form->charts();
    chart::GrapherWidget& widget = plan ? charts.plan_widget() : charts.chart_widget(edit::chart_section);
    if (!widget.isVisible()) throw std::runtime_error("the chart is not on show");
    const chart::Point inside =
        plan ? chart::Point{body.east, body.north}
             : chart::Point{body.distance.value + body.width.value / 4, body.top.value - 5};
    QTest::mouseClick(&widget, Qt::LeftButton, {}, pixel_of(widget, widget.chart().UserToSurface(inside)));
    leave(widget);
}

void choose_body(window::FormSample& sample, const QString& name) {
    sample.find<QScrollBar>("HScroll_body").setValue(number_of(sample, name));
}

void drag_body(window::FormSample& sample, const QString& name, const QString& way) {
    const QStringList words = way.split(' ');
    const double metres = words.at(0).toDouble();
    auto& charts = sample.form->charts();
    chart::GrapherWidget& widget = charts.chart_widget(edit::chart_section);
    chart::AX_Grapher& chart = widget.chart();
    const show::HandleView view{chart.ViewLimits(), chart.XAxisScale(), chart.YAxisScale(), chart.YAxisMin(),
                                sample.form->workbench().view.profile_window_max};
    const ModelBody& body = sample.session.workspace.body(number_of(sample, name));
    for (const show::Handle& handle : show::section_handles(sample.session.workspace, body, view)) {
        if (handle.kind != show::HandleKind::place) continue;
        const bool down = words.constLast() == "down", up = words.constLast() == "up";
        const double pixels = metres / chart::units_per_screen_pixel;
        const QPoint by =
            up || down
                ? QPoint(0, static_cast<int>(std::lround(pixels * chart.YAxisScale() * (down ? 1 : -1))))
                : QPoint(static_cast<int>(std::lround(pixels * chart.XAxisScale())), 0);
        const QPoint from = pixel_of(widget, show::handle_place(chart, handle));
        QTest::mousePress(&widget, Qt::LeftButton, {}, from);
        move(widget, from + by / 2);
        move(widget, from + by);
        QTest::mouseRelease(&widget, Qt::LeftButton, {}, from + by);
        return leave(widget);
    }
    throw std::runtime_error("no mark to drag " + name.toStdString() + " by");
}

}  // namespace anomalis::tutorials
