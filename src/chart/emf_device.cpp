#include "chart/emf_device.h"

#include <libEMF/emf.h>

// The library's headers define these as macros.
#undef min
#undef max

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <numbers>
#include <stdexcept>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "chart/emf_file.h"
#include "core/utf8.h"

namespace anomalis::chart {

namespace {

// Eight times the usual 1/300 inch: curves stay smooth, and the coordinates of all but the widest pages fit
// into 16 bits.
constexpr int refinement = 8;
// Old readers take no longer polyline in one record.
constexpr std::size_t longest_polyline = 8192;
constexpr double units_per_point = 20.0;
constexpr double degree = std::numbers::pi / 180.0;
constexpr std::array<WCHAR, 20> description{'V', 'i', 's', 't', 'a', 'r', 'o', 0,   'E', 'M',
                                            'F', ' ', 'o', 'u', 't', 'p', 'u', 't', 0,   0};

/// A text as UTF-16; `ends` tells for each unit where in the UTF-8 text its character ends.
struct WideText {
    std::vector<WCHAR> units;
    std::vector<std::size_t> ends;
};

WideText utf16(std::string_view text) {
    constexpr char32_t replacement = 0xFFFD;
    WideText out;
    std::u16string units;
    for (std::size_t i = 0; i < text.size();) {
        const Utf8Character found = first_character(text.substr(i));
        i += std::max<std::size_t>(found.length, 1);
        units.clear();
        append_utf16(units, found.length > 0 ? found.code : replacement);
        for (const char16_t unit : units) {
            out.units.push_back(static_cast<WCHAR>(unit));
            out.ends.push_back(i);
        }
    }
    return out;
}

DWORD pen_style(LineStyle style) {
    switch (style) {
        case LineStyle::dash:
            return PS_DASH;
        case LineStyle::dot:
            return PS_DOT;
        case LineStyle::dash_dot:
            return PS_DASHDOT;
        case LineStyle::dash_dot_dot:
            return PS_DASHDOTDOT;
        default:
            return PS_SOLID;
    }
}

}  // namespace

struct EmfDevice::Context {
    Context(double w, double h, const DrawingDevice& device)
        : width(w),
          height(h),
          measure(device),
          frame(metafile_frame(w, h, refinement)),
          mapping(frame.mapping) {}
    ~Context() { close(); }

    void require_open() const {
        if (dc == 0) throw std::runtime_error("the metafile is not open");
    }
    POINT point(Point p) const {
        const Point device = mapping.to_device(p);
        return {static_cast<LONG>(std::lround(device.x)), static_cast<LONG>(std::lround(device.y))};
    }
    const std::vector<POINT>& all(std::span<const Point> points) {
        scratch.clear();
        for (const Point& p : points) scratch.push_back(point(p));
        return scratch;
    }
    void select(HGDIOBJ object, HGDIOBJ& selected) {
        if (object == selected) return;
        SelectObject(dc, object);
        selected = object;
    }
    void select_pen(const Pen& pen);
    void select_brush(Colour colour);
    void select_font(const Font& font, int tenths);
    /// How far each unit of a text moves on. Told in the file, a text keeps its width in a reader that has
    /// another font, and readers that insist on these numbers refuse no long text for want of them.
    std::vector<INT> advances(std::string_view text, const std::vector<std::size_t>& ends, const Font& font) {
        std::vector<INT> steps;
        long so_far = 0;
        for (const std::size_t end : ends) {
            const double reach = measure.measure(text.substr(0, end), font).width;
            const long reached = std::lround(reach * mapping.device_scale);
            steps.push_back(static_cast<INT>(reached - so_far));
            so_far = reached;
        }
        return steps;
    }
    HGDIOBJ made(HGDIOBJ object) {
        if (object == 0) throw std::runtime_error("the metafile has no room for another pen or font");
        objects.push_back(object);
        return object;
    }
    int close();

