#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "intake/survey/survey_index.h"

// Where a track is no single line: it jumps, turns back or bends. Directions are those of long stretches, so
// that the scatter of places on the ground cuts nothing.
namespace anomalis::intake {

/// The stretches of a track between jumps and reversals, as numbers of its points from 0, first to last, all
/// of them. A jump is a step of many spacings that leaves the line; one along it is a gap. A reversal takes
/// the track back by more than 5 % of its way, by more than its scatter. Stretches below 3 % of the longest
/// one belong to the one before.
std::vector<LinePiece> unfolded_stretches(std::span<const MapPoint> track);

/// The same, cut further where the track bends by more than 20 degrees (after Douglas and Peucker 1973, with
/// a tolerance of 3 % of the stretch or its scatter).
std::vector<LinePiece> straight_pieces(std::span<const MapPoint> track);

/// Median distance of neighbouring points that lie apart, m; 0 for none.
double typical_step(std::span<const MapPoint> track);
/// The same of points that stand elsewhere, numbered from 0; of many it asks for a part.
double typical_step(std::size_t points, const PointAt& point_at);

/// Straight distance from the first to the last point of each piece, added up, m.
double length_of_pieces(std::span<const MapPoint> track, std::span<const LinePiece> pieces);

}  // namespace anomalis::intake
