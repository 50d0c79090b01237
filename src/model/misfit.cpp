#include "model/misfit.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <span>
#include <utility>

#include "core/failure.h"
#include "core/gaps.h"
#include "filter/filters.h"
#include "forward/driver.h"
#include "model/paced_rows.h"
#include "model/regional.h"
#include "model/stale.h"

namespace anomalis::model {

namespace {

/// Eight sums side by side, so that the loop fills vectors and gives the same bits everywhere.
double sum_of_squared_differences(std::span<const float> calculated, std::span<const float> observed) {
    constexpr std::size_t lanes = 8;
    std::array<double, lanes> sums{};
    std::size_t i = 0;
    for (; i + lanes <= calculated.size(); i += lanes) {
        for (std::size_t k = 0; k < lanes; ++k) {
            const double r = static_cast<double>(calculated[i + k]) - static_cast<double>(observed[i + k]);
            sums[k] += r * r;
        }
    }
    double sum = 0;
    for (; i < calculated.size(); ++i) {
        const double r = static_cast<double>(calculated[i]) - static_cast<double>(observed[i]);
        sum += r * r;
    }
    for (const double lane : sums) sum += lane;
    return sum;
}

std::size_t count_readings(std::span<const float> observed) {
    std::size_t count = 0;
    for (const float value : observed) count += value > static_cast<float>(missing_limit) ? 1 : 0;
    return count;
}

/// Of the stations with a reading, as if the line had no others.
double norm_of_readings(std::span<const float> calculated, std::span<const float> observed,
                        std::size_t readings) {
    if (readings < 2) throw Fault(FaultKind::division_by_zero);
    double sum = 0;
    for (std::size_t i = 0; i < observed.size(); ++i) {
        const auto value = static_cast<double>(observed[i]);
        if (!is_reading(value)) continue;
        const double r = static_cast<double>(calculated[i]) - value;
        sum += r * r;
    }
    return std::sqrt(sum) / static_cast<double>(readings - 1);
}

double residual_norm(int first, int last, int row, const ChannelTable& data) {
    if (last == first) throw Fault(FaultKind::division_by_zero);
    double sum = 0;
    if (first < last) {
        if (first < 1 || last > data.stations()) throw Fault(FaultKind::subscript);
        const auto from = static_cast<std::size_t>(first - 1);
        const auto count = static_cast<std::size_t>(last - first) + 1;
        const auto calculated = data.row(row, stage_calculated).subspan(from, count);
        const auto observed = data.row(row, stage_observed).subspan(from, count);
        const std::size_t readings = count_readings(observed);
        if (readings < count) return norm_of_readings(calculated, observed, readings);
        sum = sum_of_squared_differences(calculated, observed);
    }
    return std::sqrt(sum) / (static_cast<double>(last) - first);
}

}  // namespace

double calculate_residual_norm(int first, int last, int row, const ChannelTable& data, Faults& faults) {
    double norm = 0;
    report_failure(faults, "An error occurred while calculating the model residual norm: ", [&] {
        norm = residual_norm(first, last, row, data);
    });
    return norm;
}

MisfitPair misfit_scale_of(int channel) {
    const float scale = channel == channel_grav ? 10.0F : 1.0F;
    return {scale, scale * 10.0F};
}

void set_misfit_scale(InversionState& inversion) {
    inversion.misfit_scale = misfit_scale_of(inversion.inversion_channel);
}

MisfitPair channel_misfit(const Workspace& workspace, const ChannelTable& rows, const MisfitPair& scale,
                          Faults& faults) {
    const auto measure = [&](int row, float divisor) {
        const double norm =
            calculate_residual_norm(workspace.first_station, workspace.last_station, row, rows, faults);
        return static_cast<float>(norm / static_cast<double>(divisor));
    };
    return {measure(workspace.residual_row, scale[0]), measure(workspace.gradient_row_in_use(), scale[1])};
}

MisfitPair calculate_misfit(const Workspace& workspace, const InversionState& inversion, Faults& faults) {
    const bool gravity = inversion.inversion_channel == channel_grav;
    return channel_misfit(workspace, workspace.channel(gravity ? channel_grav : channel_mag).data,
                          inversion.misfit_scale, faults);
}

MisfitPair evaluate_model_misfit(Workspace& workspace, InversionState& inversion, ChannelTable& mag_rows,
                                 ChannelTable& grav_rows, Faults& faults, Pacer& pacer) {
    ++inversion.evaluations;
    find_stale(workspace);
    const auto fill_rows = [&](Pacer& filters) {
        forward::calculate_model(workspace, mag_rows, grav_rows, faults, pacer);
        if (workspace.has_mag())
            filter::filter_data(workspace, channel_mag, stage_calculated, mag_rows, faults, filters);
        if (workspace.has_grav())
            filter::filter_data(workspace, channel_grav, stage_calculated, grav_rows, faults, filters);
        lay_regionals(workspace, mag_rows, grav_rows);
    };
    // Rows of a trial are nobody's when it is left.
    const bool on_trial = &mag_rows != &workspace.mag.data && &grav_rows != &workspace.grav.data;
    on_trial ? fill_rows(pacer) : with_rows_kept(workspace, pacer, std::ref(fill_rows));
    const bool gravity = inversion.inversion_channel == channel_grav;
    return channel_misfit(workspace, gravity ? grav_rows : mag_rows, inversion.misfit_scale, faults);
}

}  // namespace anomalis::model
