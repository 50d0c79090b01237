#include "chart/recording_device.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

namespace anomalis::chart {

namespace {

/// Characters, not bytes, of a UTF-8 text.
std::size_t character_count(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(
        text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

}  // namespace

RecordingDevice::Entry& RecordingDevice::add(Kind kind) {
    if (!failure.empty() && kind == failing_kind) throw std::runtime_error(failure);
    entries.emplace_back();
    entries.back().kind = kind;
    entries.back().layer = layer_;
    return entries.back();
}

void RecordingDevice::polyline(std::span<const Point> points, const Pen& pen) {
    Entry& entry = add(Kind::polyline);
    entry.points.assign(points.begin(), points.end());
    entry.pen = pen;
}

void RecordingDevice::polygon_outline(std::span<const Point> points, const Pen& pen) {
    Entry& entry = add(Kind::polygon_outline);
    entry.points.assign(points.begin(), points.end());
    entry.pen = pen;
}

void RecordingDevice::polygon_fill(std::span<const Point> points, Colour colour) {
    Entry& entry = add(Kind::polygon_fill);
    entry.points.assign(points.begin(), points.end());
    entry.pen.colour = colour;
}

void RecordingDevice::text(Point anchor, double angle, std::string_view text, const Font& font,
                           Colour colour) {
    Entry& entry = add(Kind::text);
    entry.points = {anchor};
    entry.angle = angle;
    entry.text = text;
    entry.font = font;
    entry.pen.colour = colour;
}

TextExtent RecordingDevice::measure(std::string_view text, const Font&) const {
    const double width_of_text = character_width * static_cast<double>(character_count(text));
    return {width_of_text, character_height * 0.8, character_height * 0.2};
}

void RecordingDevice::markers(const MarkerShape& shape, std::span<const Point> anchors) {
    Entry& entry = add(Kind::markers);
    entry.points.assign(anchors.begin(), anchors.end());
    entry.pen = shape.pen;
    entry.style = shape.style;
    entry.radius = shape.radius;
}

void RecordingDevice::clear(Colour colour, int) {
    add(Kind::clear).pen.colour = colour;
}
void RecordingDevice::copy_base_to_surface() {
    add(Kind::copy);
}
void RecordingDevice::present() {
    add(Kind::present);
}
void RecordingDevice::begin_page() {
    add(Kind::page).text = "begin";
}
void RecordingDevice::end_page() {
    add(Kind::page).text = "end";
}

void RecordingDevice::resize(double width, double height) {
    width_ = width;
    height_ = height;
}

std::vector<RecordingDevice::Entry> RecordingDevice::of_kind(Kind kind) const {
    std::vector<Entry> found;
    std::copy_if(entries.begin(), entries.end(), std::back_inserter(found),
                 [&](const Entry& entry) { return entry.kind == kind; });
    return found;
}

std::vector<RecordingDevice::Entry> RecordingDevice::of_kind(Kind kind, Layer layer) const {
    std::vector<Entry> found = of_kind(kind);
    std::erase_if(found, [&](const Entry& entry) { return entry.layer != layer; });
    return found;
}

std::vector<std::string> RecordingDevice::texts() const {
    std::vector<std::string> found;
    for (const Entry& entry : entries)
        if (entry.kind == Kind::text) found.push_back(entry.text);
    return found;
}

const RecordingDevice::Entry* RecordingDevice::find_text(std::string_view words) const {
    const auto found = std::find_if(entries.begin(), entries.end(), [&](const Entry& entry) {
        return entry.kind == Kind::text && entry.text == words;
    });
    return found == entries.end() ? nullptr : &*found;
}

}  // namespace anomalis::chart
