#include "inversion/fit_weights.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "inversion/noise.h"
#include "inversion/variance_components.h"
#include "model/misfit.h"

namespace anomalis::inversion {

namespace {

std::size_t middle_of_longest_stretch(const RowChain& chain) {
    std::vector<std::size_t> starts = chain.starts();
    starts.push_back(chain.row_count());
    std::size_t longest = 0;
    for (std::size_t k = 1; k + 1 < starts.size(); ++k)
        if (starts[k + 1] - starts[k] > starts[longest + 1] - starts[longest]) longest = k;
    return (starts[longest] + starts[longest + 1] - 1) / 2;
}

/// What white noise of standard deviation 1 becomes: the length of what an impulse in the middle becomes.
double noise_gain(const Workspace& workspace, const RowChain& chain) {
    if (chain.plain()) return 1;
    RowChain own = chain;
    std::vector<double> raw(chain.raw_count()), rows(chain.row_count());
    // Where the raw values are all the same the gradient has no direction: a slope gives it one.
    for (std::size_t i = 0; i < raw.size(); ++i) raw[i] = static_cast<double>(i);
    own.values(raw, rows);
    std::ranges::fill(raw, 0.0);
    const int middle = (workspace.first_station + workspace.last_station) / 2;
    raw[chain.whole() ? static_cast<std::size_t>(middle - chain.first_station())
                      : chain.raw_place(middle_of_longest_stretch(chain))] = 1;
    own.change(raw, rows);
    double sum = 0;
    for (const double value : rows) sum += value * value;
    return std::sqrt(sum);
}

}  // namespace

void weigh_by_noise(const Workspace& workspace, std::int32_t target, FitRows& rows) {
    for (FittedRows& channel : rows.channels()) {
        const auto keyed = static_cast<double>(workspace.channel(channel.channel).noise);
        channel.sigma_given = keyed > 0;
        const double noise = channel.sigma_given
                                 ? keyed
                                 : noise_of_readings(workspace, channel.channel, workspace.first_station,
                                                     workspace.last_station);
        channel.noise = noise * noise_gain(workspace, channel.chain);
        channel.sigma = channel.noise > 0 ? channel.noise
                                          : static_cast<double>(model::misfit_scale_of(
                                                channel.channel)[static_cast<std::size_t>(target)]);
    }
}

bool weigh_by_residuals(FitRows& rows, std::span<const float> values) {
    if (rows.channels().size() < 2) return false;
    Eigen::VectorXd residuals(static_cast<Eigen::Index>(rows.row_count()));
    Eigen::MatrixXd columns(residuals.size(), static_cast<Eigen::Index>(rows.parameter_count()));
    rows.residuals(values, residuals);
    rows.columns(values, columns);
    const std::vector<ChannelFit> fits = rows.channel_fits(columns, residuals);
    const std::vector<double> sigmas = component_sigmas(fits);
    if (sigmas_stand(fits, sigmas)) return false;
    for (std::size_t c = 0; c < sigmas.size(); ++c)
        if (!rows.channels()[c].sigma_given && sigmas[c] > 0) rows.channels()[c].sigma = sigmas[c];
    return true;
}

}  // namespace anomalis::inversion
