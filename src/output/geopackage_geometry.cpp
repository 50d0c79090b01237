#include "output/geopackage_geometry.h"

#include <algorithm>
#include <bit>

namespace anomalis::output {

namespace {

constexpr char low_byte_first = 1;

template <class Word>
void add_word(std::string& bytes, Word word) {
    for (std::size_t i = 0; i < sizeof word; ++i) bytes += static_cast<char>(word >> 8 * i & 0xff);
}

void add_real(std::string& bytes, double value) {
    add_word(bytes, std::bit_cast<std::uint64_t>(value));
}

void add_point(std::string& bytes, const GisPoint& point, bool heights) {
    add_real(bytes, point.x);
    add_real(bytes, point.y);
    if (heights) add_real(bytes, point.z);
}

constexpr std::uint32_t wkb_kind(GisShape shape, bool heights) {
    const std::uint32_t kind = shape == GisShape::point ? 1 : shape == GisShape::line ? 2 : 3;
    return kind + (heights ? 1000 : 0);
}

}  // namespace

GisEnvelope envelope_of(const std::vector<GisPoint>& points) {
    GisEnvelope envelope{points.front().x, points.front().x, points.front().y, points.front().y};
    for (const GisPoint& point : points) {
        envelope.x_low = std::min(envelope.x_low, point.x);
        envelope.x_high = std::max(envelope.x_high, point.x);
        envelope.y_low = std::min(envelope.y_low, point.y);
        envelope.y_high = std::max(envelope.y_high, point.y);
    }
    return envelope;
}

std::string geopackage_geometry(const std::vector<GisPoint>& points, GisShape shape, bool heights,
                                std::int32_t system) {
    constexpr char with_envelope = 2;
    constexpr std::uint32_t rings = 1;
    const bool extended = shape != GisShape::point;
    std::string bytes{'G', 'P', '\0', static_cast<char>(low_byte_first | (extended ? with_envelope : 0))};
    add_word(bytes, static_cast<std::uint32_t>(system));
    if (extended) {
        const GisEnvelope envelope = envelope_of(points);
        for (const double value : {envelope.x_low, envelope.x_high, envelope.y_low, envelope.y_high})
            add_real(bytes, value);
    }
    bytes += low_byte_first;
    add_word(bytes, wkb_kind(shape, heights));
    if (shape == GisShape::polygon) add_word(bytes, rings);
    if (extended) add_word(bytes, static_cast<std::uint32_t>(points.size()));
    for (const GisPoint& point : points) add_point(bytes, point, heights);
    return bytes;
}

}  // namespace anomalis::output
