#pragma once

#include <cmath>
#include <gtest/gtest.h>

#include "core/body_parameters.h"
#include "core/model_mark.h"
#include "core/workspace.h"

namespace anomalis {

/// A record with a value of its own in every field, of the workspace as it stands: one body at least.
inline FitRecord sample_fit(const Workspace& workspace) {
    constexpr double open = FittedParameter::open;
    FitRecord fit;
    fit.date = "2026-11-22T06:30:15";
    fit.formulas = workspace.formulas;
    fit.channel = channel_joint;
    fit.target = 1;
    fit.first_distance = 1.0 / 3;
    fit.last_distance = 4321.1;
    fit.outcome = "Inversion succeeded";
    fit.parameters = {{1, param_top, 144.29876F, 3.4028, 139.0000000001, 150.1, false, false},
                      {1, param_width, 0.1F, open, open, 140.25, false, false},
                      {1, param_dip, 90, open, open, open, true, true}};
    fit.correlation = {1, -0.1234567890123456, open, -0.1234567890123456, 1, open, open, open, open};
    fit.mag =
        FittedChannel{412, 13.09, 5, true, 6.84, 120.5, 40.25, {2, 2100.5, 2100.5, {1.5, -1e-17, 3.25}}};
    fit.grav = FittedChannel{411, 0.0123, 0.02, false, 0.9, 0, 400, {}};
    fit.remarks = {", a remark that begins with a comma", "residuals are correlated over 120 m; look again"};
    fit.model_mark = model_mark(workspace);
    return fit;
}

inline void expect_same(double a, double b, const char* what) {
    if (!std::isnan(a) || !std::isnan(b)) {
        EXPECT_EQ(a, b) << what;
    }
}

inline void expect_same(const std::optional<FittedChannel>& a, const std::optional<FittedChannel>& b) {
    ASSERT_EQ(a.has_value(), b.has_value());
    if (!a) return;
    EXPECT_EQ(a->stations, b->stations);
    EXPECT_EQ(a->rms, b->rms);
    EXPECT_EQ(a->noise, b->noise);
    EXPECT_EQ(a->noise_given, b->noise_given);
    EXPECT_EQ(a->chi_square, b->chi_square);
    EXPECT_EQ(a->correlation, b->correlation);
    EXPECT_EQ(a->independent, b->independent);
    EXPECT_EQ(a->regional, b->regional);
}

/// Two records agree in every bit.
inline void expect_same(const FitRecord& a, const FitRecord& b) {
    EXPECT_EQ(a.date, b.date);
    EXPECT_EQ(a.formulas, b.formulas);
    EXPECT_EQ(a.method, b.method);
    EXPECT_EQ(a.channel, b.channel);
    EXPECT_EQ(a.target, b.target);
    EXPECT_EQ(a.first_distance, b.first_distance);
    EXPECT_EQ(a.last_distance, b.last_distance);
    EXPECT_EQ(a.outcome, b.outcome);
    ASSERT_EQ(a.parameters.size(), b.parameters.size());
    for (std::size_t i = 0; i < a.parameters.size(); ++i) {
        const FittedParameter& p = a.parameters[i];
        const FittedParameter& q = b.parameters[i];
        EXPECT_EQ(p.body, q.body);
        EXPECT_EQ(p.param_code, q.param_code);
        EXPECT_EQ(p.value, q.value);
        expect_same(p.error, q.error, "error");
        expect_same(p.lower, q.lower, "lower");
        expect_same(p.upper, q.upper, "upper");
        EXPECT_EQ(p.undetermined, q.undetermined);
        EXPECT_EQ(p.at_limit, q.at_limit);
    }
    ASSERT_EQ(a.correlation.size(), b.correlation.size());
    for (std::size_t i = 0; i < a.correlation.size(); ++i)
        expect_same(a.correlation[i], b.correlation[i], "correlation");
    expect_same(a.mag, b.mag);
    expect_same(a.grav, b.grav);
    EXPECT_EQ(a.remarks, b.remarks);
    EXPECT_EQ(a.model_mark, b.model_mark);
}

}  // namespace anomalis
