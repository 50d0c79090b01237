#include "inversion/fit_remarks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace anomalis::inversion {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Fit {
    FitErrors errors;
    std::vector<ChannelFit> channels{ChannelFit{}};
    std::vector<std::string> names{"top of body 1", "width of body 1"};

    Fit() {
        errors.errors = {1, 1};
        errors.correlation = {1, 0.5, 0.5, 1};
        errors.channels.resize(1);
        errors.channels[0].chi_square = 1.1;
        errors.channels[0].covariance.independent = 100;
    }
    std::vector<std::string> remarks() const { return fit_remarks(errors, channels, names); }
};

}  // namespace

TEST(FitRemarks, a_good_fit_needs_none) {
    EXPECT_THAT(Fit().remarks(), IsEmpty());
}

TEST(FitRemarks, residuals_that_are_correlated_are_no_noise) {
    Fit fit;
    fit.errors.channels[0].covariance.correlated = 5;
    fit.errors.channels[0].covariance.rate = 1 / 123.0;
    EXPECT_THAT(fit.remarks(),
                ElementsAre("Residuals are correlated over 120 m: a body or the regional is missing."));
    fit.channels.resize(2);
    fit.channels[1].channel = channel_grav;
    fit.errors.channels.resize(2);
    fit.errors.channels[1] = fit.errors.channels[0];
    fit.errors.channels[0].covariance.correlated = 0;
    EXPECT_THAT(fit.remarks(), ElementsAre("Residuals of gravity are correlated over 120 m: a body or the "
                                           "regional is missing."));
}

TEST(FitRemarks, a_misfit_far_from_the_keyed_noise_is_told_both_ways) {
    Fit fit;
    fit.errors.channels[0].chi_square = 64;
    EXPECT_THAT(fit.remarks(), IsEmpty());
    fit.channels[0].sigma = fit.channels[0].noise = 0.5;
    fit.channels[0].sigma_given = true;
    EXPECT_THAT(fit.remarks(),
                ElementsAre("The misfit of magnetics is 8 times the noise of 0.5 nT: a body or "
                            "the regional is missing, or the noise is larger."));
    fit.channels[0].channel = channel_grav;
    fit.errors.channels[0].chi_square = 0.01;
    EXPECT_THAT(fit.remarks(),
                ElementsAre("The misfit of gravity is 0.1 times the noise of 0.5 mGal: the noise "
                            "is smaller, or too much is free."));
    fit.errors.channels[0].chi_square = 1.5;
    EXPECT_THAT(fit.remarks(), IsEmpty());
}

TEST(FitRemarks, too_few_data_are_counted) {
    Fit fit;
    fit.errors.too_few_data = true;
    fit.errors.channels[0].covariance.independent = 6.2;
    EXPECT_THAT(
        fit.remarks(),
        ElementsAre("The stations amount to 6 independent data, too few for what is free: the errors are "
                    "open. Hold parameters, or fit a longer line."));
}

TEST(FitRemarks, pairs_that_are_hardly_told_apart_are_named) {
    Fit fit;
    fit.errors.correlation = {1, -0.981, -0.981, 1};
    EXPECT_THAT(fit.remarks(),
                ElementsAre("The data hardly tell top of body 1 from width of body 1: correlation -0.981."));
}

TEST(FitRemarks, of_many_pairs_the_strongest_are_named_and_the_others_counted) {
    Fit fit;
    constexpr std::size_t size = 4;
    fit.names = {"a", "b", "c", "d"};
    fit.errors.errors.assign(size, 1);
    fit.errors.correlation.assign(size * size, 0.96);
    fit.errors.correlation[1 * size + 2] = -0.999;
    const auto remarks = fit.remarks();
    ASSERT_EQ(remarks.size(), 6U);
    EXPECT_EQ(remarks[0], "The data hardly tell b from c: correlation -0.999.");
    EXPECT_EQ(remarks[5], "1 more pairs of parameters are correlated above 0.95.");
}

}  // namespace anomalis::inversion
