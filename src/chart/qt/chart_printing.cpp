#include "chart/qt/chart_printing.h"

#include <QPainter>
#include <QPrinter>

#include "chart/ax_grapher.h"
#include "chart/qt/painter_device.h"
#include "core/failure.h"

namespace anomalis::chart {

void print_chart(AX_Grapher& chart, QPrinter& printer) {
    const DrawingDevice* surface = chart.Surface();
    if (!surface) throw Fault("the chart has no surface yet");
    QPainter painter;
    if (!painter.begin(&printer)) throw Fault("the printer cannot be opened");
    const double dots = printer.resolution();
    const QRectF printable = printer.pageLayout().paintRect(QPageLayout::Inch);
    PainterDevice page(surface->width(), surface->height(), &painter);
    const SurfaceMapping mapping =
        print_mapping(surface->width(), surface->height(), printable.width() * units_per_inch,
                      printable.height() * units_per_inch, dots);
    const int status =
        chart.DrawTo(page, OutputTarget::printer, mapping, SurfaceSize{surface->width(), surface->height()});
    painter.end();
    if (status != 0) throw Fault("the chart cannot be drawn");
}

}  // namespace anomalis::chart
