#pragma once

#include <cstdint>
#include <cstring>

#include "chart/detail/pen_cover.h"

namespace anomalis::chart {

/// A piece as rows of pixels see it, in its own direction and in pixels from its beginning.
class PieceRows {
  public:
    /// Pixels that are taken at once.
    static constexpr int lanes = 4;

    PieceRows(Point unit, double length, const CoverTable& table)
        : right_(static_cast<float>(unit.x)),
          down_(static_cast<float>(unit.y)),
          length_(static_cast<float>(length)),
          per_square_(table.per_square()),
          covers_(table.covers()) {}

    /// Of `count` pixels, the first `along` the piece and `aside` of it. Up to three behind them are read,
    /// and written as they are.
    void cover(std::uint8_t* pixels, int count, float along, float aside) const {
        for (;; pixels += lanes, count -= lanes) {
            // One after the other: a pixel has the same bits wherever in a stretch it stands.
            const float t1 = along + right_, t2 = t1 + right_, t3 = t2 + right_;
            const float n1 = aside - down_, n2 = n1 - down_, n3 = n2 - down_;
            FourCovers covers = covers_of(Four{along, t1, t2, t3}, Four{aside, n1, n2, n3});
            if (count < lanes) covers &= ~FourCovers{0} >> (8 * (lanes - count));
            FourCovers before = 0;
            std::memcpy(&before, pixels, sizeof before);
            covers = larger(before, covers);
            std::memcpy(pixels, &covers, sizeof covers);
            if (count <= lanes) return;
            along = t3 + right_;
            aside = n3 - down_;
        }
    }

  private:
    using Four = float __attribute__((vector_size(lanes * sizeof(float))));
    using FourSteps = std::int32_t __attribute__((vector_size(lanes * sizeof(std::int32_t))));
    /// The covers of four pixels side by side, the first in the lowest byte.
    using FourCovers = std::uint32_t;

    static FourCovers larger(FourCovers a, FourCovers b) {
        using Bytes = std::uint8_t __attribute__((vector_size(16)));
        using Words = std::uint32_t __attribute__((vector_size(16)));
        const Bytes left = reinterpret_cast<Bytes>(Words{a}), right = reinterpret_cast<Bytes>(Words{b});
        return reinterpret_cast<Words>(left < right ? right : left)[0];
    }

    FourCovers covers_of(Four along, Four aside) const {
        constexpr Four none{};
        constexpr auto last_step = static_cast<float>(CoverTable::steps - 1);
        constexpr Four last = none + last_step;
        const Four before = -along, after = along - length_;
        const Four further = before < after ? after : before;
        const Four beyond = further < none ? none : further;
        const Four step = (aside * aside + beyond * beyond) * per_square_;
        const FourSteps at = __builtin_convertvector(last < step ? last : step, FourSteps);
        return FourCovers{covers_[at[0]]} | FourCovers{covers_[at[1]]} << 8U |
               FourCovers{covers_[at[2]]} << 16U | FourCovers{covers_[at[3]]} << 24U;
    }

    float right_;  ///< what one pixel to the right adds to `along`
    float down_;   ///< what it takes from `aside`
    float length_;
    float per_square_;
    const std::uint8_t* covers_;
};

}  // namespace anomalis::chart
