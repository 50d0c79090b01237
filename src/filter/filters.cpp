#include "filter/filters.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <span>
#include <utility>

#include "core/failure.h"
#include "filter/convolution.h"

namespace anomalis::filter {

namespace {

/// Raises an overflow when a value of the row is beyond single precision or no number at all.
void check_finite(std::span<const float> row) {
    constexpr std::uint32_t exponent = 0x7F800000U;
    std::uint32_t largest = 0;
    for (const float value : row)
        largest = std::max(largest, std::bit_cast<std::uint32_t>(value) & 0x7FFFFFFFU);
    if (largest >= exponent) throw Fault(FaultKind::overflow);
}

/// Taps that see a station of the row on at least one side at some station.
int near_taps(const FilterPass& pass, int stored) {
    if (pass.tap_step == 0) return stored;
    const int reach = std::max(pass.station_count - 2, 0) / pass.tap_step;
    return std::min(stored, reach);
}

const double* extend_ends(std::span<const float> row, std::size_t margin, std::vector<double>& padded) {
    padded.resize(row.size() + 2 * margin);
    const auto middle = padded.begin() + static_cast<std::ptrdiff_t>(margin);
    std::fill(padded.begin(), middle, static_cast<double>(row.front()));
    const auto end = std::copy(row.begin(), row.end(), middle);
    std::fill(end, padded.end(), static_cast<double>(row.back()));
    return padded.data() + margin;
}

void run_pass(const FilterPass& pass, ChannelTable& data, FilterScratch& scratch) {
    const int half_width = std::max(pass.half_width, 0);
    const int stored = std::min(half_width, longest_stored_kernel(pass.station_count));
    if (scratch.coefficients.size() <= static_cast<std::size_t>(stored)) throw Fault(FaultKind::subscript);
    if (pass.station_count > data.stations() || (pass.tap_step < 0 && half_width > 0))
        throw Fault(FaultKind::subscript);
    const auto count = static_cast<std::size_t>(pass.station_count);
    const auto input = std::as_const(data).row(pass.input_row, pass.stage).first(count);
    const auto output = data.row(pass.output_row, pass.stage).first(count);
    const bool odd = pass.filter_code == filter_horizontal_derivative;

    Convolution work;
    work.near_taps = near_taps(pass, stored);
    work.stored_taps = stored;
    work.tap_step = pass.tap_step;
    const auto margin =
        static_cast<std::size_t>(work.near_taps) * static_cast<std::size_t>(std::max(pass.tap_step, 0));
    work.input = extend_ends(input, margin, scratch.padded);
    work.output = output.data();
    work.stations = pass.station_count;
    scratch.wide_coefficients.assign(scratch.coefficients.begin(), scratch.coefficients.end());
    work.coefficients = scratch.wide_coefficients.data();
    const auto front = static_cast<double>(input.front());
    const auto back = static_cast<double>(input.back());
    work.end_pair = odd ? back - front : front + back;
    work.remainder = stored < half_width ? scratch.tail_sum : 0.0;
    work.odd = odd;
    work.subtract = pass.subtract;
    convolve_at(vector::widest_vector_level())(work);
    check_finite(output);
}

}  // namespace

void apply_filter(const FilterPass& pass, ChannelTable& data, FilterScratch& scratch, Faults& faults) {
    define_filter_coefficients(pass.filter_code, pass.half_width, longest_stored_kernel(pass.station_count),
                               scratch, faults);
    report_failure(faults, "An error occurred applying the filer: ", [&] {
        if (pass.station_count > 0) run_pass(pass, data, scratch);
    });
}

namespace {

void copy_row(const Workspace& workspace, int from, int to, int stage, ChannelTable& data) {
    const auto count = static_cast<std::size_t>(workspace.station_count);
    const auto source = std::as_const(data).row(from, stage).first(count);
    std::copy(source.begin(), source.end(), data.row(to, stage).begin());
}

/// Steps 1 and 2 of the chain: from the raw row to the residual one, the base level still in it.
void filter_rows(Workspace& workspace, int stage, ChannelTable& data, Faults& faults) {
    const int code =
        filter_smoothing + std::clamp(workspace.processing.smooth_filter_type, 0, last_smoothing_type);
    const FilterPass pass{.filter_code = code, .station_count = workspace.station_count, .stage = stage};
    const auto step = [&](int half_width, int input, int output, bool subtract) {
        if (half_width <= 0) return copy_row(workspace, input, output, stage, data);
        FilterPass wanted = pass;
        wanted.half_width = half_width;
        wanted.input_row = input;
        wanted.output_row = output;
        wanted.subtract = subtract;
        apply_filter(wanted, data, workspace.filter_scratch, faults);
    };
    step(workspace.processing.smooth_filter_width, workspace.raw_row, workspace.smoothed_row, false);
    step(workspace.processing.residual_filter_width, workspace.smoothed_row, workspace.residual_row, true);
}

double window_mean(const Workspace& workspace, int row, int stage, const ChannelTable& data) {
    const std::int64_t first = workspace.first_station;
    const std::int64_t last = workspace.last_station;
    if (last - first + 1 == 0) throw Fault(FaultKind::division_by_zero);
    double sum = 0;
    if (first <= last) {
        if (first < 1 || last > workspace.station_count) throw Fault(FaultKind::subscript);
        for (const float value :
             data.row(row, stage)
                 .subspan(static_cast<std::size_t>(first - 1), static_cast<std::size_t>(last - first + 1)))
            sum += static_cast<double>(value);
    }
    return sum / static_cast<double>(last - first + 1);
}

/// The level to take off the residual row. The calculated curve is laid on the observed one when the base
/// floats. A residual filter has taken the level off already, so a typed base then stays for later.
float base_level(Workspace& workspace, int channel, int stage, const ChannelTable& data) {
    Channel& base = workspace.channel(channel);
    const bool floating = base.float_base == 1;
    const auto mean = static_cast<float>(window_mean(workspace, workspace.residual_row, stage, data));
    if (stage == stage_observed) {
        base.mean = mean;
        if (floating) base.base = mean;
        return floating || workspace.processing.residual_filter_width <= 0 ? base.base : 0.0F;
    }
    base.calc_mean = mean;
    base.calc_base =
        floating ? static_cast<float>(static_cast<double>(mean) -
                                      (static_cast<double>(base.mean) - static_cast<double>(base.base)))
                 : 0.0F;
    return base.calc_base;
}

void total_gradient(const Workspace& workspace, int stage, ChannelTable& data) {
    const auto horizontal = std::as_const(data).row(workspace.horizontal_row, stage);
    const auto vertical = std::as_const(data).row(workspace.gradient_row, stage);
    const auto total = data.row(workspace.total_gradient_row, stage);
    const auto count = static_cast<std::size_t>(workspace.station_count);
    for (std::size_t i = 0; i < count; ++i) {
        const auto h = static_cast<double>(horizontal[i]);
        const auto v = static_cast<double>(vertical[i]);
        total[i] = static_cast<float>(std::sqrt(h * h + v * v));
    }
}

void gradient_rows(Workspace& workspace, int stage, ChannelTable& data, Faults& faults) {
    if (workspace.processing.vg_filter_width <= 0) return;
    FilterPass pass{.filter_code = filter_vertical_gradient,
                    .half_width = workspace.processing.vg_filter_width,
                    .tap_step = workspace.processing.vg_filter_step,
                    .station_count = workspace.station_count,
                    .stage = stage,
                    .input_row = workspace.smoothed_row,
                    .output_row = workspace.gradient_row};
    apply_filter(pass, data, workspace.filter_scratch, faults);
    if (workspace.processing.display_total_gradient != 1) return;
    pass.filter_code = filter_horizontal_derivative;
    pass.half_width = 1;
    pass.output_row = workspace.horizontal_row;
    apply_filter(pass, data, workspace.filter_scratch, faults);
    total_gradient(workspace, stage, data);
}

}  // namespace

void filter_data(Workspace& workspace, int channel, int stage, ChannelTable& data, Faults& faults) {
    Channel& own = workspace.channel(channel);
    bool& filtered = stage == stage_observed ? own.observed_filtered : own.calculated_filtered;
    if (workspace.station_count <= 0 || filtered) return;
    report_failure(faults, "An error occurred while filtering the data: ", [&] {
        if (workspace.station_count > data.stations()) throw Fault(FaultKind::subscript);
        filter_rows(workspace, stage, data, faults);
        const float level = base_level(workspace, channel, stage, data);
        for (float& value :
             data.row(workspace.residual_row, stage).first(static_cast<std::size_t>(workspace.station_count)))
            value -= level;
        gradient_rows(workspace, stage, data, faults);
        filtered = true;
    });
}

}  // namespace anomalis::filter
