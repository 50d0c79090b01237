#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>

#include "core/pacer.h"
#include "core/shared_pieces.h"

namespace anomalis::forward {

/// Stretches begin at multiples of this: at whole vectors of every level.
inline constexpr std::size_t whole_vectors = 8;

/// Calls step(first, count) for stretches that make up all stations, numbered from 0, on as many cores as
/// they are worth when one takes `units` (core/pacer.h), or so many nanoseconds where these are fewer.
/// Stations do not know of each other, so neither stretches nor cores change a bit; `step` must bear to be
/// called on several threads at once. Raises Stopped.
template <class Step>
void for_stretches(std::size_t stations, double units, Pacer& pacer, const Step& step,
                   double nanoseconds = 0) {
    constexpr double stretch_units = 2e5;
    const auto wholes = static_cast<std::size_t>(stretch_units / units / whole_vectors);
    const std::size_t length = std::max(wholes, std::size_t{1}) * whole_vectors;
    const std::size_t pieces = (stations + length - 1) / length;
    const auto work = [&](PieceWorker& worker, std::size_t piece) {
        const std::size_t first = piece * length;
        const std::size_t count = std::min(length, stations - first);
        step(first, count);
        worker.goes_on(units * static_cast<double>(count));
    };
    const double worth = nanoseconds > 0 ? nanoseconds : units;
    const int workers = worker_count(worth * static_cast<double>(stations), pieces);
    for_each_piece(pieces, workers, pacer, std::ref(work));  // by reference: no memory is taken
}

}  // namespace anomalis::forward
