#include "inversion/restarts.h"

#include <gtest/gtest.h>
#include <vector>

#include "inversion/line_session.h"
#include "inversion/rows_problem.h"

namespace anomalis::inversion {

namespace {

/// Two dykes that were fitted at each other's place: an optimum that is not the best one.
class RestartsOf : public ::testing::Test {
  protected:
    RestartsOf() {
        line.workspace().formulas = Formulas::exact;
        for (const float place : {500.0F, 900.0F}) line.add_body(thick_sheet, place).length.value = 0;
        line.workspace().body(2).susc.value = 20000;
        line.take_model_as_data();
        line.refresh();
        const std::vector<float> start{640, -120, 1180, -300};
        for (std::size_t i = 0; i < places.size(); ++i)
            parameters.push_back(
                fit_parameter(line.workspace(), line.workspace().body(places[i].body), places[i].param_code,
                              {.value = start[i],
                               .lower = -no_limit,
                               .upper = places[i].param_code == param_top ? -11 : no_limit}));
    }
    Restarts search(int count) {
        FitRows rows(line.workspace(), {{channel_mag}, target_data, places}, faults, no_pace());
        std::vector<float> values;
        for (const FitParameter& p : parameters) values.push_back(p.value);
        Eigen::VectorXd out(static_cast<Eigen::Index>(rows.row_count()));
        rows.residuals(values, out);
        return fit_from_starts(line.workspace(), rows,
                               {count, 25, parameters, values, out.squaredNorm(), stop}, no_pace());
    }

    LineSession line{161, 10};
    Faults faults;
    std::vector<InversionParamPlace> places{
        {1, param_distance}, {1, param_top}, {2, param_distance}, {2, param_top}};
    std::vector<FitParameter> parameters;
    bool stop = false;
};

}  // namespace

TEST_F(RestartsOf, a_start_is_the_same_each_time_and_for_any_number_of_starts) {
    const Restarts some = search(3), again = search(3), more = search(6);
    ASSERT_EQ(some.ends.size(), 3U);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(some.ends[i].values, again.ends[i].values);
        EXPECT_EQ(some.ends[i].values, more.ends[i].values);
    }
}

TEST_F(RestartsOf, the_best_of_them_is_the_model_that_the_data_were_made_from) {
    const Restarts found = search(6);
    double least = 1e30;
    std::vector<float> best;
    for (const FitOutcome& end : found.ends)
        if (end.sum_of_squares < least) least = end.sum_of_squares, best = end.values;
    ASSERT_EQ(best.size(), 4U);
    EXPECT_NEAR(best[0], 500, 0.5);
    EXPECT_NEAR(best[2], 900, 0.5);
    EXPECT_GT(found.evaluations, 0);
}

TEST_F(RestartsOf, none_are_made_where_none_are_wanted) {
    EXPECT_TRUE(search(0).ends.empty());
}

}  // namespace anomalis::inversion
