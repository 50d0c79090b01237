#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace anomalis {
struct DataDefinition;
}  // namespace anomalis

// Which columns of a record feed which quantity.
namespace anomalis::intake {

enum Quantity : std::size_t {
    quantity_x = 0,
    quantity_y,
    quantity_z,
    quantity_dtm,
    quantity_mag,
    quantity_grav
};
inline constexpr std::size_t quantity_count = 6;

/// One value for each quantity.
using RecordValues = std::array<double, quantity_count>;

/// What a column, counted from 1, feeds: a bit for each quantity. The place columns exclude each other, x
/// before y before z; the others may share a column with them and among themselves.
std::uint8_t quantities_of_column(const DataDefinition& definition, std::int32_t column);

/// What the reader made of a row.
struct RowReading {
    enum Fit { whole, too_short, no_number };
    Fit fit = whole;
    std::string_view token = {};  ///< what stood where a number is wanted
    std::uint8_t taken = 0;       ///< the quantities that got a value, a bit each
    std::int32_t column = 0;      ///< of that token, from 1
};

/// The columns of a definition that are read.
class RecordColumns {
  public:
    explicit RecordColumns(const DataDefinition& definition);

    /// Takes the values of a record. Columns that it lacks leave theirs as they are. When a wanted token is
    /// no number, what was taken before it stays. A row that ends with a comma or a semicolon has an empty
    /// field behind it, which is no number.
    RowReading read(std::string_view line, RecordValues& values) const;

    /// The quantities for which there is a column, a bit each.
    std::uint8_t quantities() const { return quantities_; }

  private:
    struct WantedColumn {
        std::int32_t column = 0;
        std::uint8_t quantities = 0;
    };

    std::array<WantedColumn, quantity_count> wanted_{};  ///< in rising order
    std::size_t wanted_count_ = 0;
    std::uint8_t quantities_ = 0;
};

}  // namespace anomalis::intake
