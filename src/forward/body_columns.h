#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "core/pacer.h"
#include "core/workspace.h"
#include "forward/exact/exact_notes.h"
#include "forward/polyhedron/polyhedron.h"
#include "forward/station_view.h"

namespace anomalis {
class Faults;
}  // namespace anomalis

// What a fit asks of the forward room: one body at a stretch of stations in double precision, and how that
// changes with the body's parameters. The workspace is only read and the body is the caller's own copy, so
// several threads may ask at once, each with a bench, a body and notes of its own.
namespace anomalis::forward {

/// Stations from `first` to `last`, both counted, from 1.
struct StationRange {
    std::int32_t first = 1, last = 0;
    std::size_t count() const { return last < first ? 0 : static_cast<std::size_t>(last - first) + 1; }
};

/// Memory of one thread, kept from call to call. It fits itself to the workspace of each call.
struct BodyBench {
    Polyhedron polyhedron;
    std::vector<double> behind;          ///< responses of a changed body, one a station
    std::vector<double> unasked;         ///< values that nobody wants
    std::unique_ptr<Workspace> classic;  ///< the line with one body, as the classic formulas want it
    ResponseTable response;              ///< of that body
};

/// Where a calculation notes what goes wrong, in the texts of `calculate_model`, and whom it tells of its
/// work.
struct BodyNotes {
    int body_number;  ///< for the texts
    ExactNotes& exact;
    Faults& faults;
    Pacer& pacer = no_pace();
};

/// Anomaly (nT) or attraction (mGal) of one body at the stations of the range, by the formulas of the
/// workspace: the exact ones as `exact_anomaly` and `exact_gravity` give them, the classic ones widened from
/// single precision. A body that is off, that the formulas do not know or whose response is not finite gives
/// zeros. The body's reference point and its kept tensor are brought up to date. `channel` is channel_mag or
/// channel_grav. Raises Fault subscript for a range that the line does not hold or for `values` of another
/// length, Stopped when the pacer has the work left.
void body_values(const Workspace& workspace, ModelBody& body, int channel, const StationRange& range,
                 BodyBench& memory, std::span<double> values, BodyNotes& notes);

/// The same by the exact formulas at stations that no workspace holds, with the body where its map position
/// says. Of the workspace the field is read; it has no stations.
void exact_values_at(const Workspace& workspace, ModelBody& body, int channel, const StationView& stations,
                     BodyBench& memory, std::span<double> values, BodyNotes& notes);

/// `body_values`, and for each of the parameter codes the derivative of the values per unit of that parameter
/// (m, degrees, micro SI, mA, g/cc or none): `columns` holds them one after the other, each one value a
/// station. With the exact formulas sheets, edges, steps, spheres and wires have closed forms, whose columns
/// share their logarithms and angles; other bodies, and the classic formulas, are differenced but for their
/// susceptibility and density. Never NaN: a body that is off or fails has columns of zeros, and so have a
/// length and a depth extent of 0, which stand for no end. Raises as `body_values`.
void body_columns(const Workspace& workspace, ModelBody& body, int channel, const StationRange& range,
                  BodyBench& memory, std::span<const int> param_codes, std::span<double> values,
                  std::span<double> columns, BodyNotes& notes);

/// Whether a column needs no calculation of a changed body; else `body_columns` makes two of them.
bool has_derivative(const Workspace& workspace, const ModelBody& body, int channel, int param_code);

}  // namespace anomalis::forward
