#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace anomalis::chart {

/// The lowest and highest value of each block of a long row, kept from one redraw to the next: a redraw then
/// looks at one block where a pixel column holds hundreds of points.
class BlockExtremes {
  public:
    static constexpr std::size_t block = 64;

    /// The lowest and highest of a stretch, each the first of its value.
    struct Stretch {
        std::size_t end = 0;  ///< one past the last value of the stretch: a null ends it
        std::size_t lowest = 0;
        std::size_t highest = 0;
    };

    void build(std::span<const double> values);
    /// Of `values`, the row it was built from, the stretch from `first`, which is no null, to `end` or the
    /// first null before it.
    Stretch find(std::span<const double> values, std::size_t first, std::size_t end) const;

  private:
    /// A block that holds a null, or is cut by the end of the row, has `low` above `high`.
    struct Range {
        double low;
        double high;
    };
    std::vector<Range> blocks_;
};

}  // namespace anomalis::chart
