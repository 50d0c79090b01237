#include "chart/qt/chart_printing.h"

#include <QBuffer>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>

#include "chart/ax_grapher.h"
#include "chart/qt/painter_device.h"
#include "core/failure.h"

namespace anomalis::chart {

void paint_chart(AX_Grapher& chart, QPagedPaintDevice& paper) {
    const DrawingDevice* surface = chart.Surface();
    if (!surface) throw Fault("the chart has no surface yet");
    QPainter painter;
    if (!painter.begin(&paper)) throw Fault("the printer cannot be opened");
    const double dots = paper.logicalDpiX();
    const QRectF printable = paper.pageLayout().paintRect(QPageLayout::Inch);
    PainterDevice page(surface->width(), surface->height(), &painter);
    const SurfaceMapping mapping =
        print_mapping(surface->width(), surface->height(), printable.width() * units_per_inch,
                      printable.height() * units_per_inch, dots);
    const int status =
        chart.DrawTo(page, OutputTarget::printer, mapping, SurfaceSize{surface->width(), surface->height()});
    painter.end();
    if (status != 0) throw Fault("the chart cannot be drawn");
}

void print_safely(QPrinter& printer, const std::function<void(QPagedPaintDevice&)>& draw,
                  const std::function<void(const std::string& path, std::string_view contents)>& write) {
    const QString path = printer.outputFileName();
    if (path.isEmpty()) {
        draw(printer);
        if (printer.printerState() == QPrinter::Error) throw Fault("the printer does not take the pages");
        return;
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setResolution(printer.resolution());
    writer.setPageLayout(printer.pageLayout());
    writer.setTitle("Anomalis");
    draw(writer);
    write(path.toStdString(), std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
}

}  // namespace anomalis::chart
