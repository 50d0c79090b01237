#include <algorithm>
#include <bit>
#include <cstdint>
#include <span>
#include <utility>

#include "core/failure.h"
#include "filter/convolution.h"
#include "filter/filter_work.h"
#include "filter/filters.h"
#include "filter/wide_pass.h"

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
int near_taps(const FilterPass& pass, int taps) {
    if (pass.tap_step == 0) return taps;
    const int reach = std::max(pass.station_count - 2, 0) / pass.tap_step;
    return std::min(taps, reach);
}

/// Station 1 inside the row with `taps` taps of room at both ends, filled with the end values.
const double* extend_ends(std::span<const float> row, const FilterPass& pass, int taps,
                          std::vector<double>& padded) {
    const auto margin = static_cast<std::size_t>(taps) * static_cast<std::size_t>(std::max(pass.tap_step, 0));
    padded.resize(row.size() + 2 * margin);
    const auto middle = padded.begin() + static_cast<std::ptrdiff_t>(margin);
    std::fill(padded.begin(), middle, static_cast<double>(row.front()));
    const auto end = std::copy(row.begin(), row.end(), middle);
    std::fill(end, padded.end(), static_cast<double>(row.back()));
    return padded.data() + margin;
}

void add_tap_by_tap(const FilterPass& pass, std::span<const float> input, std::span<float> output,
                    FilterScratch& scratch, Pacer& pacer) {
    const int half_width = std::max(pass.half_width, 0);
    const int stored = std::min(half_width, longest_stored_kernel);
    if (scratch.coefficients.size() <= static_cast<std::size_t>(stored)) throw Fault(FaultKind::subscript);
    Convolution work;
    work.near_taps = near_taps(pass, stored);
    work.stored_taps = stored;
    work.tap_step = pass.tap_step;
    const double* const row = extend_ends(input, pass, work.near_taps, scratch.padded);
    work.stations = pass.station_count;
    scratch.wide_coefficients.assign(scratch.coefficients.begin(), scratch.coefficients.end());
    work.coefficients = scratch.wide_coefficients.data();
    work.odd = pass.filter_code == filter_horizontal_derivative;
    const auto front = static_cast<double>(input.front());
    const auto back = static_cast<double>(input.back());
    work.end_pair = work.odd ? back - front : front + back;
    work.remainder = stored < half_width ? scratch.tail_sum : 0.0;
    work.subtract = pass.subtract;
    const double units = row_units + tap_units * stored;
    const int piece = std::max(1, static_cast<int>(piece_units / units));
    const auto run = convolve_at(vector::widest_vector_level());
    for (int at = 0; at < pass.station_count; at += work.stations) {
        work.input = row + at;
        work.output = output.data() + at;
        work.stations = std::min(piece, pass.station_count - at);
        run(work);
        pacer.done(units * work.stations);
    }
}

void add_windows(const FilterPass& pass, std::span<const float> input, std::span<float> output,
                 FilterScratch& scratch, Pacer& pacer) {
    const int reach = near_taps(pass, pass.half_width);
    const double* const row = extend_ends(input, pass, reach, scratch.padded);
    const std::span<const double> sums = wide_pass(pass, reach, row, scratch, pacer);
    for (std::size_t i = 0; i < output.size(); ++i)
        output[i] = static_cast<float>(pass.subtract ? row[i] - sums[i] : sums[i]);
}

/// A pass without a kernel goes the narrow way, which finds no taps.
bool is_wide(const FilterPass& pass) {
    return pass.tap_step != 0 && has_kernel(pass.filter_code) &&
           !is_added_tap_by_tap(pass.filter_code, pass.half_width, pass.station_count);
}

void run_pass(const FilterPass& pass, ChannelTable& data, FilterScratch& scratch, Pacer& pacer) {
    if (pass.first_station < 1 || pass.station_count > data.stations() - (pass.first_station - 1) ||
        (pass.tap_step < 0 && pass.half_width > 0))
        throw Fault(FaultKind::subscript);
    const auto count = static_cast<std::size_t>(pass.station_count);
    const auto first = static_cast<std::size_t>(pass.first_station - 1);
    const auto input = std::as_const(data).row(pass.input_row, pass.stage).subspan(first, count);
    const auto output = data.row(pass.output_row, pass.stage).subspan(first, count);
    is_wide(pass) ? add_windows(pass, input, output, scratch, pacer)
                  : add_tap_by_tap(pass, input, output, scratch, pacer);
    check_finite(output);
}

}  // namespace

void apply_filter(const FilterPass& pass, ChannelTable& data, FilterScratch& scratch, Faults& faults,
                  Pacer& pacer) {
    if (!is_wide(pass) || pass.filter_code < filter_smoothing)
        define_filter_coefficients(pass.filter_code, pass.half_width, longest_stored_kernel, scratch, faults);
    report_failure(faults, "An error occurred applying the filer: ", [&] {
        if (pass.station_count > 0) run_pass(pass, data, scratch, pacer);
    });
}

}  // namespace anomalis::filter
