#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/preferences.h"

namespace anomalis {
struct FitRecord;
struct Workspace;
}  // namespace anomalis

// What the last fit has to say, as texts and curves for a page that shows it.
namespace anomalis::show {

struct FitFact {
    std::string caption, text;
};

struct FitChannelRow {
    std::string channel, stations, rms, noise, chi_square, correlation, regional;
};

struct FitParameterRow {
    std::string name;  ///< "Top of body 2"
    std::string value, interval, unit;
};

/// Correlation coefficients between the parameters of a fit.
struct CorrelationTable {
    std::vector<std::string> names;   ///< "top 2": parameter and body
    std::vector<double> coefficient;  ///< row by row; not a number where there is none

    std::size_t size() const { return names.size(); }
    double at(std::size_t row, std::size_t column) const { return coefficient[row * size() + column]; }
};

struct FitView {
    std::vector<FitFact> facts;
    std::vector<FitChannelRow> channels;
    std::vector<FitParameterRow> parameters;
    CorrelationTable correlation;
    /// The pairs that are coupled most, strongest first: "top and width of body 1: -0.98".
    std::vector<std::string> strongest;
    std::vector<std::string> remarks;
};

/// `workspace` gives the bodies their types; the record need not be its own. Susceptibilities in `unit`.
FitView fit_view(const FitRecord& fit, const Workspace& workspace,
                 SusceptibilityUnit unit = SusceptibilityUnit::micro_si);

/// Observed less regional less calculated over the stations of the fit, of the row that was fitted. Empty
/// without a line, or for a channel that the fit did not use.
struct ResidualCurve {
    std::vector<double> distance;  ///< m along the profile
    /// nT or mGal (a gradient row: the same a station); missing (-1E32) where a gap lifts the pen.
    std::vector<double> residual;
    double noise = 0;  ///< standard deviation that it was weighed by
};
ResidualCurve residual_curve(const FitRecord& fit, const Workspace& workspace, std::int32_t channel);

/// "nT" or "mGal"; of a gradient over the distance of the taps (filter/gradient_unit.h).
std::string residual_unit(const FitRecord& fit, const Workspace& workspace, std::int32_t channel);

}  // namespace anomalis::show
