#include "inversion/normal_matrix.h"

#include <Eigen/Dense>
#include <cmath>
#include <gtest/gtest.h>
#include <utility>

#include "inversion/normal_kernel.h"

namespace anomalis::inversion {
namespace {

using Eigen::Index;
using Eigen::MatrixXd;

/// Numbers of all sizes and signs, the same everywhere.
MatrixXd numbers(Index rows, Index columns) {
    MatrixXd matrix(rows, columns);
    for (Index j = 0; j < columns; ++j)
        for (Index i = 0; i < rows; ++i)
            matrix(i, j) = std::sin(static_cast<double>(i * 37 + j * 101)) * static_cast<double>(1 + j % 7);
    return matrix;
}

/// The largest difference to plain sums, as a part of the lengths of the two columns.
double off_plain_sums(const MatrixXd& columns, const MatrixXd& normal) {
    double off = 0;
    for (Index j = 0; j < columns.cols(); ++j)
        for (Index i = j; i < columns.cols(); ++i) {
            double sum = 0;
            for (Index k = 0; k < columns.rows(); ++k) sum += columns(k, i) * columns(k, j);
            off = std::max(
                off, std::abs(normal(i, j) - sum) / (columns.col(i).norm() * columns.col(j).norm() + 1e-300));
        }
    return off;
}

TEST(NormalMatrix, is_the_plain_sum_of_products_for_any_size) {
    for (const auto& [rows, columns] : {std::pair<Index, Index>{1, 1},
                                        {7, 3},
                                        {8, 4},
                                        {511, 5},
                                        {512, 33},
                                        {1030, 64},
                                        {1300, 71},
                                        {5, 40}}) {
        const MatrixXd matrix = numbers(rows, columns);
        const MatrixXd normal = normal_matrix(matrix, no_pace());
        EXPECT_LT(off_plain_sums(matrix, normal), 1e-13) << rows << " by " << columns;
        EXPECT_EQ(normal.triangularView<Eigen::StrictlyUpper>().toDenseMatrix().norm(), 0);
    }
}

TEST(NormalMatrix, of_no_columns_or_no_rows_is_zero) {
    EXPECT_EQ(normal_matrix(MatrixXd(10, 0), no_pace()).size(), 0);
    EXPECT_EQ(normal_matrix(MatrixXd(0, 3), no_pace()), MatrixXd::Zero(3, 3));
}

TEST(NormalMatrix, has_the_same_bits_for_any_number_of_threads) {
    const MatrixXd matrix = numbers(700, 130);
    const MatrixXd one = normal_matrix(matrix, no_pace(), 1);
    for (const int threads : {2, 3, 7}) EXPECT_EQ(normal_matrix(matrix, no_pace(), threads), one) << threads;
}

TEST(NormalMatrix, every_level_of_the_processor_agrees) {
    const MatrixXd matrix = numbers(1003, 19);
    const TallMatrix tall{matrix.data(), 1003, 1003};
    const MatrixXd baseline = [&] {
        MatrixXd normal(19, 19);
        column_products_at(vector::VectorLevel::baseline)(tall, {0, 19}, {0, 19}, normal.data(), 19);
        return normal;
    }();
    EXPECT_LT(off_plain_sums(matrix, baseline), 1e-13);
    for (const auto level : {vector::VectorLevel::avx2, vector::VectorLevel::avx512}) {
        if (level > vector::widest_vector_level()) continue;
        MatrixXd normal(19, 19);
        column_products_at(level)(tall, {0, 19}, {0, 19}, normal.data(), 19);
        EXPECT_LT((normal - baseline).norm(), 1e-12 * baseline.norm()) << vector::vector_level_name(level);
    }
}

/// Leaves at the `n`th word.
class LeavingPacer : public Pacer {
  public:
    explicit LeavingPacer(int n) : left_(n) {}
    void done(double) override {
        if (++words_; words_ >= left_) throw Stopped{};
    }
    int words() const { return words_; }

  private:
    int left_, words_ = 0;
};

TEST(NormalMatrix, can_be_left_between_its_blocks) {
    const MatrixXd matrix = numbers(300, 200);
    LeavingPacer pacer(3);
    EXPECT_THROW(normal_matrix(matrix, pacer, 1), Stopped);
    EXPECT_EQ(pacer.words(), 3) << "not a block more";
}

/// Helpers may have taken every block before the caller comes to one: it asks all the same.
TEST(NormalMatrix, asks_whoever_waits_whatever_the_helpers_took) {
    const MatrixXd matrix = numbers(300, 200);
    for (const int threads : {2, 3}) {
        LeavingPacer pacer(1);
        EXPECT_THROW(normal_matrix(matrix, pacer, threads), Stopped);
        EXPECT_EQ(pacer.words(), 1);
    }
}

TEST(NormalMatrix, tells_of_pieces_of_a_few_milliseconds) {
    class Counting : public Pacer {
      public:
        void done(double units) override { most = std::max(most, units); }
        double most = 0;
    } pacer;
    normal_matrix(numbers(4000, 100), pacer, 1);
    EXPECT_GT(pacer.most, 0);
    EXPECT_LT(pacer.most, 5e6);
}

}  // namespace
}  // namespace anomalis::inversion
