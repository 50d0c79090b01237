#include "chart/detail/pen_cover.h"

namespace anomalis::chart {

namespace {

/// The share of a pixel that is on the far side of a line at a distance from its centre. The parts of the
/// line's direction are `most` and `least`; seen along it, the pixel is a trapezium.
double pixel_beyond(double away, double most, double least) {
    if (away < 0.0) return 1.0 - pixel_beyond(-away, most, least);
    const double outer = (most + least) / 2.0, inner = (most - least) / 2.0;
    if (away >= outer) return 0.0;
    if (away <= inner) return 0.5 - away / most;
    return (outer - away) * (outer - away) / (2.0 * most * least);
}

}  // namespace

CoverTable::CoverTable(double half, double least) {
    const double most = std::sqrt(std::max(1.0 - least * least, 0.0));
    reach_ = half + (most + least) / 2.0;
    per_square_ = static_cast<float>(static_cast<double>(steps) / (reach_ * reach_));
    for (std::size_t i = 0; i < steps; ++i) {
        const double away = reach_ * std::sqrt(static_cast<double>(i) / static_cast<double>(steps));
        const double area = pixel_beyond(away - half, most, least) - pixel_beyond(away + half, most, least);
        covers_.at(i) = static_cast<std::uint8_t>(std::lround(255.0 * std::clamp(area, 0.0, 1.0)));
    }
}

PenCover::PenCover(double half) : half_(half) {
    for (std::size_t i = 0; i < slants; ++i) tables_.emplace_back(half, static_cast<double>(i) / per_slant);
}

}  // namespace anomalis::chart
