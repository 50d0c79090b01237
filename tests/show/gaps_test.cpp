// Charts of a line with gaps: the pen is lifted over them, and over nothing else.

#include "core/gaps.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>

#include "show/broken_line.h"
#include "show/chart_sample.h"
#include "show/ensemble_shapes.h"
#include "show/fit_quality.h"
#include "show/fit_view.h"
#include "support/ensemble_sample.h"
#include "support/fit_records.h"

namespace anomalis::show {
namespace {

using Kind = chart::RecordingDevice::Kind;
constexpr float none = -1e32F;
constexpr chart::Colour green = 65280, brown = 0x1E4F7A;

struct Gapped : ChartSample {
    Gapped() { add_body(1260, 60); }
    void lose(int from, int to) {
        for (int i = from; i <= to; ++i) workspace().mag.data(i, row_raw, stage_observed) = none;
        draw();
    }
    void draw() {
        invalidate_filtered_data(0, workspace());
        forget();
        view->display_model();
    }
    auto lines(int index, chart::Colour colour) {
        std::vector<chart::RecordingDevice::Entry> found;
        for (const auto& entry : device(index).entries)
            if (entry.kind == Kind::polyline && entry.pen.colour == colour && entry.points.size() > 2)
                found.push_back(entry);
        return found;
    }
    /// Where the lines of a colour begin and end, m along the line.
    std::vector<std::pair<double, double>> reaches(int index, chart::Colour colour) {
        std::vector<std::pair<double, double>> all;
        for (const auto& line : lines(index, colour))
            all.emplace_back(std::round(chart(index).SurfaceToUser(line.points.front()).x),
                             std::round(chart(index).SurfaceToUser(line.points.back()).x));
        return all;
    }
    double at(int station) { return std::round(workspace().distances[station]); }
};

using Reaches = std::vector<std::pair<double, double>>;

TEST(GapsOfCharts, without_gaps_each_curve_is_one_line) {
    Gapped sample;
    sample.draw();
    const double end = sample.at(sample.workspace().station_count);
    EXPECT_EQ(sample.reaches(edit::chart_mag, green), (Reaches{{0, end}}));
    EXPECT_EQ(sample.reaches(edit::chart_section, brown), (Reaches{{0, end}}));
}

TEST(GapsOfCharts, both_curves_end_before_a_gap_and_begin_behind_it) {
    Gapped sample;
    sample.lose(11, 15);
    const double end = sample.at(sample.workspace().station_count);
    const Reaches two{{0, sample.at(10)}, {sample.at(16), end}};
    EXPECT_EQ(sample.reaches(edit::chart_mag, green), two);
    EXPECT_EQ(sample.reaches(edit::chart_mag_gradient, green), two);
    EXPECT_EQ(sample.reaches(edit::chart_grav, green), (Reaches{{0, end}})) << "gravity was read there";
    EXPECT_EQ(sample.reaches(edit::chart_section, brown), (Reaches{{0, end}}));
    const GraphRanges ranges = graph_ranges(sample.workspace());
    for (const double low : ranges.low) EXPECT_GT(low, -1e6);
}

TEST(GapsOfCharts, over_a_reading_or_two_that_are_missing_curves_go_on) {
    Gapped sample;
    sample.lose(11, 12);
    EXPECT_EQ(sample.reaches(edit::chart_mag, green),
              (Reaches{{0, sample.at(sample.workspace().station_count)}}));
}

TEST(GapsOfCharts, a_distance_that_is_a_gap_breaks_all_curves_and_the_ground) {
    Gapped sample;
    Workspace& w = sample.workspace();
    const double spacing = w.distances[2];
    w.gap_distance = static_cast<float>(3 * spacing);
    for (int i = 21; i <= w.station_count; ++i) w.distances[i] += 4 * spacing;
    sample.draw();
    for (const int index : {static_cast<int>(edit::chart_mag), static_cast<int>(edit::chart_grav)})
        EXPECT_EQ(sample.reaches(index, green).size(), 2U);
    ASSERT_EQ(sample.reaches(edit::chart_section, brown).size(), 2U);
    EXPECT_EQ(sample.reaches(edit::chart_section, brown).front().second, sample.at(20));
    EXPECT_EQ(sample.reaches(edit::chart_section, brown).back().first, sample.at(21));
}

TEST(GapsOfCharts, a_reading_alone_between_two_gaps_stays_to_be_seen) {
    Gapped sample;
    sample.lose(11, 15);
    const auto marks = [&] {
        return std::ranges::count_if(sample.device(edit::chart_mag).entries, [](const auto& entry) {
            return entry.kind == Kind::polygon_fill && entry.pen.colour == green;
        });
    };
    EXPECT_EQ(marks(), 0);
    sample.lose(17, 22);
    EXPECT_EQ(sample.reaches(edit::chart_mag, green).size(), 2U);
    EXPECT_EQ(marks(), 1);
}

TEST(GapsOfCharts, the_pointer_says_where_no_reading_is) {
    Gapped sample;
    sample.lose(11, 15);
    sample.move(edit::chart_mag, {sample.at(13), 0});
    EXPECT_EQ(sample.pointer.chart, "Residual Mag Data (no reading)");
    sample.move(edit::chart_mag, {sample.at(9), 0});
    EXPECT_EQ(sample.pointer.chart, "Residual Mag Data");
    sample.move(edit::chart_grav, {sample.at(13), 13});
    EXPECT_EQ(sample.pointer.chart, "Residual Grav Data");
}

TEST(GapsOfCharts, the_fan_of_an_ensemble_is_open_there) {
    Gapped sample;
    Workspace& w = sample.workspace();
    sample.lose(31, 35);
    Ensemble ensemble = ensemble_about(w);
    for (EnsembleFan& fan : ensemble.fans)
        for (int i = 31; i <= 35; ++i) {
            const auto at = static_cast<std::size_t>(i - fan.first_station);
            if (at < fan.lower.size()) fan.lower[at] = fan.upper[at] = none;
        }
    const FanBands drawn = fan_bands(w, ensemble, edit::chart_mag);
    ASSERT_EQ(drawn.bands.size(), 1U);
    const chart::ChartBand& band = drawn.bands.front();
    long breaks = 0;
    for (std::size_t i = 0; i < band.x.size(); ++i) {
        if (band.low[i] <= missing_limit) ++breaks;
        EXPECT_FALSE(band.low[i] > missing_limit && band.x[i] > w.distances[30] &&
                     band.x[i] < w.distances[36]);
    }
    EXPECT_EQ(breaks, 1);
}

TEST(GapsOfCharts, residuals_and_the_quality_of_a_fit_are_those_of_readings) {
    Gapped sample;
    Workspace& w = sample.workspace();
    sample.lose(11, 15);
    const auto quality = fit_quality(w, channel_mag);
    ASSERT_TRUE(quality);
    EXPECT_EQ(quality->stations, w.station_count - 5);
    EXPECT_LT(quality->rms, 1e5);
    FitRecord fit;
    fit.mag.emplace().noise = 1;
    const ResidualCurve curve = residual_curve(fit, w, channel_mag);
    ASSERT_EQ(curve.distance.size(), static_cast<std::size_t>(w.station_count - 5 + 1));
    EXPECT_LT(curve.residual[10], missing_limit) << "the pen is lifted";
    EXPECT_EQ(curve.distance[11], w.distances[16]);
    EXPECT_EQ(std::ranges::count_if(curve.residual, [](double r) { return r < missing_limit; }), 1);
    for (int i = 1; i <= w.station_count; ++i) w.mag.data(i, row_raw, stage_observed) = none;
    EXPECT_FALSE(fit_quality((sample.draw(), w), channel_mag));
    EXPECT_TRUE(residual_curve(fit, w, channel_mag).distance.empty());
}

}  // namespace
}  // namespace anomalis::show
