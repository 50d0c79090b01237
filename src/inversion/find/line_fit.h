#pragma once

#include <Eigen/Core>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "core/faults.h"
#include "core/pacer.h"
#include "core/workspace.h"
#include "inversion/find/source_bank.h"
#include "inversion/find/whitened_rows.h"
#include "inversion/fit_rows.h"
#include "inversion/least_squares.h"

// A line on which models of sheets are tried, each with its best regional and against the noise of the line.
namespace anomalis::inversion {

/// The noise of each channel of a fit, in its unit.
using LineNoise = std::vector<RowNoise>;

/// Limits that keep a found sheet one.
inline constexpr double least_found_dip = 20, most_found_dip = 160;
inline constexpr double most_found_width = 3;  ///< depths
inline constexpr double least_found_width = 0.05;
/// Degrees that a strike is off the one square to the line: usually, and at most.
inline constexpr double usual_obliqueness = 12, most_oblique = 30;

/// The strike square to the line, degrees: rounded, so that an east line gives 0.
double square_strike(const Workspace& workspace);

/// A model as it was fitted.
struct TriedModel {
    std::vector<ModelBody> bodies;  ///< without responses, body 1 first
    std::int32_t degree = no_regional;
    Eigen::VectorXd residual =
        {};  ///< observed less calculated less regional, the rows of all channels, no weights
    Eigen::VectorXd calculated = {};  ///< by the bodies alone, the same rows
    double squares = 0;               ///< of the residuals, whitened
    double cancelling = 1;  ///< anomalies of the bodies apart over those together: large where they cancel
    bool empty() const { return residual.size() == 0; }
};

class LineFit {
  public:
    /// `degree`: of the regionals, instead of the workspace's.
    LineFit(const Workspace& workspace, std::span<const std::int32_t> channels);

    const Workspace& workspace() const { return workspace_; }
    Workspace& workspace() { return workspace_; }
    std::span<const std::int32_t> channels() const { return channels_; }
    bool magnetic() const { return channels_.front() == channel_mag; }

    /// The degree of the regionals from now on.
    void set_degree(std::int32_t degree);
    /// Of the channels as they stand.
    std::int32_t degree() const;

    /// Fits the bodies that are marked in `free`; the others stay.
    TriedModel fit(std::vector<ModelBody> bodies, const std::vector<bool>& free, const LineNoise& noise,
                   int iterations, Pacer& pacer);
    /// The model as it stands.
    TriedModel as_it_is(std::vector<ModelBody> bodies, const LineNoise& noise, Pacer& pacer);

    /// Depth below the sensor at its place, m.
    double depth(const ModelBody& body) const;

    /// Rows of each channel of a model: distances, polynomials.
    struct ChannelRows {
        Eigen::VectorXd distance, observed;
        std::vector<std::int32_t> stations;
        std::vector<std::size_t> starts;  ///< where stretches of the line begin
        double spacing = 0;               ///< m beside its gaps; 0: it has none
        Eigen::MatrixXd basis;
        double noise = 0;  ///< of the readings; 0: not known
        RowPlaces place() const { return {stations, starts, spacing}; }
    };
    std::vector<ChannelRows> rows(Pacer& pacer);

    /// Parameters that are fitted of a body that was found.
    std::vector<int> free_parameters(const ModelBody& body) const;
    FitParameter limits(const ModelBody& body, int param_code) const;

  private:
    void take(const std::vector<ModelBody>& bodies);

    Workspace workspace_;
    std::vector<std::int32_t> channels_;
    Faults faults_;
};

}  // namespace anomalis::inversion
