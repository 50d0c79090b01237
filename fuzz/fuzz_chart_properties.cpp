#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "chart/ax_grapher.h"
#include "chart/memory_property_bag.h"
#include "fuzz_support.h"
#include "support/recording_device.h"

namespace {

using namespace anomalis;
using namespace anomalis::chart;

/// Writes down the properties with the type that each has.
class PropertyList : public PropertyBag {
  public:
    PropertyList() { AX_Grapher().WriteProperties(*this); }
    PropertyValue read_property(std::string_view, const PropertyValue& fallback) const override {
        return fallback;
    }
    void write_property(std::string_view key, const PropertyValue& value, const PropertyValue*) override {
        usual.emplace_back(key, value);
    }
    std::vector<std::pair<std::string, PropertyValue>> usual;
};

/// Of the type of a usual value, from the bytes.
PropertyValue wild_value(const PropertyValue& usual, ByteSource& source) {
    if (std::holds_alternative<bool>(usual)) return source.flag();
    if (std::holds_alternative<std::int32_t>(usual))
        return source.flag() ? std::int32_t{source.byte()} - 2 : source.integer();
    if (std::holds_alternative<float>(usual)) return source.number();
    if (std::holds_alternative<double>(usual)) return static_cast<double>(source.number());
    if (std::holds_alternative<std::string>(usual)) return std::string(source.text(source.byte()));
    Font font = std::get<Font>(usual);
    font.name = source.text(source.byte());
    font.size = source.number();
    return font;
}

MemoryPropertyBag wild_bag(ByteSource& source) {
    static const PropertyList list;
    MemoryPropertyBag bag;
    for (int i = 0; i < 12 && !source.empty(); ++i) {
        const auto& [key, usual] = list.usual[source.byte() % list.usual.size()];
        bag.write_property(key, wild_value(usual, source), nullptr);
    }
    return bag;
}

constexpr double width = 13500;
constexpr double height = 4500;
constexpr std::size_t points = 4;
/// No more strokes and texts than a screen has places for.
constexpr std::size_t most_entries =
    static_cast<std::size_t>(2 * (width + height) / units_per_screen_pixel) + 3 * 2 * points + 64;

void work_with(AX_Grapher& chart, ByteSource& source) {
    const float x = source.number();
    const float y = source.number();
    chart.HandleMouseMove(0, 0, x, y);
    chart.HandleMouseDown(1, 0, 5000, 2000);
    chart.HandleMouseMove(1, 0, x, y);
    chart.HandleMouseUp(1, 0, x, y);
    chart.HandleWheel(0, 120 * (source.byte() - 128), 5000, 2000);
    const std::array<double, 4> zoom{source.number(), source.number(), source.number(), source.number()};
    chart.SetZoomValues(zoom[0], zoom[1], zoom[2], zoom[3]);
    chart.RefreshGraph(source.flag() ? 1 : 0);
}

template <class Number>
bool same_number(Number a, Number b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

/// Equal; what is not a number counts as equal to its like.
bool same(const PropertyValue& a, const PropertyValue& b) {
    if (a.index() != b.index()) return false;
    if (const float* single = std::get_if<float>(&a)) return same_number(*single, std::get<float>(b));
    if (const double* number = std::get_if<double>(&a)) return same_number(*number, std::get<double>(b));
    if (const Font* font = std::get_if<Font>(&a)) {
        Font other = std::get<Font>(b);
        if (!same_number(font->size, other.size)) return false;
        other.size = font->size;
        return std::isnan(font->size) ? font->name == other.name : *font == other;
    }
    return a == b;
}

std::vector<ChartRow> some_rows(const std::vector<double>& xs, const std::vector<double>& ys) {
    return {{x_row, xs}, {line_and_marker_series, ys}};
}

}  // namespace

/// Whatever stood in the bag, a chart can be shown and worked with, draws no more than can be seen, and keeps
/// properties that are read back as they were.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ByteSource source(data, size);
    const MemoryPropertyBag bag = wild_bag(source);
    RecordingDevice device(width, height);
    AX_Grapher chart;
    chart.SetSurface(&device);
    chart.ReadProperties(bag);
    const std::vector<double> xs{0, 1000, source.number(), 7400};
    const std::vector<double> ys{-300, source.number(), 50, 700};
    const std::vector<ChartRow> rows = some_rows(xs, ys);
    chart.RegisterData(rows);
    chart.Layout();
    chart.DisplayChart();
    require(device.entries.size() <= most_entries);
    work_with(chart, source);
    device.forget();
    chart.RefreshGraph(0);
    require(device.entries.size() <= most_entries);

    MemoryPropertyBag kept;
    chart.WriteProperties(kept);
    AX_Grapher other;
    other.ReadProperties(kept);
    MemoryPropertyBag again;
    other.WriteProperties(again);
    require(again.entries().size() == kept.entries().size());
    for (const auto& [key, value] : kept.entries()) require(same(again.entries().at(key), value));
    return 0;
}
