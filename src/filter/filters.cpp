#include "filter/filters.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include "core/failure.h"
#include "core/gaps.h"
#include "core/zero_values.h"
#include "filter/filter_work.h"

namespace anomalis::filter {

namespace {

/// The stations of a table that are filtered together, the first from 1.
struct Part {
    int first = 1, count = 0;
};

void copy_row(const Part& part, int from, int to, int stage, ChannelTable& data) {
    const auto first = static_cast<std::size_t>(part.first - 1);
    const auto source =
        std::as_const(data).row(from, stage).subspan(first, static_cast<std::size_t>(part.count));
    std::copy(source.begin(), source.end(), data.row(to, stage).subspan(first).begin());
}

/// Steps 1 and 2 of the chain: from the raw row to the residual one, the base level still in it.
void filter_rows(Workspace& workspace, const Part& part, int stage, ChannelTable& data, Faults& faults,
                 Pacer& pacer) {
    const int code =
        filter_smoothing + std::clamp(workspace.processing.smooth_filter_type, 0, last_smoothing_type);
    const FilterPass pass{
        .filter_code = code, .first_station = part.first, .station_count = part.count, .stage = stage};
    const auto step = [&](int half_width, int input, int output, bool subtract) {
        if (half_width <= 0) return copy_row(part, input, output, stage, data);
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

/// 0 when there is none.
double mean_of_readings(std::span<const float> row) {
    double sum = 0, count = 0;
    for (const float value : row) {
        if (!is_reading(static_cast<double>(value))) continue;
        sum += static_cast<double>(value);
        ++count;
    }
    return count > 0 ? sum / count : 0;
}

double window_mean(const Workspace& workspace, bool whole, int row, int stage, const ChannelTable& data) {
    const std::int64_t first = workspace.first_station;
    const std::int64_t last = workspace.last_station;
    if (last - first + 1 == 0) throw Fault(FaultKind::division_by_zero);
    double sum = 0;
    if (first <= last) {
        if (first < 1 || last > workspace.station_count) throw Fault(FaultKind::subscript);
        const auto window =
            data.row(row, stage)
                .subspan(static_cast<std::size_t>(first - 1), static_cast<std::size_t>(last - first + 1));
        if (!whole) return mean_of_readings(window);
        for (const float value : window) sum += static_cast<double>(value);
    }
    return sum / static_cast<double>(last - first + 1);
}

/// The level to take off the residual row. The calculated curve is laid on the observed one when the base
/// floats. A residual filter has taken the level off already, so a typed base then stays for later.
float base_level(Workspace& workspace, int channel, int stage, const ChannelTable& data) {
    Channel& base = workspace.channel(channel);
    const bool floating = base.float_base == 1;
    const auto mean =
        static_cast<float>(window_mean(workspace, base.gaps.none, workspace.residual_row, stage, data));
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

void total_gradient(const Workspace& workspace, const Part& part, int stage, ChannelTable& data) {
    const auto horizontal = std::as_const(data).row(workspace.horizontal_row, stage);
    const auto vertical = std::as_const(data).row(workspace.gradient_row, stage);
    const auto total = data.row(workspace.total_gradient_row, stage);
    const auto first = static_cast<std::size_t>(part.first - 1);
    for (std::size_t i = first; i < first + static_cast<std::size_t>(part.count); ++i) {
        const auto h = static_cast<double>(horizontal[i]);
        const auto v = static_cast<double>(vertical[i]);
        total[i] = static_cast<float>(std::sqrt(h * h + v * v));
    }
}

void gradient_rows(Workspace& workspace, const Part& part, int stage, ChannelTable& data, Faults& faults,
                   Pacer& pacer) {
    if (workspace.processing.vg_filter_width <= 0) return;
    FilterPass pass{.filter_code = filter_vertical_gradient,
                    .half_width = workspace.processing.vg_filter_width,
                    .tap_step = workspace.processing.vg_filter_step,
                    .first_station = part.first,
                    .station_count = part.count,
                    .stage = stage,
                    .input_row = workspace.smoothed_row,
                    .output_row = workspace.gradient_row};
    apply_filter(pass, data, workspace.filter_scratch, faults, pacer);
    if (workspace.processing.display_total_gradient != 1) return;
    pass.filter_code = filter_horizontal_derivative;
    pass.half_width = 1;
    pass.output_row = workspace.horizontal_row;
    apply_filter(pass, data, workspace.filter_scratch, faults, pacer);
    total_gradient(workspace, part, stage, data);
    pacer.done(row_units * part.count);
}

/// The rows that the chain writes with these settings.
std::vector<std::int32_t> written_rows(const Workspace& workspace) {
    std::vector<std::int32_t> rows{workspace.smoothed_row, workspace.residual_row};
    if (workspace.processing.vg_filter_width <= 0) return rows;
    rows.push_back(workspace.gradient_row);
    if (workspace.processing.display_total_gradient == 1)
        rows.insert(rows.end(), {workspace.horizontal_row, workspace.total_gradient_row});
    return rows;
}

/// The readings of all stretches, one stretch after the other without what is missing, each a part of it.
class Packed {
  public:
    Packed(const Workspace& workspace, const ChannelGaps& gaps, const ChannelTable& data) {
        const auto observed = data.row(workspace.raw_row, stage_observed);
        for (const Stretch& stretch : gaps.stretches) {
            const auto first = static_cast<int>(stations_.size()) + 1;
            for (int i = stretch.first; i <= stretch.last; ++i)
                if (is_reading(static_cast<double>(observed[static_cast<std::size_t>(i - 1)])))
                    stations_.push_back(i);
            parts_.push_back({first, static_cast<int>(stations_.size()) + 1 - first});
        }
        table.assign(static_cast<int>(stations_.size()));
    }

    std::span<const Part> parts() const { return parts_; }
    void take(int row, int stage, const ChannelTable& data) {
        const auto from = data.row(row, stage);
        const auto to = table.row(row, stage);
        for (std::size_t k = 0; k < to.size(); ++k) to[k] = from[static_cast<std::size_t>(stations_[k] - 1)];
    }
    void give(int row, int stage, std::span<float> to) const {
        const auto from = table.row(row, stage);
        std::ranges::fill(to, empty_high);
        for (std::size_t k = 0; k < from.size(); ++k)
            to[static_cast<std::size_t>(stations_[k] - 1)] = from[k];
    }

    ChannelTable table;

  private:
    std::vector<int> stations_;
    std::vector<Part> parts_;
};

/// The chain up to the base level, and its gradients.
void filter_stretches(Workspace& workspace, const ChannelGaps& gaps, int stage, ChannelTable& data,
                      Faults& faults, Pacer& pacer) {
    Packed packed(workspace, gaps, data);
    packed.take(workspace.raw_row, stage, data);
    for (const Part& part : packed.parts()) {
        filter_rows(workspace, part, stage, packed.table, faults, pacer);
        gradient_rows(workspace, part, stage, packed.table, faults, pacer);
    }
    for (const std::int32_t row : written_rows(workspace))
        packed.give(row, stage,
                    data.row(row, stage).first(static_cast<std::size_t>(workspace.station_count)));
}

}  // namespace

void filter_data(Workspace& workspace, int channel, int stage, ChannelTable& data, Faults& faults,
                 Pacer& pacer) {
    Channel& own = workspace.channel(channel);
    bool& filtered = stage == stage_observed ? own.observed_filtered : own.calculated_filtered;
    if (workspace.station_count <= 0 || filtered) return;
    report_failure(faults, "An error occurred while filtering the data: ", [&] {
        if (workspace.station_count > data.stations()) throw Fault(FaultKind::subscript);
        const auto count = static_cast<std::size_t>(workspace.station_count);
        // What is missing is known since the observed rows were filtered.
        if (stage == stage_observed || !own.observed_filtered)
            own.gaps = gaps_of_row(workspace,
                                   std::as_const(data).row(workspace.raw_row, stage_observed).first(count));
        const bool whole = own.gaps.none;
        const Part line{1, workspace.station_count};
        if (whole) {
            filter_rows(workspace, line, stage, data, faults, pacer);
        } else {
            filter_stretches(workspace, own.gaps, stage, data, faults, pacer);
        }
        const float level = base_level(workspace, channel, stage, data);
        // What is missing stays so: no level is felt beside 1E32.
        for (float& value : data.row(workspace.residual_row, stage).first(count)) value -= level;
        pacer.done(row_units * workspace.station_count);
        if (whole) gradient_rows(workspace, line, stage, data, faults, pacer);
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
                make_zero(channel->data.row(row, stage));
}

}  // namespace anomalis::filter
