#include "chart/qt/picture.h"

#include <algorithm>
#include <cmath>

#include <QBuffer>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgGenerator>

#include "chart/emf_device.h"
#include "chart/qt/painter_device.h"
#include "chart/qt/screen_device.h"
#include "chart/qt/svg_texts.h"
#include "core/failure.h"
#include "core/text.h"

namespace anomalis::chart {

namespace {

constexpr int pdf_dots_per_inch = 1200;

std::string bytes_of(const QByteArray& bytes) {
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

void open(QPainter& painter, QPaintDevice* device) {
    if (!painter.begin(device)) throw Fault("the picture cannot be drawn");
}

std::string png_bytes(SurfaceSize size, const DrawPage& draw, double scale) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImage image = page_image(size, draw, scale);
    const int dots_per_metre = static_cast<int>(std::lround(scale * screen_dots_per_inch / 0.0254));
    image.setDevicePixelRatio(1);
    image.setDotsPerMeterX(dots_per_metre);
    image.setDotsPerMeterY(dots_per_metre);
    if (!image.save(&buffer, "PNG")) throw Fault("the picture cannot be written");
    return bytes_of(bytes);
}

/// Texts of charts come from files; an XML document with one of these characters in it is none.
std::string without_forbidden(std::string svg) {
    const auto is_forbidden = [](char letter) {
        return static_cast<unsigned char>(letter) < 0x20 && letter != '\t' && letter != '\n' &&
               letter != '\r';
    };
    std::replace_if(svg.begin(), svg.end(), is_forbidden, ' ');
    for (const char* no_character : {"\xEF\xBF\xBE", "\xEF\xBF\xBF"})
        for (auto at = svg.find(no_character); at != std::string::npos; at = svg.find(no_character, at))
            svg.replace(at, 3, "\xEF\xBF\xBD");
    return svg;
}

std::string svg_bytes(SurfaceSize size, const DrawPage& draw) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    const QSize pixels(static_cast<int>(std::ceil(size.width / units_per_screen_pixel)),
                       static_cast<int>(std::ceil(size.height / units_per_screen_pixel)));
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setResolution(static_cast<int>(screen_dots_per_inch));
    generator.setSize(pixels);
    generator.setViewBox(QRect(QPoint(0, 0), pixels));
    generator.setTitle("Anomalis");
    QPainter painter;
    open(painter, &generator);
    PainterDevice device(size.width, size.height, &painter);
    draw(device, OutputTarget::metafile, screen_mapping(size.height));
    painter.end();
    return with_held_texts(without_forbidden(bytes_of(bytes)));
}

std::string pdf_bytes(SurfaceSize size, std::span<const DrawPage> sheets) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setResolution(pdf_dots_per_inch);
    writer.setPageSize(QPageSize(QSizeF(size.width / units_per_inch, size.height / units_per_inch),
                                 QPageSize::Inch, {}, QPageSize::ExactMatch));
    writer.setPageMargins(QMarginsF(0, 0, 0, 0));
    writer.setTitle("Anomalis");
    paint_sheets(writer, size, sheets);
    return bytes_of(bytes);
}

std::string emf_page(SurfaceSize size, const DrawPage& draw) {
    const PainterDevice measure(size.width, size.height);
    EmfDevice device(size.width, size.height, measure);
    device.begin_page();
    draw(device, OutputTarget::metafile, device.whole());
    device.end_page();
    return device.bytes();
}

}  // namespace

PictureFormat picture_format(std::string_view path) {
    const auto dot = path.rfind('.');
    const std::string_view ending = dot == std::string_view::npos ? "" : path.substr(dot + 1);
    if (equal_ignoring_case(ending, "png")) return PictureFormat::png;
    if (equal_ignoring_case(ending, "svg")) return PictureFormat::svg;
    if (equal_ignoring_case(ending, "pdf")) return PictureFormat::pdf;
    if (equal_ignoring_case(ending, "emf")) return PictureFormat::emf;
    throw Fault("A picture's name must end in .png, .svg, .pdf or .emf: " + std::string(path));
}

QImage page_image(SurfaceSize size, const DrawPage& draw, double scale) {
    // A painter takes no pixels larger than those of a screen: what is smaller is drawn larger and reduced.
    if (scale < 1.0) {
        const QImage large = page_image(size, draw, std::max(1.0, 2.0 * scale));
        const double reduction = scale / large.devicePixelRatio();
        QImage image = large.scaled(std::max(1, static_cast<int>(std::lround(large.width() * reduction))),
                                    std::max(1, static_cast<int>(std::lround(large.height() * reduction))),
                                    Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        image.setDevicePixelRatio(1);
        return image;
    }
    ScreenDevice device;
    device.resize(QSize(static_cast<int>(std::ceil(size.width / units_per_screen_pixel)),
                        static_cast<int>(std::ceil(size.height / units_per_screen_pixel))),
                  scale);
    device.select_layer(DrawingDevice::Layer::surface);
    device.clear(white, 1);
    draw(device, OutputTarget::screen_copy, screen_mapping(size.height));
    device.present();
    return device.picture();
}

std::string page_bytes(PictureFormat format, SurfaceSize size, const DrawPage& draw, double scale) {
    switch (format) {
        case PictureFormat::png:
            return png_bytes(size, draw, scale);
        case PictureFormat::svg:
            return svg_bytes(size, draw);
        case PictureFormat::pdf:
            return pdf_bytes(size, std::span(&draw, 1));
        case PictureFormat::emf:
            return emf_page(size, draw);
    }
    throw Fault(FaultKind::invalid_call);
}

std::string sheets_bytes(PictureFormat format, SurfaceSize size, std::span<const DrawPage> sheets) {
    if (format == PictureFormat::pdf) return pdf_bytes(size, sheets);
    return page_bytes(format, size, sheets.front(), sheet_dots_per_inch / screen_dots_per_inch);
}

void paint_sheets(QPagedPaintDevice& paper, SurfaceSize size, std::span<const DrawPage> sheets) {
    QPainter painter;
    open(painter, &paper);
    const double dots = paper.logicalDpiX();
    const QRectF page = paper.pageLayout().fullRect(QPageLayout::Inch);
    const QRectF printable = paper.pageLayout().paintRect(QPageLayout::Inch);
    const double fit = std::min(
        {1.0, page.width() * units_per_inch / size.width, page.height() * units_per_inch / size.height});
    SurfaceMapping mapping;
    mapping.device_scale = fit * dots / units_per_inch;
    mapping.device_offset_x =
        (page.width() / 2 - printable.left()) * dots - size.width / 2 * mapping.device_scale;
    mapping.device_offset_y =
        (page.height() / 2 - printable.top()) * dots + size.height / 2 * mapping.device_scale;
    mapping.pen_factor = fit * dots / screen_dots_per_inch;
    PainterDevice device(size.width, size.height, &painter);
    for (std::size_t i = 0; i < sheets.size(); ++i) {
        if (i > 0 && !paper.newPage()) throw Fault("there is no further page");
        sheets[i](device, OutputTarget::printer, mapping);
    }
    if (!painter.end()) throw Fault("the page cannot be finished");
}

std::string chart_bytes(PictureFormat format, AX_Grapher& chart, double scale) {
    const DrawingDevice* surface = chart.Surface();
    if (!surface) throw Fault("the chart has no surface yet");
    const SurfaceSize size{surface->width(), surface->height()};
    return page_bytes(
        format, size,
        [&](DrawingDevice& device, OutputTarget kind, const SurfaceMapping& mapping) {
            if (chart.DrawTo(device, kind, mapping, size) != 0) throw Fault("the chart cannot be drawn");
        },
        scale);
}

}  // namespace anomalis::chart
