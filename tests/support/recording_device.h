#pragma once

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include "chart/drawing_device.h"

namespace anomalis::chart {

/// Keeps what was drawn, in surface units, for pictures compared by structure. Its text is of
/// fixed size: every character `character_width` wide and `character_height` high.
class RecordingDevice : public DrawingDevice {
  public:
    enum class Kind { polyline, polygon_outline, polygon_fill, text, markers, clear, copy, present, page };

    struct Entry {
        Kind kind = Kind::polyline;
        Layer layer = Layer::surface;
        std::vector<Point> points;  ///< the line, the polygon, the anchor of a text, the anchors of markers
        Pen pen;                    ///< of lines, outlines, markers; its colour alone for fills and texts
        std::string text;
        double angle = 0.0;
        Font font;
        int style = 0;            ///< of markers
        double radius = 0.0;      ///< of markers
        Colour fill = no_colour;  ///< of markers that are filled
    };

    RecordingDevice(double width, double height) : width_(width), height_(height) {}

    double width() const override { return width_; }
    double height() const override { return height_; }
    bool is_raster() const override { return raster; }
    double pixel_size() const override { return pixel; }
    void set_mapping(const SurfaceMapping& value) override { mapping = value; }

    void polyline(std::span<const Point> points, const Pen& pen) override;
    void polygon_outline(std::span<const Point> points, const Pen& pen) override;
    void polygon_fill(std::span<const Point> points, Colour colour) override;
    void text(Point anchor, double angle, std::string_view text, const Font& font, Colour colour) override;
    TextExtent measure(std::string_view text, const Font& font) const override;
    void markers(const MarkerShape& shape, std::span<const Point> anchors) override;

    void select_layer(Layer layer) override { layer_ = layer; }
    void clear(Colour colour, int back_style) override;
    void copy_base_to_surface() override;
    void present() override;
    void set_border_style(int style) override { border_style = style; }
    void begin_page() override;
    void end_page() override;

    void resize(double width, double height);
    /// The entries of one kind, of one layer where it is given.
    std::vector<Entry> of_kind(Kind kind) const;
    std::vector<Entry> of_kind(Kind kind, Layer layer) const;
    /// The texts drawn, in order.
    std::vector<std::string> texts() const;
    /// The first text entry with these words, or null.
    const Entry* find_text(std::string_view words) const;
    void forget() { entries.clear(); }

    std::vector<Entry> entries;
    SurfaceMapping mapping;
    bool raster = false;
    double pixel = units_per_screen_pixel;
    /// False: markers are kept as the lines and polygons that they consist of.
    bool stamps = true;
    double character_width = 90.0;
    double character_height = 165.0;
    int border_style = -1;
    /// When set, the primitive of this kind throws these words: for tests of failures.
    std::string failure;
    Kind failing_kind = Kind::present;

  private:
    Entry& add(Kind kind);
    double width_;
    double height_;
    Layer layer_ = Layer::surface;
};

inline RecordingDevice::Entry& RecordingDevice::add(Kind kind) {
    if (!failure.empty() && kind == failing_kind) throw std::runtime_error(failure);
    entries.emplace_back();
    entries.back().kind = kind;
    entries.back().layer = layer_;
    return entries.back();
}

inline void RecordingDevice::polyline(std::span<const Point> points, const Pen& pen) {
    Entry& entry = add(Kind::polyline);
    entry.points.assign(points.begin(), points.end());
    entry.pen = pen;
}

inline void RecordingDevice::polygon_outline(std::span<const Point> points, const Pen& pen) {
    Entry& entry = add(Kind::polygon_outline);
    entry.points.assign(points.begin(), points.end());
    entry.pen = pen;
}

inline void RecordingDevice::polygon_fill(std::span<const Point> points, Colour colour) {
    Entry& entry = add(Kind::polygon_fill);
    entry.points.assign(points.begin(), points.end());
    entry.pen.colour = colour;
}

inline void RecordingDevice::text(Point anchor, double angle, std::string_view text, const Font& font,
                                  Colour colour) {
    Entry& entry = add(Kind::text);
    entry.points = {anchor};
    entry.angle = angle;
    entry.text = text;
    entry.font = font;
    entry.pen.colour = colour;
}

inline TextExtent RecordingDevice::measure(std::string_view text, const Font&) const {
    // Characters, not bytes.
    const auto characters = std::count_if(
        text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; });
    const double width_of_text = character_width * static_cast<double>(characters);
    return {width_of_text, character_height * 0.8, character_height * 0.2};
}

inline void RecordingDevice::markers(const MarkerShape& shape, std::span<const Point> anchors) {
    if (!stamps) return DrawingDevice::markers(shape, anchors);
    Entry& entry = add(Kind::markers);
    entry.points.assign(anchors.begin(), anchors.end());
    entry.pen = shape.pen;
    entry.style = shape.style;
    entry.radius = shape.radius;
    if (shape.filled) entry.fill = shape.fill;
}

inline void RecordingDevice::clear(Colour colour, int) {
    add(Kind::clear).pen.colour = colour;
}
inline void RecordingDevice::copy_base_to_surface() {
    add(Kind::copy);
}
inline void RecordingDevice::present() {
    add(Kind::present);
}
inline void RecordingDevice::begin_page() {
    add(Kind::page).text = "begin";
}
inline void RecordingDevice::end_page() {
    add(Kind::page).text = "end";
}

inline void RecordingDevice::resize(double width, double height) {
    width_ = width;
    height_ = height;
}

inline std::vector<RecordingDevice::Entry> RecordingDevice::of_kind(Kind kind) const {
    std::vector<Entry> found;
    std::copy_if(entries.begin(), entries.end(), std::back_inserter(found),
                 [&](const Entry& entry) { return entry.kind == kind; });
    return found;
}

inline std::vector<RecordingDevice::Entry> RecordingDevice::of_kind(Kind kind, Layer layer) const {
    std::vector<Entry> found = of_kind(kind);
    std::erase_if(found, [&](const Entry& entry) { return entry.layer != layer; });
    return found;
}

inline std::vector<std::string> RecordingDevice::texts() const {
    std::vector<std::string> found;
    for (const Entry& entry : entries)
        if (entry.kind == Kind::text) found.push_back(entry.text);
    return found;
}

inline const RecordingDevice::Entry* RecordingDevice::find_text(std::string_view words) const {
    const auto found = std::find_if(entries.begin(), entries.end(), [&](const Entry& entry) {
        return entry.kind == Kind::text && entry.text == words;
    });
    return found == entries.end() ? nullptr : &*found;
}

}  // namespace anomalis::chart
