#include "flow/fit_remark.h"

#include <gtest/gtest.h>

#include "core/body_parameters.h"

namespace anomalis::flow {

namespace {

FitRecord record() {
    FitRecord fit;
    fit.date = "2024-05-06T07:08:09";
    fit.outcome = "Inversion succeeded";
    fit.parameters = {{.body = 1, .param_code = param_width}, {.body = 2, .param_code = param_top}};
    return fit;
}

}  // namespace

TEST(FitRemark, a_fit_that_stopped_at_limits_names_them) {
    FitRecord fit = record();
    EXPECT_EQ(fit_label(fit), "Inversion succeeded");
    fit.outcome = "Stopped at the limit of 2 parameters";
    for (FittedParameter& parameter : fit.parameters) parameter.at_limit = true;
    EXPECT_EQ(fit_label(fit), "Stopped at the limit of 2 parameters: width of body 1, top of body 2");
}

TEST(FitRemark, remarks_are_sentences_after_what_the_data_leave_open) {
    FitRecord fit = record();
    EXPECT_EQ(fit_remark(fit), "");
    fit.remarks = {"residuals are correlated over 120 m: a body or the regional is missing", "One more."};
    fit.parameters[1].undetermined = true;
    EXPECT_EQ(
        fit_remark(fit),
        "The data leave open: top of body 2. residuals are correlated over 120 m: a body or the regional is "
        "missing. One more.");
}

TEST(FitRemark, a_model_that_has_changed_says_since_when) {
    EXPECT_EQ(changed_since(record()), "The model has changed since the fit of 2024-05-06 07:08:09");
}

}  // namespace anomalis::flow
