#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/preferences.h"

namespace anomalis {
struct Ensemble;
struct Workspace;
}  // namespace anomalis
namespace anomalis::chart {
class AX_Grapher;
}  // namespace anomalis::chart

// One body in all models of an ensemble: how its depth, dip, width and susceptibility (without a
// susceptibility, density) hang together.
namespace anomalis::show {

/// A parameter over the models that have the body.
struct CrossAxis {
    int param_code = 0;
    std::string
        name;  ///< as the grid calls it: "Width"; a top counts from a ground that is known: "Depth to top"
    std::string unit;
    double fitted = 0;           ///< of the model that the ensemble is about
    std::vector<double> values;  ///< by model, the same models of all axes
};

/// What a body gives far above its top: width (of a pipe or wire its square, of a sphere its cube) times
/// susceptibility or density. Data that leave both open determine it.
struct CrossProduct {
    std::size_t width = 0, strength = 0;  ///< the axes
    int power = 1;                        ///< of the width
    double fitted = 0;                    ///< in the units of the axes
    bool determined = false;  ///< its band is narrower than half of the narrower of both, in parts
    std::string words;        ///< "Width x susceptibility of body 1: 4.9 to 5.1 m SI (90 %)"
};

struct CrossPlots {
    std::vector<CrossAxis> axes;  ///< at most four
    std::optional<CrossProduct> product;
};

/// The parameters of a body that were free, susceptibilities in `unit`; fewer than two make no plot.
CrossPlots cross_plots(const Workspace& workspace, const Ensemble& ensemble, int body,
                       SusceptibilityUnit unit = SusceptibilityUnit::micro_si);

/// The pairs of axes that are plotted: each against each later one, at most six.
std::vector<std::pair<std::size_t, std::size_t>> cross_pairs(const CrossPlots& plots);

/// The bodies that have plots, in their order.
std::vector<int> plotted_bodies(const Workspace& workspace, const Ensemble& ensemble);

/// Fonts and axes; once, before the first drawing.
void set_up_cross_plot(chart::AX_Grapher& chart);

/// A dot a model, a square for the fitted one. In the plot of width and strength the curve along which the
/// product stays what it is.
void draw_cross_plot(chart::AX_Grapher& chart, const CrossPlots& plots, std::size_t x, std::size_t y);

}  // namespace anomalis::show
