#include "inversion/dense_steps.h"

#include <Eigen/Dense>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "core/threads.h"
#include "inversion/eigen_spans.h"
#include "inversion/orthonormal_basis.h"

namespace anomalis::inversion {

namespace {

using Eigen::Index;
using Eigen::MatrixXd;

/// Counts the words it is told, and leaves at one of them.
class LeavingPacer : public Pacer {
  public:
    explicit LeavingPacer(int leave_at = 0) : leave_at_(leave_at) {}
    void done(double) override { word(); }
    void waiting() override { word(); }
    int words = 0;

  private:
    void word() {
        if (++words == leave_at_) throw Stopped{};
    }
    int leave_at_;
};

MatrixXd numbers(Index rows, Index columns) {
    return MatrixXd::NullaryExpr(rows, columns, [](Index i, Index j) {
        return std::sin(static_cast<double>(37 * i + 101 * j)) + (i == j ? 3 : 0);
    });
}

MatrixXd positive(Index count) {
    const MatrixXd some = numbers(count, count);
    return some.transpose() * some + MatrixXd::Identity(count, count);
}

TEST(AllFinite, one_value_that_is_not_is_found_wherever_it_stands) {
    constexpr double infinite = std::numeric_limits<double>::infinity();
    Eigen::VectorXd values = Eigen::VectorXd::Constant(13, std::numeric_limits<double>::max());
    EXPECT_TRUE(all_finite(values));
    EXPECT_TRUE(all_finite(Eigen::VectorXd()));
    for (Eigen::Index i = 0; i < values.size(); ++i) {
        for (const double bad : {infinite, -infinite, std::numeric_limits<double>::quiet_NaN()}) {
            Eigen::VectorXd one = values;
            one[i] = bad;
            EXPECT_FALSE(all_finite(one)) << i;
        }
    }
}

}  // namespace

TEST(DenseSteps, an_inverse_is_one_for_any_size) {
    for (const Index count : {0, 1, 2, 31, 32, 33, 70}) {
        const MatrixXd matrix = positive(count);
        const MatrixXd inverse = inverse_by(Eigen::LLT<MatrixXd>(matrix), no_pace());
        ASSERT_EQ(inverse.rows(), count);
        EXPECT_LT((inverse * matrix - MatrixXd::Identity(count, count)).norm(), 1e-9) << count;
        EXPECT_EQ(inverse, inverse.transpose().eval());
    }
}

TEST(DenseSteps, a_product_in_blocks_is_the_product) {
    for (const Index columns : {0, 1, 32, 65}) {
        const MatrixXd left = numbers(40, 20), right = numbers(20, columns);
        const MatrixXd due = left * right;
        EXPECT_LE((product_of(left, right, no_pace()) - due).norm(), 1e-12 * due.norm()) << columns;
    }
}

TEST(DenseSteps, blocks_are_left_between_two) {
    LeavingPacer pacer(2);
    int begun = 0;
    EXPECT_THROW(for_column_blocks(1000, 1, pacer, [&](Index, Index) { ++begun; }), Stopped);
    EXPECT_EQ(begun, 2);
    EXPECT_EQ(pacer.words, 2);
}

TEST(DenseSteps, the_axes_of_few_and_of_many_columns_are_those_of_the_matrix) {
    for (const Index count : {3, 151}) {
        MatrixXd matrix = MatrixXd::Identity(count, count);
        matrix(1, 0) = 0.5;
        const SymmetricAxes axes = axes_of(matrix, no_pace());
        EXPECT_NEAR(axes.eigenvalues()[0], 0.5, 1e-12);
        EXPECT_NEAR(axes.eigenvalues()[count - 1], 1.5, 1e-12);
    }
}

TEST(DenseSteps, axes_of_many_columns_are_not_waited_for_after_a_stop) {
    LeavingPacer pacer(1);
    EXPECT_THROW(axes_of(MatrixXd::Identity(151, 151), pacer), Stopped);
    EXPECT_EQ(pacer.words, 1);
}

TEST(OrthonormalBasis, of_a_tall_matrix_spans_its_columns_and_counts_those_that_depend_on_others_once) {
    constexpr Eigen::Index rows = 1000, columns = 24;
    MatrixXd tall(rows, columns);
    for (Eigen::Index k = 0; k < columns; ++k)
        for (Eigen::Index i = 0; i < rows; ++i)
            tall(i, k) =
                std::cos(0.003 * static_cast<double>((i + 1) * (k + 1))) + (i % (k + 2) == 0 ? 1 : 0);
    tall.col(7) = 2 * tall.col(3) - tall.col(11);
    MatrixXd bases[2];
    for (const int turn : {0, 1}) {
        limit_threads(turn == 0 ? 1 : 3);
        bases[turn] = orthonormal_basis_of_units(tall, 1e-9);
        limit_threads(0);
    }
    EXPECT_EQ(bases[0], bases[1]) << "the same bits on any count of cores";
    const MatrixXd& basis = bases[0];
    ASSERT_EQ(basis.cols(), columns - 1);
    const MatrixXd unit = MatrixXd::Identity(columns - 1, columns - 1);
    EXPECT_LT((basis.transpose() * basis - unit).norm(), 1e-12);
    EXPECT_LT((tall - basis * (basis.transpose() * tall)).norm(), 1e-11 * tall.norm());
}

}  // namespace anomalis::inversion
