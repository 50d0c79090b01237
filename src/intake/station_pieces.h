#pragma once

#include <algorithm>
#include <cstddef>

#include "core/pacer.h"
#include "core/shared_pieces.h"

namespace anomalis::intake {

/// So many stations are a piece: some ten microseconds of the cheapest work.
inline constexpr std::size_t stations_of_a_piece = 16384;

inline std::size_t station_pieces(std::size_t stations) {
    return (stations + stations_of_a_piece - 1) / stations_of_a_piece;
}

/// Calls work(first, count) for pieces that make up all stations, numbered from 0, on as many cores as they
/// are worth when one takes so many nanoseconds. The pieces are the same on any number of cores.
template <class Work>
void for_station_pieces(std::size_t stations, double nanoseconds, const Work& work) {
    const std::size_t pieces = station_pieces(stations);
    const int workers = worker_count(nanoseconds * static_cast<double>(stations), pieces);
    for_each_piece(pieces, workers, no_pace(), [&](PieceWorker&, std::size_t piece) {
        const std::size_t first = piece * stations_of_a_piece;
        work(first, std::min(stations_of_a_piece, stations - first));
    });
}

}  // namespace anomalis::intake
