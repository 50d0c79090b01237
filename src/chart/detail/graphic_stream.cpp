#include "chart/detail/graphic_stream.h"

#include <array>
#include <bit>
#include <cstring>
#include <span>
#include <string>

namespace anomalis::chart {

namespace {

constexpr std::uint32_t stream_mark = 0x53475841;  // "AXGS"
constexpr std::uint32_t stream_version = 1;
constexpr std::size_t header_size = 4 + 4 + 4 + 8;
constexpr std::size_t checksum_size = 4;

std::uint32_t checksum(std::span<const std::uint8_t> bytes) {
    static const std::array<std::uint32_t, 256> table = [] {
        std::array<std::uint32_t, 256> entries{};
        for (std::uint32_t i = 0; i < 256; ++i) {
            std::uint32_t value = i;
            for (int bit = 0; bit < 8; ++bit) value = (value >> 1) ^ ((value & 1) != 0 ? 0xEDB88320U : 0U);
            entries[i] = value;
        }
        return entries;
    }();
    std::uint32_t value = 0xFFFFFFFFU;
    for (const std::uint8_t byte : bytes) value = (value >> 8) ^ table[(value ^ byte) & 0xFFU];
    return ~value;
}

class Writer {
  public:
    void u32(std::uint32_t value) { put(value, 4); }
    void u64(std::uint64_t value) { put(value, 8); }
    void i32(std::int32_t value) { u32(static_cast<std::uint32_t>(value)); }
    void f32(float value) { u32(std::bit_cast<std::uint32_t>(value)); }
    void f64(double value) { u64(std::bit_cast<std::uint64_t>(value)); }
    void text(const std::string& value) {
        u32(static_cast<std::uint32_t>(value.size()));
        bytes.insert(bytes.end(), value.begin(), value.end());
    }
    void doubles(const std::vector<double>& values) {
        u32(static_cast<std::uint32_t>(values.size()));
        for (const double value : values) f64(value);
    }

    GraphicBytes bytes;

  private:
    void put(std::uint64_t value, int size) {
        for (int i = 0; i < size; ++i) bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }
};

/// Reads within its bytes; the first read past them makes it bad for good.
class Reader {
  public:
    explicit Reader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}
    std::uint32_t u32() { return static_cast<std::uint32_t>(get(4)); }
    std::uint64_t u64() { return get(8); }
    std::int32_t i32() { return static_cast<std::int32_t>(u32()); }
    float f32() { return std::bit_cast<float>(u32()); }
    double f64() { return std::bit_cast<double>(u64()); }
    std::string text() {
        const std::size_t size = u32();
        if (!has(size)) return {};
        std::string value(reinterpret_cast<const char*>(bytes_.data() + at_), size);
        at_ += size;
        return value;
    }
    std::vector<double> doubles() {
        const std::size_t count = u32();
        if (!has(count * sizeof(double))) return {};
        std::vector<double> values(count);
        for (double& value : values) value = f64();
        return values;
    }
    bool good() const { return good_; }
    bool at_end() const { return at_ == bytes_.size(); }

  private:
    bool has(std::size_t size) {
        good_ = good_ && size <= bytes_.size() - at_;
        return good_;
    }
    std::uint64_t get(std::size_t size) {
        if (!has(size)) return 0;
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < size; ++i)
            value |= static_cast<std::uint64_t>(bytes_[at_ + i]) << (8 * i);
        at_ += size;
        return value;
    }
    std::span<const std::uint8_t> bytes_;
    std::size_t at_ = 0;
    bool good_ = true;
};

void write_item(Writer& out, const GraphicItem& item) {
    out.i32(static_cast<std::int32_t>(item.kind));
    for (const double value : {item.x1, item.y1, item.x2, item.y2}) out.f64(value);
    out.i32(item.colour);
    out.i32(item.pen_colour);
    out.i32(item.fill_colour);
    out.i32(item.width);
    out.i32(item.marker);
    out.i32(item.reserved);
    out.f32(item.angle);
    out.text(item.text);
    out.doubles(item.xs);
    out.doubles(item.ys);
    out.i32(item.marker_size);
    out.i32(static_cast<std::int32_t>(item.font));
}

bool known_kind(ItemKind kind) {
    switch (kind) {
        case ItemKind::window:
        case ItemKind::line:
        case ItemKind::marker:
        case ItemKind::polygon:
        case ItemKind::rectangle:
        case ItemKind::text:
        case ItemKind::polyline:
            return true;
    }
    return false;
}

bool read_item(Reader& in, GraphicItem& item) {
    item.kind = static_cast<ItemKind>(in.i32());
    for (double* value : {&item.x1, &item.y1, &item.x2, &item.y2}) *value = in.f64();
    item.colour = in.i32();
    item.pen_colour = in.i32();
    item.fill_colour = in.i32();
    item.width = in.i32();
    item.marker = in.i32();
    item.reserved = in.i32();
    item.angle = in.f32();
    item.text = in.text();
    item.xs = in.doubles();
    item.ys = in.doubles();
    item.marker_size = in.i32();
    const std::int32_t role = in.i32();
    item.font = role == 1 ? FontRole::title : FontRole::chart;
    return in.good() && known_kind(item.kind) && item.xs.size() == item.ys.size() && (role == 0 || role == 1);
}

}  // namespace

GraphicBytes pack_items(const std::vector<GraphicItem>& items) {
    Writer payload;
    for (const GraphicItem& item : items) write_item(payload, item);
    Writer out;
    out.bytes.reserve(header_size + payload.bytes.size() + checksum_size);
    out.u32(stream_mark);
    out.u32(stream_version);
    out.u32(static_cast<std::uint32_t>(items.size()));
    out.u64(payload.bytes.size());
    out.bytes.insert(out.bytes.end(), payload.bytes.begin(), payload.bytes.end());
    out.u32(checksum(out.bytes));
    return std::move(out.bytes);
}

std::optional<std::vector<GraphicItem>> unpack_items(const GraphicBytes& bytes) {
    if (bytes.size() < header_size + checksum_size) return std::nullopt;
    const std::span<const std::uint8_t> all(bytes);
    Reader header(all.first(header_size));
    const bool ours = header.u32() == stream_mark && header.u32() == stream_version;
    const std::uint32_t count = header.u32();
    const std::uint64_t length = header.u64();
    if (!ours || length != bytes.size() - header_size - checksum_size) return std::nullopt;
    Reader tail(all.last(checksum_size));
    if (tail.u32() != checksum(all.first(all.size() - checksum_size))) return std::nullopt;

    std::vector<GraphicItem> items;
    Reader in(all.subspan(header_size, static_cast<std::size_t>(length)));
    for (std::uint32_t i = 0; i < count; ++i) {
        GraphicItem item;
        if (!read_item(in, item)) return std::nullopt;
        items.push_back(std::move(item));
    }
    if (!in.at_end()) return std::nullopt;
    return items;
}

}  // namespace anomalis::chart
