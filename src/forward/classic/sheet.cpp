#include "forward/classic/sheet.h"

#include <cmath>

#include "forward/classic/sheet_kernel.h"
#include "forward/station_columns.h"
#include "forward/station_stretches.h"

namespace anomalis::forward {

namespace {

BodyFrame mirrored_frame(const ModelBody& body, double strike_sine) {
    BodyFrame frame = body_frame(body);
    if (strike_sine < 0) frame.sense = -1.0;
    return frame;
}

/// How far the lower end lies across strike from the top, for x in the sense of the frame.
double bottom_offset(const ModelBody& body, double strike_sine) {
    const double depth = body.depth_extent.value;
    if (!(depth > 0) || std::abs(body.sin_dip) <= 0.001) return 0;
    const double offset = body.cos_dip * depth / body.sin_dip;
    return strike_sine < 0 ? -offset : offset;
}

/// Runs a kernel over the stations, stretch by stretch.
template <class Kernel, class Section>
void add_sheet_at_stations(const BodyJob& job, double strike_sine, Kernel kernel, const Section& section) {
    constexpr double units_a_station = 10;
    const StationView stations = station_view(job.workspace);
    const BodyFrame frame = mirrored_frame(job.body, strike_sine);
    float* const response = response_column(job.workspace, job.body, 1);
    for_stretches(stations.count, units_a_station, job.pacer, [&](std::size_t first, std::size_t count) {
        kernel(part_of(stations, first, count), frame, section, response + first);
    });
}

}  // namespace

void add_thin_sheet(const BodyJob& job, double strike_sine, const ShapeTerms& terms) {
    const ModelBody& body = job.body;
    const double width = body.width.value;
    const ThinSheetSection section{terms.p * width, terms.q * width, (strike_sine < 0 ? -width : width) / 2,
                                   body.depth_extent.value, bottom_offset(body, strike_sine)};
    add_sheet_at_stations(job, strike_sine, thin_sheet_stations_at(vector::widest_vector_level()), section);
}

void add_thick_sheet(const BodyJob& job, double strike_sine, const ShapeTerms& terms) {
    const ModelBody& body = job.body;
    const double half = static_cast<double>(body.width.value) / 2;
    const double half_size = std::abs(half);
    // The first edge is the one at the reference point; a negative width swaps both.
    const double first = strike_sine < 0 ? -half - half_size : half_size - half;
    const double second = strike_sine < 0 ? half_size - half : half_size + half;
    const ThickSheetSection section{
        body.sin_dip * terms.p / 2, body.sin_dip * terms.q,          first, second,
        body.depth_extent.value,    bottom_offset(body, strike_sine)};
    add_sheet_at_stations(job, strike_sine, thick_sheet_stations_at(vector::widest_vector_level()), section);
}

}  // namespace anomalis::forward
