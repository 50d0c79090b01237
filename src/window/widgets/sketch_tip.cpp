#include "window/widgets/sketch_tip.h"

#include <QBuffer>

#include "chart/qt/screen_device.h"
#include "chart/surface_mapping.h"
#include "core/body_parameters.h"
#include "core/model_body.h"
#include "show/sketch/draw_sketch.h"
#include "window/shell/look.h"

namespace anomalis::window {

namespace {

chart::Colour chart_colour(const QColor& colour) {
    return chart::colour_of(colour.red(), colour.green(), colour.blue());
}

show::SketchColours colours_of(const QPalette& palette) {
    const bool dark = is_dark(palette);
    return {.body = chart_colour(QColor(dark ? "#3a444f" : "#dde4ea")),
            .ink = chart_colour(palette.color(QPalette::ToolTipText)),
            .quiet = chart_colour(quiet_text(palette)),
            .accent = chart_colour(palette.color(QPalette::Highlight)),
            .ground = chart_colour(QColor(dark ? "#c79a5b" : "#7a4f1e"))};
}

QString png_of(const QImage& image) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return QString::fromLatin1(bytes.toBase64());
}

}  // namespace

QImage sketch_picture(const Workspace& workspace, const ModelBody& body, int param_code,
                      const QPalette& palette, double pixel_ratio) {
    if (param_code < first_param_code || param_code > last_param_code) return {};
    const auto sketch = show::parameter_sketch(workspace, body, param_code);
    if (!sketch) return {};
    chart::ScreenDevice screen;
    screen.resize(sketch_size, pixel_ratio);
    screen.set_mapping(chart::screen_mapping(screen.height()));
    screen.select_layer(chart::DrawingDevice::Layer::surface);
    screen.clear(chart_colour(palette.color(QPalette::ToolTipBase)), 1);
    show::draw_sketch(*sketch, colours_of(palette), screen);
    screen.present();
    return screen.picture();
}

QString sketch_tip(const Workspace& workspace, const ModelBody* body, int param_code, const QString& words,
                   const QPalette& palette, double pixel_ratio) {
    if (!body || words.isEmpty()) return words;
    const QImage picture = sketch_picture(workspace, *body, param_code, palette, pixel_ratio);
    if (picture.isNull()) return words;
    return QString("<p><img src=\"data:image/png;base64,%1\" width=\"%2\" height=\"%3\"></p><p>%4</p>")
        .arg(png_of(picture))
        .arg(sketch_size.width())
        .arg(sketch_size.height())
        .arg(words.toHtmlEscaped().replace('\n', "<br>"));
}

}  // namespace anomalis::window
