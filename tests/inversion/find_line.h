#pragma once

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

#include "inversion/find/find_bodies.h"
#include "line_session.h"
#include "noisy_line.h"

// Lines whose bodies are known, for the search that must find them.
namespace anomalis::inversion {

inline constexpr int stations = 61;
inline constexpr double spacing = 20;
inline constexpr double sigma = 1;  // nT

class CountingObserver : public FindObserver {
  public:
    explicit CountingObserver(int turns = 1 << 30) : turns_left_(turns) {}
    bool working(double) override { return --turns_left_ < 0; }
    double turn_units() const override { return 1e5; }
    void grew(const FoundModel& model) override { sizes.push_back(model.found); }

    std::vector<int> sizes;

  private:
    int turns_left_;
};

/// A line of 1.2 km over sheets that are known, with noise from a seed.
class FindLine : public LineSession {
  public:
    explicit FindLine(int count = stations, StationColumn along = column_east)
        : LineSession(count, spacing, along) {
        Workspace& w = workspace();
        w.formulas = Formulas::exact;
        w.definition.grav_column = 0;
        w.mag.regional_degree = 1;
    }

    ModelBody& add_dyke(double distance, double depth_below_sensor, float width, float dip,
                        float susceptibility) {
        ModelBody& body = add_body(thick_sheet, static_cast<float>(distance));
        body.top.value = static_cast<float>(10 - depth_below_sensor);
        body.width.value = width;
        body.dip.value = dip;
        body.susc.value = susceptibility;
        body.density.value = 0.3F;
        body.depth_extent.value = body.length.value = 0;
        body.strike.value = across();
        return body;
    }

    /// The bodies become data and go.
    void bury(unsigned seed = 1) {
        take_model_as_data();
        Workspace& w = workspace();
        const Eigen::VectorXd noise = white_noise(w.station_count, sigma, seed);
        for (int i = 1; i <= w.station_count; ++i) {
            w.mag.data(i, row_raw, stage_observed) += static_cast<float>(noise[i - 1]);
            w.grav.data(i, row_raw, stage_observed) += static_cast<float>(0.01 * noise[i - 1]);
        }
        w.body_count = 0;
        renew();
    }
    void renew() {
        invalidate_filtered_data(0, workspace());
        refresh();
    }
    float across() {
        return static_cast<float>(static_cast<double>(workspace().azimuth) * 180 / 3.14159265358979 + 90);
    }

    FindResult find(const FindRequest& request) {
        CountingObserver observer;
        return find_bodies(workspace(), request, observer);
    }
};

inline FindRequest at_most(int bodies) {
    FindRequest request;
    request.most = bodies;
    request.alternatives = 1;
    return request;
}

inline bool says(const std::vector<std::string>& sentences, std::string_view part) {
    return std::ranges::any_of(sentences, [&](const std::string& s) { return s.find(part) != s.npos; });
}

inline bool tells(const Faults& faults, std::string_view part) {
    return std::ranges::any_of(faults.entries(),
                               [&](const Faults::Entry& e) { return e.text.find(part) != e.text.npos; });
}

inline void expect_sheet(const ModelBody& body, double distance, double depth) {
    EXPECT_NEAR(static_cast<double>(body.distance.value), distance, 0.35 * depth);
    EXPECT_NEAR(10 - static_cast<double>(body.top.value), depth, 0.2 * depth);
    EXPECT_GE(body.dip.value, 20);
    EXPECT_LE(body.dip.value, 160);
    EXPECT_GT(body.susc.value, 0);
}

}  // namespace anomalis::inversion