    double width;
    double height;
    const DrawingDevice& measure;
    MetafileFrame frame;
    SurfaceMapping mapping;

    HDC dc = 0;
    FILE* stream = nullptr;
    char* memory = nullptr;
    std::size_t size = 0;
    std::string bytes;
    std::vector<POINT> scratch;
    std::vector<HGDIOBJ> objects;
    std::map<std::tuple<Colour, long, int>, HGDIOBJ> pens;
    std::map<Colour, HGDIOBJ> brushes;
    std::map<std::tuple<std::string, long, bool, bool, int>, HGDIOBJ> fonts;
    HGDIOBJ pen_in_use = 0;
    HGDIOBJ brush_in_use = 0;
    HGDIOBJ font_in_use = 0;
};

void EmfDevice::Context::select_pen(const Pen& pen) {
    const long wide = std::max(1L, std::lround(pen.width * mapping.pen_factor));
    HGDIOBJ& found = pens[{pen.colour, wide, static_cast<int>(pen.style)}];
    if (found == 0) {
        const LOGBRUSH brush{BS_SOLID, static_cast<COLORREF>(pen.colour), 0};
        const DWORD style = PS_GEOMETRIC | PS_ENDCAP_FLAT | PS_JOIN_ROUND | pen_style(pen.style);
        found = made(ExtCreatePen(style, static_cast<DWORD>(wide), &brush, 0, nullptr));
    }
    select(found, pen_in_use);
}

void EmfDevice::Context::select_brush(Colour colour) {
    HGDIOBJ& found = brushes[colour];
    if (found == 0) found = made(CreateSolidBrush(static_cast<COLORREF>(colour)));
    select(found, brush_in_use);
}

void EmfDevice::Context::select_font(const Font& font, int tenths) {
    const long tall = std::max(1L, std::lround(font.drawn_size() * units_per_point * mapping.device_scale));
    HGDIOBJ& found = fonts[{font.name, tall, font.bold, font.italic, tenths}];
    if (found == 0) {
        LOGFONTW record{};
        // Negative: the height of the characters, not of the cell.
        record.lfHeight = static_cast<LONG>(-tall);
        record.lfEscapement = tenths;
        record.lfOrientation = tenths;
        record.lfWeight = font.bold ? FW_BOLD : FW_NORMAL;
        record.lfItalic = font.italic ? 1 : 0;
        record.lfCharSet = DEFAULT_CHARSET;
        const std::vector<WCHAR> name = utf16(font.name).units;
        std::copy_n(name.begin(), std::min(name.size(), std::size(record.lfFaceName) - 1), record.lfFaceName);
        found = made(CreateFontIndirectW(&record));
    }
    select(found, font_in_use);
}

/// Ends the metafile and frees everything; 0 when the stream took every byte.
int EmfDevice::Context::close() {
    int status = 0;
    if (dc != 0) {
        const HENHMETAFILE metafile = CloseEnhMetaFileWithFILE(dc);
        status = metafile == 0 ? -1 : 0;
        for (HGDIOBJ object : objects) DeleteObject(object);
        if (metafile != 0) DeleteEnhMetaFile(metafile);
        dc = 0;
    }
    objects.clear();
    pens.clear();
    brushes.clear();
    fonts.clear();
    pen_in_use = brush_in_use = font_in_use = 0;
    if (stream != nullptr) {
        if (std::ferror(stream) != 0) status = -1;
        if (std::fclose(stream) != 0) status = -1;
        stream = nullptr;
        if (memory != nullptr) bytes.assign(memory, size);
        std::free(memory);
        memory = nullptr;
    }
    return status;
}

EmfDevice::EmfDevice(double width, double height, const DrawingDevice& measure)
    : context_(std::make_unique<Context>(width, height, measure)) {}
EmfDevice::~EmfDevice() = default;

double EmfDevice::width() const {
    return context_->width;
}
double EmfDevice::height() const {
    return context_->height;
}
Colour EmfDevice::system_colour(int entry) const {
    return context_->measure.system_colour(entry);
}
void EmfDevice::set_mapping(const SurfaceMapping& mapping) {
    context_->mapping = mapping;
}
const SurfaceMapping& EmfDevice::whole() const {
    return context_->frame.mapping;
}
const std::string& EmfDevice::bytes() const {
    return context_->bytes;
}

TextExtent EmfDevice::measure(std::string_view text, const Font& font) const {
    return context_->measure.measure(text, font);
}

void EmfDevice::begin_page() {
    Context& c = *context_;
    c.close();
    c.bytes.clear();
    c.stream = open_memstream(&c.memory, &c.size);
    if (c.stream == nullptr) throw std::runtime_error("no memory for the metafile");
    const RECT frame{0, 0, c.frame.frame_width, c.frame.frame_height};
    c.dc = CreateEnhMetaFileWithFILEW(0, c.stream, &frame, description.data());
    if (c.dc == 0) throw std::runtime_error("the metafile library gave no context");
    SetMapMode(c.dc, MM_ANISOTROPIC);
    SetWindowExtEx(c.dc, c.frame.window_width, c.frame.window_height, nullptr);
    SetViewportExtEx(c.dc, c.frame.viewport_width, c.frame.viewport_height, nullptr);
    SetBkMode(c.dc, TRANSPARENT);
    SetPolyFillMode(c.dc, ALTERNATE);
    SetTextAlign(c.dc, TA_LEFT | TA_BASELINE);
    c.mapping = c.frame.mapping;
}

void EmfDevice::end_page() {
    context_->require_open();
    if (context_->close() != 0 || !emf_is_whole(context_->bytes)) {
        context_->bytes.clear();
        throw std::runtime_error("the metafile is not whole");
    }
}

void EmfDevice::polyline(std::span<const Point> points, const Pen& pen) {
    Context& c = *context_;
    c.require_open();
    c.select_pen(pen);
    for (std::size_t first = 0; first + 1 < points.size(); first += longest_polyline - 1) {
        const std::vector<POINT>& part =
            c.all(points.subspan(first, std::min(longest_polyline, points.size() - first)));
        Polyline(c.dc, part.data(), static_cast<INT>(part.size()));
    }
}

void EmfDevice::polygon_outline(std::span<const Point> points, const Pen& pen) {
    Context& c = *context_;
    c.require_open();
    c.select_pen(pen);
    c.select(GetStockObject(NULL_BRUSH), c.brush_in_use);
    const std::vector<POINT>& corners = c.all(points);
    Polygon(c.dc, corners.data(), static_cast<INT>(corners.size()));
}

void EmfDevice::polygon_fill(std::span<const Point> points, Colour colour) {
    Context& c = *context_;
    c.require_open();
    c.select(GetStockObject(NULL_PEN), c.pen_in_use);
    c.select_brush(colour);
    const std::vector<POINT>& corners = c.all(points);
    Polygon(c.dc, corners.data(), static_cast<INT>(corners.size()));
}

void EmfDevice::text(Point anchor, double angle, std::string_view text, const Font& font, Colour colour) {
    Context& c = *context_;
    c.require_open();
    const double descent = c.measure.measure(text, font).descent;
    const double turned = c.mapping.device_angle(angle);
    c.select_font(font, static_cast<int>(std::lround(turned * 10.0)));
    SetTextColor(c.dc, static_cast<COLORREF>(colour));
    // The library sets text on its base line, the chart by the lower left corner of its box.
    const POINT at = c.point(
        {anchor.x - descent * std::sin(angle * degree), anchor.y + descent * std::cos(angle * degree)});
    const WideText words = utf16(text);
    const std::vector<INT> advances = c.advances(text, words.ends, font);
    ExtTextOutW(c.dc, at.x, at.y, 0, nullptr, words.units.data(), static_cast<UINT>(words.units.size()),
                advances.data());
}

}  // namespace anomalis::chart
