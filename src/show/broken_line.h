#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "core/gaps.h"

namespace anomalis {
struct Workspace;
}  // namespace anomalis

namespace anomalis::show {

/// Curves of a line with gaps as a chart draws them: the places of each stretch, and a missing value behind
/// it, where the pen is lifted. A reading that is missing within a stretch is no break.
class BrokenLine {
  public:
    /// Of the stations `first` to `last`, from 1, where a channel (0 magnetics, 1 gravity) has readings.
    static BrokenLine of_channel(const Workspace& workspace, int channel, int first, int last);
    /// Of all stations, for a chart that draws rows as they stand: without points where there is no gap.
    static BrokenLine gaps_of_channel(const Workspace& workspace, int channel);
    /// The same of the line itself.
    static BrokenLine gaps_of_stations(const Workspace& workspace);

    /// No gap: curves can be drawn as their rows stand.
    bool whole() const { return whole_; }
    /// m, a value a point.
    std::span<const double> distances() const { return distances_; }
    /// The values of the points of a curve with one a station, from the station `from` on. A row without
    /// values gives none.
    template <class Value>
    std::vector<Value> curve(std::span<const Value> row, int from = 1) const {
        std::vector<Value> values;
        if (row.empty()) return values;
        values.reserve(stations_.size());
        for (const int station : stations_)
            values.push_back(station == 0 ? static_cast<Value>(-1e32)
                                          : row[static_cast<std::size_t>(station - from)]);
        return values;
    }

  private:
    void add(const Workspace& workspace, const std::vector<int>& stations);

    bool whole_ = true;
    std::vector<int> stations_;  ///< of the points; 0 where the pen is lifted
    std::vector<double> distances_;
};

}  // namespace anomalis::show
