#pragma once

#include <vector>

namespace anomalis::show {

/// Which body a drawn polygon belongs to. Charts number their polygons from 1 in drawing order; a filled body
/// has two of them.
class PolygonTable {
  public:
    void clear() { bodies_.clear(); }
    /// Polygon 0 (none was drawn) is passed over.
    void set(int polygon, int body) {
        if (polygon <= 0) return;
        if (bodies_.size() < static_cast<std::size_t>(polygon))
            bodies_.resize(static_cast<std::size_t>(polygon), 0);
        bodies_[static_cast<std::size_t>(polygon - 1)] = body;
    }
    /// The body of a polygon, 0 for one that is none's.
    int body(int polygon) const {
        return polygon > 0 && static_cast<std::size_t>(polygon) <= bodies_.size()
                   ? bodies_[static_cast<std::size_t>(polygon - 1)]
                   : 0;
    }

  private:
    std::vector<int> bodies_;
};

}  // namespace anomalis::show
