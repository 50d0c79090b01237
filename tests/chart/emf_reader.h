#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

// Reads the records of an enhanced metafile, for tests.
namespace anomalis::chart {

class EmfReader {
  public:
    struct Record {
        std::uint32_t kind = 0;
        std::size_t at = 0;
        std::uint32_t length = 0;
    };
    struct Place {
        long x = 0;
        long y = 0;
    };

    explicit EmfReader(const std::string& bytes) : bytes_(bytes) {
        for (std::size_t at = 0; at + 8 <= bytes.size();) {
            records.push_back({u32(at), at, u32(at + 4)});
            at += records.back().length;
        }
    }
    std::uint32_t u32(std::size_t at) const { return read<std::uint32_t>(at); }
    std::int32_t i32(std::size_t at) const { return read<std::int32_t>(at); }

    std::vector<Record> of_kind(std::uint32_t kind) const {
        std::vector<Record> found;
        for (const Record& record : records)
            if (record.kind == kind) found.push_back(record);
        return found;
    }
    /// The points of polylines (4, 87) and polygons (3, 86).
    std::vector<Place> points(const Record& record) const {
        const bool small = record.kind == 86 || record.kind == 87;
        std::vector<Place> found;
        for (std::uint32_t i = 0; i < u32(record.at + 24); ++i) {
            const std::size_t at = record.at + 28 + i * (small ? 4 : 8);
            if (small)
                found.push_back({read<std::int16_t>(at), read<std::int16_t>(at + 2)});
            else
                found.push_back({i32(at), i32(at + 4)});
        }
        return found;
    }
    std::vector<Record> lines() const { return both(4, 87); }
    std::vector<Record> polygons() const { return both(3, 86); }
    std::vector<Record> texts() const { return of_kind(84); }
    /// The UTF-16 units of a text record, those of ASCII as they are, others as '?'.
    std::string words(const Record& record) const {
        std::string found;
        const std::size_t at = record.at + u32(record.at + 48);
        for (std::uint32_t i = 0; i < u32(record.at + 44); ++i) {
            const auto unit = read<std::uint16_t>(at + 2 * i);
            found += unit < 0x80 ? static_cast<char>(unit) : '?';
        }
        return found;
    }
    /// How far each unit of a text record moves on; empty when the record does not tell.
    std::vector<std::int32_t> advances(const Record& record) const {
        const std::uint32_t offset = u32(record.at + 72);
        const std::uint32_t count = u32(record.at + 44);
        std::vector<std::int32_t> found;
        if (offset == 0 || offset + 4 * count > record.length) return found;
        for (std::uint32_t i = 0; i < count; ++i) found.push_back(i32(record.at + offset + 4 * i));
        return found;
    }
    Place text_at(const Record& record) const { return {i32(record.at + 36), i32(record.at + 40)}; }

    std::vector<Record> records;

  private:
    std::vector<Record> both(std::uint32_t wide, std::uint32_t small) const {
        std::vector<Record> found = of_kind(wide);
        for (const Record& record : of_kind(small)) found.push_back(record);
        return found;
    }
    template <class Number>
    Number read(std::size_t at) const {
        Number value{};
        std::memcpy(&value, bytes_.data() + at, sizeof value);
        return value;
    }
    const std::string& bytes_;
};

}  // namespace anomalis::chart
