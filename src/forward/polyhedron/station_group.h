#pragma once

#include <span>

#include "forward/polyhedron/polyhedron.h"
#include "forward/polyhedron/polyhedron_kernel.h"
#include "forward/polyhedron/vector3.h"

namespace anomalis::forward {

/// Stations of a block that are calculated alike, and where their results belong.
struct StationGroup {
    StationBlock block;
    std::size_t index[StationBlock::capacity];

    StationGroup() { block.count = 0; }
    bool empty() const { return block.count == 0; }

    /// Takes stations in a row, in unit coordinates; returns how many of them are farther from the origin
    /// than `limit`.
    std::size_t take(const StationSpans& stations, std::size_t first, std::size_t count, const Point3& centre,
                     double scale, double limit) {
        std::size_t far = 0;
        for (std::size_t i = 0; i < count; ++i) {
            const double x = (stations.east[first + i] - centre.x) * scale;
            const double y = (stations.north[first + i] - centre.y) * scale;
            const double z = (stations.up[first + i] - centre.z) * scale;
            block.x[i] = x;
            block.y[i] = y;
            block.z[i] = z;
            index[i] = first + i;
            far += x * x + y * y + z * z > limit * limit ? 1 : 0;
        }
        block.count = count;
        return far;
    }

    Point3 place(std::size_t i) const { return {block.x[i], block.y[i], block.z[i]}; }

    void add(const Point3& unit, std::size_t station) {
        block.x[block.count] = unit.x;
        block.y[block.count] = unit.y;
        block.z[block.count] = unit.z;
        index[block.count++] = station;
    }

    /// Fills the block up for the kernel; returns how many stations are real.
    std::size_t pad() {
        const std::size_t real = block.count;
        while (block.count % StationBlock::padding != 0) add(place(real - 1), index[real - 1]);
        return real;
    }

    /// Hands out sums `first` to `last - 1` of the first `real` stations.
    void write(std::size_t real, const std::span<double>* results, int first, int last) const {
        for (int k = first; k < last; ++k)
            for (std::size_t i = 0; i < real; ++i) results[k][index[i]] = block.sum[k][i];
    }
};

}  // namespace anomalis::forward
