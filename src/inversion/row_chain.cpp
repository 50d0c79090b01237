#include "inversion/row_chain.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "core/failure.h"
#include "core/gaps.h"
#include "filter/filters.h"

namespace anomalis::inversion {

namespace {

RowKernel kernel_of(int code, int half_width, int step, bool subtract, FilterScratch& scratch,
                    Faults& faults) {
    if (step < 0) throw Fault(FaultKind::subscript);
    filter::define_filter_coefficients(code, half_width, filter::longest_stored_kernel, scratch, faults);
    RowKernel kernel;
    const auto stored = static_cast<std::size_t>(std::min(half_width, filter::longest_stored_kernel));
    kernel.taps.assign(scratch.coefficients.begin(),
                       scratch.coefficients.begin() + static_cast<std::ptrdiff_t>(stored) + 1);
    kernel.step = step;
    kernel.beyond = half_width > filter::longest_stored_kernel ? scratch.tail_sum : 0.0;
    kernel.odd = code == filter::filter_horizontal_derivative;
    kernel.subtract = subtract;
    return kernel;
}

std::string no_readings(const Workspace& workspace, std::int32_t channel) {
    return "There is no " + std::string(channel == channel_mag ? "magnetic" : "gravity") +
           " reading at the stations " + std::to_string(workspace.first_station) + " to " +
           std::to_string(workspace.last_station) + " of the window: widen it";
}

/// One stretch of a row on its own.
void filter_part(const RowKernel& kernel, std::span<const double> row, std::span<double> sums) {
    const auto count = static_cast<std::ptrdiff_t>(row.size());
    const auto most = static_cast<std::ptrdiff_t>(kernel.taps.size()) - 1;
    const std::ptrdiff_t near =
        kernel.step == 0 ? most : std::min(most, std::max(count - 2, std::ptrdiff_t{0}) / kernel.step);
    const double front = row.front(), back = row.back();
    double outer = kernel.beyond;
    for (std::ptrdiff_t k = near + 1; k <= most; ++k) outer += kernel.taps[static_cast<std::size_t>(k)];
    outer *= kernel.odd ? back - front : front + back;
    const auto at = [&](std::ptrdiff_t i) {
        return row[static_cast<std::size_t>(std::clamp(i, std::ptrdiff_t{0}, count - 1))];
    };
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        double sum = kernel.taps[0] * at(i) + outer;
        for (std::ptrdiff_t k = 1; k <= near; ++k) {
            const double tap = kernel.taps[static_cast<std::size_t>(k)];
            if (tap == 0) continue;
            const double left = at(i - k * kernel.step), right = at(i + k * kernel.step);
            sum += tap * (kernel.odd ? right - left : left + right);
        }
        sums[static_cast<std::size_t>(i)] = kernel.subtract ? at(i) - sum : sum;
    }
}

}  // namespace

RowChain::RowChain(Workspace& workspace, std::int32_t channel, std::int32_t target, Faults& faults) {
    if (workspace.first_station < 1 || workspace.last_station > workspace.station_count ||
        workspace.first_station > workspace.last_station)
        throw Fault(FaultKind::subscript);
    const Processing& processing = workspace.processing;
    FilterScratch& scratch = workspace.filter_scratch;
    const int smoothing =
        filter::filter_smoothing + std::clamp(processing.smooth_filter_type, 0, filter::last_smoothing_type);
    const auto add = [&](int code, int half_width, int step, bool subtract) {
        if (half_width > 0) kernels_.push_back(kernel_of(code, half_width, step, subtract, scratch, faults));
    };
    add(smoothing, processing.smooth_filter_width, 1, false);
    if (target == target_gradient) {
        nothing_ = processing.vg_filter_width <= 0;
        total_ = !nothing_ && processing.display_total_gradient == 1;
        add(filter::filter_vertical_gradient, processing.vg_filter_width, processing.vg_filter_step, false);
        if (total_) add(filter::filter_horizontal_derivative, 1, processing.vg_filter_step, false);
    } else {
        add(smoothing, processing.residual_filter_width, 1, true);
    }
    const bool window_alone = kernels_.empty();
    first_ = window_alone ? workspace.first_station : 1;
    last_ = window_alone ? workspace.last_station : workspace.station_count;
    find_parts(channel_gaps(workspace, channel), workspace.channel(channel), workspace.raw_row);
    const auto from = std::ranges::lower_bound(stations_, workspace.first_station);
    const auto behind = std::ranges::upper_bound(stations_, workspace.last_station);
    skipped_ = static_cast<std::size_t>(from - stations_.begin());
    window_ = static_cast<std::size_t>(behind - from);
    if (window_ == 0) throw Fault(no_readings(workspace, channel));
}

/// The stretches, as far as raw values are wanted.
void RowChain::find_parts(const ChannelGaps& gaps, const Channel& channel, std::int32_t raw_row) {
    whole_ = gaps.none;
    const std::vector<Stretch> line{{first_, last_}};
    for (const Stretch& stretch : whole_ ? line : gaps.stretches) {
        const std::size_t begin = stations_.size();
        for (int i = std::max(stretch.first, first_); i <= std::min(stretch.last, last_); ++i)
            if (whole_ || is_reading(static_cast<double>(channel.data(i, raw_row, stage_observed))))
                stations_.push_back(i);
        if (stations_.size() > begin) parts_.push_back({begin, stations_.size() - begin});
    }
}

std::vector<std::size_t> RowChain::starts() const {
    std::vector<std::size_t> rows;
    for (const Part& part : parts_)
        if (part.first + part.count > skipped_ && part.first < skipped_ + window_)
            rows.push_back(std::max(part.first, skipped_) - skipped_);
    return rows;
}

void RowChain::gather(std::span<const double> raw, std::vector<double>& row) const {
    if (whole_) {
        row.assign(raw.begin(), raw.end());
    } else {
        row.clear();
        for (const std::int32_t station : stations_)
            row.push_back(raw[static_cast<std::size_t>(station - first_)]);
    }
    const std::size_t plain = kernels_.size() - (total_ ? 2 : 0);
    for (std::size_t k = 0; k < plain; ++k) filter(kernels_[k], row);
}

void RowChain::filter(const RowKernel& kernel, std::vector<double>& row) const {
    std::vector<double> sums(row.size());
    for (const Part& part : parts_)
        filter_part(kernel, std::span(row).subspan(part.first, part.count),
                    std::span(sums).subspan(part.first, part.count));
    row = std::move(sums);
}

void RowChain::take_window(const std::vector<double>& row, std::span<double> rows) const {
    std::copy_n(row.begin() + static_cast<std::ptrdiff_t>(skipped_), window_, rows.begin());
}

void RowChain::values(std::span<const double> raw, std::span<double> rows) {
    if (linear()) return change(raw, rows);
    gather(raw, row_);
    horizontal_ = vertical_ = row_;
    filter(kernels_.rbegin()[1], vertical_);
    filter(kernels_.rbegin()[0], horizontal_);
    for (std::size_t i = 0; i < row_.size(); ++i) row_[i] = std::hypot(horizontal_[i], vertical_[i]);
    take_window(row_, rows);
}

/// The length of the gradient by the chain rule; where it is 0 it has no slope.
void RowChain::change(std::span<const double> raw, std::span<double> rows) const {
    if (nothing_) {
        std::ranges::fill(rows, 0.0);
        return;
    }
    std::vector<double> row;
    gather(raw, row);
    if (linear()) return take_window(row, rows);
    std::vector<double> along = row;
    filter(kernels_.rbegin()[1], row);
    filter(kernels_.rbegin()[0], along);
    for (std::size_t i = 0; i < row.size(); ++i) {
        const double length = std::hypot(horizontal_[i], vertical_[i]);
        row[i] = length > 0 ? (vertical_[i] * row[i] + horizontal_[i] * along[i]) / length : 0.0;
    }
    take_window(row, rows);
}

}  // namespace anomalis::inversion
