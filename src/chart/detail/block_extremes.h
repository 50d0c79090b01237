#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace anomalis::chart {

/// The lowest and highest value of each block of a long row, of blocks of those, and so on: kept from one
/// redraw to the next, whatever is zoomed to, a redraw looks at a few blocks where a pixel column holds
/// thousands of points.
class BlockExtremes {
  public:
    static constexpr std::size_t block = 16;  ///< values of the lowest level, blocks of those above

    /// The lowest and highest of a stretch, each the first of its value.
    struct Stretch {
        std::size_t end = 0;  ///< one past the last value of the stretch: a null ends it
        std::size_t lowest = 0;
        std::size_t highest = 0;
    };

    void build(std::span<const double> values);
    /// After values from `first` to before `end` of the row it was built from have changed.
    void update(std::span<const double> values, std::size_t first, std::size_t end);
    /// Of `values`, the row it was built from, the stretch from `first`, which is no null, to `end` or the
    /// first null before it.
    Stretch find(std::span<const double> values, std::size_t first, std::size_t end) const;

  private:
    /// A block that holds a null has `low` above `high`; one that is cut by the end of the row there is not.
    struct Range {
        double low = 1.0;
        double high = 0.0;
        bool whole() const { return low <= high; }
    };
    /// The lowest or the highest so far: its value, and the block or value where it is first to be found.
    struct Best {
        double value;
        std::size_t from;
        std::size_t level;  ///< 0: a value, else of the blocks of `levels_[level - 1]`
    };
    std::size_t level_at(std::size_t i, std::size_t end) const;
    std::size_t place_of(std::span<const double> values, Best best, double Range::*side) const;

    std::vector<std::vector<Range>> levels_;
};

}  // namespace anomalis::chart
