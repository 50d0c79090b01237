#include "show/graph_ranges.h"

#include <algorithm>
#include <cmath>

#include "core/failure.h"
#include "core/workspace.h"

namespace anomalis::show {

namespace {

struct CurveSource {
    const ChannelTable& data;
    int row;
    GraphicsArrays::Curves& curves;
};

/// Copies one row and widens the range by it; missing values are passed over.
void copy_row(const CurveSource& source, int stage, Array1<double>& curve, double& low, double& high) {
    const auto row = source.data.row(source.row, stage);
    const auto target = curve.span();
    for (std::size_t i = 0; i < target.size(); ++i) {
        const double value = target[i] = row[i];
        if (!std::isfinite(value) || value <= missing_limit) continue;
        low = std::min(low, value);
        high = std::max(high, value);
    }
}

void fill_chart(const Workspace& workspace, const CurveSource& source, double& low, double& high) {
    low = empty_low;
    high = empty_high;
    std::copy(workspace.distances.span().begin(), workspace.distances.span().end(),
              source.curves.distance.span().begin());
    copy_row(source, stage_observed, source.curves.observed, low, high);
    if (workspace.body_count > 0) {
        copy_row(source, stage_calculated, source.curves.calculated, low, high);
    } else {
        std::fill(source.curves.calculated.span().begin(), source.curves.calculated.span().end(),
                  no_model_value);
    }
    if (low > high) low = high = 0;
}

}  // namespace

void setup_graph_data_ranges(Workspace& workspace, GraphRanges& ranges, Prompts& prompts) {
    if (workspace.graph_ranges_ready) return;
    report_failure(prompts, "An error occurred while calculating the data ranges: ", [&] {
        GraphicsArrays& graphics = workspace.graphics;
        const auto ground = workspace.stations.column(column_ground);
        std::copy(workspace.distances.span().begin(), workspace.distances.span().end(),
                  graphics.topography_distance.span().begin());
        std::copy(ground.begin(), ground.end(), graphics.topography.span().begin());

        const int gradient = workspace.processing.display_total_gradient == 1 ? workspace.total_gradient_row
                                                                              : workspace.gradient_row;
        const std::array sources{CurveSource{workspace.mag.data, workspace.residual_row, graphics.mag},
                                 CurveSource{workspace.mag.data, gradient, graphics.mag_gradient},
                                 CurveSource{workspace.grav.data, workspace.residual_row, graphics.grav},
                                 CurveSource{workspace.grav.data, gradient, graphics.grav_gradient}};
        for (std::size_t i = 0; i < sources.size(); ++i)
            fill_chart(workspace, sources[i], ranges.low[i], ranges.high[i]);
        workspace.graph_ranges_ready = true;
    });
}

std::array<bool, edit::model_chart_count> charts_with_data(const Workspace& workspace) {
    const bool gradients = workspace.processing.vg_filter_width > 0;
    return {workspace.has_mag(), workspace.has_mag() && gradients, workspace.has_grav(),
            workspace.has_grav() && gradients, true};
}

}  // namespace anomalis::show
