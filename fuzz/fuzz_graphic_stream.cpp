#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "chart/ax_grapher.h"
#include "chart/detail/graphic_stream.h"
#include "fuzz_support.h"
#include "support/recording_device.h"

namespace {

using namespace anomalis;
using namespace anomalis::chart;

void append(GraphicBytes& bytes, std::uint64_t value, int size) {
    for (int i = 0; i < size; ++i) bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

/// CRC-32 bit by bit.
std::uint32_t checksum(const GraphicBytes& bytes) {
    std::uint32_t value = 0xFFFFFFFFU;
    for (const std::uint8_t byte : bytes) {
        value ^= byte;
        for (int bit = 0; bit < 8; ++bit) value = (value >> 1) ^ ((value & 1) != 0 ? 0xEDB88320U : 0U);
    }
    return ~value;
}

/// Items with the frame of a good stream about them, which no fuzzer would find by itself.
GraphicBytes framed(std::uint32_t count, std::string_view items) {
    GraphicBytes bytes;
    append(bytes, 0x53475841, 4);
    append(bytes, 1, 4);
    append(bytes, count, 4);
    append(bytes, items.size(), 8);
    bytes.insert(bytes.end(), items.begin(), items.end());
    append(bytes, checksum(bytes), 4);
    return bytes;
}

void play(const GraphicBytes& bytes, std::uint32_t count) {
    const auto items = unpack_items(bytes);
    RecordingDevice device(13500, 4500);
    AX_Grapher chart;
    const int status = chart.DrawGraphicsStream(&device, static_cast<int>(count), bytes, count % 2 == 1,
                                                11000, 16000, 1, 0, 299);
    require(items.has_value() || status == -1);
    require(status != -1 || device.entries.empty());
    if (items) require(pack_items(*items) == bytes);
}

}  // namespace

/// Any bytes are played back or refused without a stroke; a stream that was read is written as the same
/// bytes. The first byte is the count of items; from 128 on the rest is taken as it is, else framed.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ByteSource source(data, size);
    const std::uint32_t count = source.byte();
    const std::string_view rest = source.rest();
    if (count < 128)
        play(framed(count, rest), count);
    else
        play(GraphicBytes(rest.begin(), rest.end()), count - 128);
    return 0;
}
