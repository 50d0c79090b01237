#include "chart/emf_file.h"

#include <cstddef>
#include <cstdint>
#include <stdexcept>

namespace anomalis::chart {

namespace {

// Kinds of record, and the mark " EMF" in the header.
constexpr std::uint32_t record_header = 1;
constexpr std::uint32_t record_end = 14;
constexpr std::uint32_t signature = 0x464D4520;

std::uint32_t u32_at(const std::string& bytes, std::size_t at) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i)
        value |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[at + i])) << (8 * i);
    return value;
}

}  // namespace

bool emf_is_whole(const std::string& bytes) {
    constexpr std::size_t header = 88;
    if (bytes.size() < header + 20 || bytes.size() % 4 != 0) return false;
    if (u32_at(bytes, 0) != record_header || u32_at(bytes, 40) != signature) return false;
    if (u32_at(bytes, 48) != bytes.size()) return false;
    std::size_t at = 0;
    std::uint32_t records = 0;
    std::uint32_t kind = 0;
    while (at < bytes.size()) {
        if (bytes.size() - at < 8) return false;
        kind = u32_at(bytes, at);
        const std::uint32_t length = u32_at(bytes, at + 4);
        if (length < 8 || length % 4 != 0 || length > bytes.size() - at) return false;
        at += length;
        ++records;
    }
    return kind == record_end && records == u32_at(bytes, 52);
}

}  // namespace anomalis::chart
