#pragma once

#include <Eigen/Core>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "core/pacer.h"
#include "core/workspace.h"

// Sheets that might be there: every place, depth and width on the sensor heights of the line, ready to be
// held against what a model leaves of the data.
namespace anomalis::inversion {

/// A sheet that explains something.
struct Source {
    double distance = 0, depth = 0, width = 0;  ///< m; the depth below the sensor
    double dip = 90;                            ///< degrees
    int sign = 1;                               ///< of a density contrast
    double gain = 0;  ///< by how much it lessens the sum of squares, with a straight regional about it
};

/// Where the rows of a channel stand.
struct RowPlaces {
    std::span<const std::int32_t> stations;
    std::span<const std::size_t> starts;  ///< rows at which stretches of the line begin (core/gaps.h)
    double spacing = 0;                   ///< m beside its gaps; 0: it has none
};

class SourceBank {
  public:
    /// Calculates all of them at the stations of the rows: at every station for shallow sheets, at fewer
    /// for deep ones, as far from a sheet as its anomaly reaches. So the whole grows with the stations. Where
    /// the line has a gap no sheet is looked for farther from its ends than it is deep.
    SourceBank(const Workspace& workspace, std::int32_t channel, const RowPlaces& rows, bool thick,
               Pacer& pacer);

    /// No sheet gives an anomaly here.
    bool empty() const { return candidates_.empty(); }
    /// The sheets that explain most of such residuals (of the whole window, in standard deviations), best
    /// first and none like another, at most `count`.
    std::vector<Source> best(const Eigen::VectorXd& residual, std::size_t count, Pacer& pacer) const;

  private:
    /// The sheets of one depth, and the stations that they are looked at.
    struct Level {
        double depth = 0;
        Eigen::Index step = 1;  ///< stations that are taken together
        std::vector<Eigen::Index> first = {},
                                  second = {};  ///< of each group of stations, and behind its last
        std::vector<double> distance = {};      ///< of the groups
    };
    /// Two dips span all of them: a sheet turns from one into the other by its phase (Nabighian 1972).
    struct Candidate {
        std::size_t level;
        double distance, width;
        Eigen::Index from = 0;     ///< group
        Eigen::MatrixXf basis;     ///< groups by 2, the straight line taken off, orthonormal
        Eigen::Matrix2d triangle;  ///< from coefficients of the two dips to those of the basis
    };

    void add_level(const Workspace& workspace, std::int32_t channel, const RowPlaces& rows, double depth,
                   bool thick, Pacer& pacer);

    bool magnetic_ = true;
    std::vector<Level> levels_;
    std::vector<Candidate> candidates_;
};

}  // namespace anomalis::inversion
