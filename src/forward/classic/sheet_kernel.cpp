#include "forward/classic/sheet_kernel.h"

#include "forward/station_lanes.h"

namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL {

namespace {

/// The line of poles along one end of a thin sheet.
template <class Real>
ANOMALIS_INLINE Real pole_line(const ThinSheetSection& sheet, Real u, Real h) {
    return (sheet.p * u + sheet.q * h) / (u * u + h * h);
}

/// atan(first / h) - atan(second / h) for h above 0, as one arc tangent.
template <class Real>
ANOMALIS_INLINE Real subtended(Real first, Real second, Real h) {
    return vector_atan2((first - second) * h, h * h + first * second);
}

}  // namespace

void thin_sheet_stations(const StationView& stations, const BodyFrame& frame, const ThinSheetSection& sheet,
                         float* response) {
    if (sheet.depth_extent > 0) {
        add_over_stations(
            stations, frame, response, [&](auto x, auto h) __attribute__((always_inline)) {
                const auto u = x - sheet.middle;
                return pole_line(sheet, u, h) -
                       pole_line(sheet, u - sheet.bottom_offset, h + sheet.depth_extent);
            });
    } else {
        add_over_stations(
            stations, frame, response, [&](auto x, auto h) __attribute__((always_inline)) {
                return pole_line(sheet, x - sheet.middle, h);
            });
    }
}

// The ratios of distances of top and bottom stand in one logarithm, and each pair of arc tangents in one, so
// a station costs one logarithm and two arc tangents.
void thick_sheet_stations(const StationView& stations, const BodyFrame& frame, const ThickSheetSection& sheet,
                          float* response) {
    if (sheet.depth_extent > 0) {
        add_over_stations(
            stations, frame, response, [&](auto x, auto h) __attribute__((always_inline)) {
                const auto u1 = x - sheet.first;
                const auto u2 = x - sheet.second;
                const auto v1 = u1 - sheet.bottom_offset;
                const auto v2 = u2 - sheet.bottom_offset;
                const auto below = h + sheet.depth_extent;
                const auto hh = h * h;
                const auto bb = below * below;
                const auto poles =
                    vector_log_quotient((u1 * u1 + hh) * (v2 * v2 + bb), (u2 * u2 + hh) * (v1 * v1 + bb));
                return sheet.p * poles + sheet.q * (subtended(u1, u2, h) - subtended(v1, v2, below));
            });
    } else {
        add_over_stations(
            stations, frame, response, [&](auto x, auto h) __attribute__((always_inline)) {
                const auto u1 = x - sheet.first;
                const auto u2 = x - sheet.second;
                const auto hh = h * h;
                return sheet.p * vector_log_quotient(u1 * u1 + hh, u2 * u2 + hh) +
                       sheet.q * subtended(u1, u2, h);
            });
    }
}

}  // namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL
