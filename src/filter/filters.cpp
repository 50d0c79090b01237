#include "filter/filters.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include "core/failure.h"
#include "filter/filter_work.h"

namespace anomalis::filter {

namespace {

void copy_row(const Workspace& workspace, int from, int to, int stage, ChannelTable& data) {
    const auto count = static_cast<std::size_t>(workspace.station_count);
    const auto source = std::as_const(data).row(from, stage).first(count);
    std::copy(source.begin(), source.end(), data.row(to, stage).begin());
}

/// Steps 1 and 2 of the chain: from the raw row to the residual one, the base level still in it.
void filter_rows(Workspace& workspace, int stage, ChannelTable& data, Faults& faults, Pacer& pacer) {
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
        apply_filter(wanted, data, workspace.filter_scratch, faults, pacer);
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

void gradient_rows(Workspace& workspace, int stage, ChannelTable& data, Faults& faults, Pacer& pacer) {
    if (workspace.processing.vg_filter_width <= 0) return;
    FilterPass pass{.filter_code = filter_vertical_gradient,
                    .half_width = workspace.processing.vg_filter_width,
                    .tap_step = workspace.processing.vg_filter_step,
                    .station_count = workspace.station_count,
                    .stage = stage,
                    .input_row = workspace.smoothed_row,
                    .output_row = workspace.gradient_row};
    apply_filter(pass, data, workspace.filter_scratch, faults, pacer);
    if (workspace.processing.display_total_gradient != 1) return;
    pass.filter_code = filter_horizontal_derivative;
    pass.half_width = 1;
    pass.output_row = workspace.horizontal_row;
    apply_filter(pass, data, workspace.filter_scratch, faults, pacer);
    total_gradient(workspace, stage, data);
    pacer.done(row_units * workspace.station_count);
}

}  // namespace

void filter_data(Workspace& workspace, int channel, int stage, ChannelTable& data, Faults& faults,
                 Pacer& pacer) {
    Channel& own = workspace.channel(channel);
    bool& filtered = stage == stage_observed ? own.observed_filtered : own.calculated_filtered;
    if (workspace.station_count <= 0 || filtered) return;
    report_failure(faults, "An error occurred while filtering the data: ", [&] {
        if (workspace.station_count > data.stations()) throw Fault(FaultKind::subscript);
        filter_rows(workspace, stage, data, faults, pacer);
        const float level = base_level(workspace, channel, stage, data);
        for (float& value :
             data.row(workspace.residual_row, stage).first(static_cast<std::size_t>(workspace.station_count)))
            value -= level;
        pacer.done(row_units * workspace.station_count);
        gradient_rows(workspace, stage, data, faults, pacer);
        filtered = true;
    });
}

double chain_work(const Workspace& workspace) {
    const double stations = workspace.station_count;
    const Processing& processing = workspace.processing;
    const auto pass = [&](int kernel, int half_width) {
        if (half_width <= 0) return row_units * stations;
        const bool narrow = is_added_tap_by_tap(kernel, half_width, workspace.station_count);
        constexpr double terms_of_wide_kernels = 12;  // in fours
        return stations *
               (narrow ? row_units + tap_units * half_width : terms_of_wide_kernels * window_units);
    };
    double work = pass(filter_triangular, processing.smooth_filter_width) +
                  pass(filter_triangular, processing.residual_filter_width);
    if (processing.vg_filter_width > 0) {
        work += pass(filter_vertical_gradient, processing.vg_filter_width);
        if (processing.display_total_gradient == 1) work += 2 * pass(filter_horizontal_derivative, 1);
    }
    return work;
}

void clear_rows_left_out(Workspace& workspace) {
    const Processing& processing = workspace.processing;
    // A step below 0 is a fault that leaves the row.
    const bool gradient = processing.vg_filter_width > 0 && processing.vg_filter_step >= 0;
    const bool total = gradient && processing.display_total_gradient == 1;
    std::vector<std::int32_t> left_out;
    if (!gradient) left_out.push_back(workspace.gradient_row);
    if (!total) left_out.insert(left_out.end(), {workspace.horizontal_row, workspace.total_gradient_row});
    for (Channel* channel : {&workspace.mag, &workspace.grav})
        for (const std::int32_t row : left_out)
            for (const Stage stage : {stage_observed, stage_calculated})
                std::ranges::fill(channel->data.row(row, stage), 0.0F);
}

}  // namespace anomalis::filter
