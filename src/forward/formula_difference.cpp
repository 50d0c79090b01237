#include "forward/formula_difference.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "core/faults.h"
#include "forward/body_price.h"
#include "forward/exact/exact_response.h"
#include "forward/station_columns.h"

namespace anomalis::forward {

namespace {

/// Pieces begin at whole vectors of every level.
constexpr std::size_t least_piece = 64;

int column_of(int channel) {
    return channel == channel_mag ? 1 : 2;
}

std::string reason_to_leave_out(const Workspace& workspace, const ModelBody& body) {
    const BodyPrice price = body_price(body, Formulas::exact, workspace.station_count);
    try {
        require_affordable(price);
    } catch (const Fault& refusal) {
        return refusal.what();
    }
    if (work_of(price, workspace.station_count) <= most_comparison_units) return "";
    return "its exact curve takes too long: " + std::to_string(price.station_facets) +
           " facets seen by the stations, " + std::to_string(price.facets) + " of the solid";
}

}  // namespace

FormulaComparison::FormulaComparison(const Workspace& workspace, int body_number, double piece_units)
    : workspace_(workspace), body_number_(body_number), piece_units_(piece_units) {}

void FormulaComparison::begin(int body_number) {
    if (workspace_.formulas == Formulas::exact || workspace_.station_count <= 0) return;
    const ModelBody& body = workspace_.body(body_number);
    if (body.turned_off == 1) return;
    found_.left_out = reason_to_leave_out(workspace_, body);
    if (!found_.left_out.empty()) return;
    if (workspace_.has_grav() && body.grav_response_valid) channels_.push_back(channel_grav);
    if (workspace_.has_mag() && body.mag_response_valid) channels_.push_back(channel_mag);
    body_ = body;
    const auto stations = static_cast<double>(workspace_.station_count);
    const double units =
        work_of(body_price(body, Formulas::exact, workspace_.station_count), workspace_.station_count);
    const double fits = std::clamp(piece_units_ / std::max(units, 1.0), 0.0, 1.0) * stations;
    piece_ = (static_cast<std::size_t>(fits) / least_piece + 1) * least_piece;
}

void FormulaComparison::compare_piece() {
    const StationView all = station_view(workspace_);
    const std::size_t count = std::min(piece_, all.count - next_);
    values_.resize(count);
    ExactNotes notes;
    exact_values(workspace_, body_, channels_.back(), part_of(all, next_, count), polyhedron_, values_, notes,
                 no_pace());
    const float* classic =
        response_column(workspace_, body_, column_of(channels_.back())) + static_cast<std::ptrdiff_t>(next_);
    for (std::size_t i = 0; i < count; ++i) {
        peak_ = std::max(peak_, std::abs(values_[i]));
        largest_ = std::max(largest_, std::abs(values_[i] - static_cast<double>(classic[i])));
    }
    next_ += count;
    if (next_ >= all.count) end_channel();
}

void FormulaComparison::end_channel() {
    double share = 0;
    if (largest_ != 0) share = peak_ > 0 ? std::min(largest_ / peak_, no_common_measure) : no_common_measure;
    (channels_.back() == channel_mag ? found_.magnetic : found_.gravity) = share;
    channels_.pop_back();
    next_ = 0;
    peak_ = largest_ = 0;
}

bool FormulaComparison::advance(Faults& faults) {
    const int status = report_failure(faults, "An error occurred while comparing the formulas: ", [&] {
        if (!std::exchange(begun_, true)) begin(body_number_);
        if (!channels_.empty()) compare_piece();
    });
    if (status != 0) channels_.clear();
    return !channels_.empty();
}

FormulaDifference formula_difference(const Workspace& workspace, int body_number, Faults& faults) {
    FormulaComparison comparison(workspace, body_number);
    while (comparison.advance(faults)) {
    }
    return comparison.found();
}

}  // namespace anomalis::forward
