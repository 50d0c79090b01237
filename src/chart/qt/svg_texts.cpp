#include "chart/qt/svg_texts.h"

#include <string_view>
#include <utility>

#include <QXmlStreamReader>

#include "chart/qt/painter_device.h"

namespace anomalis::chart {

namespace {

constexpr std::string_view text_begin = "<text ", text_end = "</text>", family = "font-family=\"";
constexpr int least_bold = 600;

/// One text with its attributes.
struct SvgText {
    std::string words;
    Font font;
};

SvgText read(std::string_view element) {
    SvgText text;
    QXmlStreamReader reader(QByteArray(element.data(), static_cast<qsizetype>(element.size())));
    if (!reader.readNextStartElement()) return text;
    const QXmlStreamAttributes attributes = reader.attributes();
    constexpr double points_a_pixel = 72.0 / screen_dots_per_inch;
    text.font.name = attributes.value(QLatin1String("font-family")).toString().toStdString();
    text.font.size = attributes.value(QLatin1String("font-size")).toDouble() * points_a_pixel;
    text.font.bold = attributes.value(QLatin1String("font-weight")).toInt() >= least_bold;
    text.font.italic = attributes.value(QLatin1String("font-style")) == u"italic";
    text.words = reader.readElementText().toStdString();
    return text;
}

std::string held(const SvgText& text, const PainterDevice& measure) {
    const double width = measure.measure(text.words, text.font).width / units_per_screen_pixel;
    if (!(width > 0.0)) return {};
    return "textLength=\"" + QByteArray::number(width, 'f', 3).toStdString() +
           "\" lengthAdjust=\"spacingAndGlyphs\" ";
}

/// Names a family of last resort behind every font: without one a browser that lacks the first sets its texts
/// with serifs.
std::string with_last_resort(std::string svg) {
    constexpr std::string_view last_resort = ", sans-serif";
    for (auto at = svg.find(family); at != std::string::npos; at = svg.find(family, at + 1)) {
        const auto end = svg.find('"', at + family.size());
        if (end == std::string::npos) break;
        svg.insert(end, last_resort);
    }
    return svg;
}

}  // namespace

std::string with_held_texts(const std::string& svg) {
    const PainterDevice measure(0, 0);
    std::string out;
    std::size_t done = 0;
    for (auto at = svg.find(text_begin); at != std::string::npos; at = svg.find(text_begin, done)) {
        const auto end = svg.find(text_end, at);
        if (end == std::string::npos) break;
        const std::size_t attributes = at + text_begin.size(), next = end + text_end.size();
        out.append(svg, done, attributes - done);
        out += held(read(std::string_view(svg).substr(at, next - at)), measure);
        out.append(svg, attributes, next - attributes);
        done = next;
    }
    out.append(svg, done);
    return with_last_resort(std::move(out));
}

}  // namespace anomalis::chart
