#include "inversion/restricted_likelihood.h"

#include <Eigen/Core>
#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <numeric>

#include "core/shared_pieces.h"
#include "inversion/dense_steps.h"
#include "inversion/orthonormal_basis.h"
#include "inversion/row_news.h"

namespace anomalis::inversion {

namespace {

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;

/// A likelihood costs as many rows. A longer line is sampled: runs of neighbours, which show what is short,
/// with gaps between them.
constexpr Index most_rows = 2000;
constexpr Index run_length = 8;
constexpr Index rows_a_column = 4;
/// Beyond so many columns only how many they are counts: that still gives the variance, and lengths too
/// short.
constexpr Index most_columns = 150;
/// Columns that depend on others to this part count once.
constexpr double dependent = 1e-9;

std::vector<Index> along_the_line(const VectorXd& distance) {
    std::vector<Index> order(static_cast<std::size_t>(distance.size()));
    std::iota(order.begin(), order.end(), Index{0});
    std::ranges::stable_sort(order, {}, [&](Index i) { return distance[i]; });
    return order;
}

std::vector<Index> sampled(const std::vector<Index>& order, Index columns) {
    const auto count = static_cast<Index>(order.size());
    const Index rows = std::max(most_rows, rows_a_column * columns);
    if (count <= rows) return order;
    const Index period = (run_length * count + rows - 1) / rows;
    std::vector<Index> kept;
    for (Index i = 0; i < count; ++i)
        if (i % period < run_length) kept.push_back(order[static_cast<std::size_t>(i)]);
    return kept;
}

/// Columns that hold something.
std::vector<Index> filled(const MatrixXd& columns) {
    std::vector<Index> some;
    for (Index k = 0; k < columns.cols(); ++k) {
        const double norm = columns.col(k).norm();
        if (norm > 0 && std::isfinite(norm)) some.push_back(k);
    }
    return some;
}

}  // namespace

RestrictedLikelihood::RestrictedLikelihood(const VectorXd& distance, const VectorXd& residual,
                                           const MatrixXd& columns, double spacing) {
    const std::vector<Index> order = sampled(along_the_line(distance), columns.cols());
    const VectorXd place = distance(order), value = residual(order);
    const Index rows = place.size();
    const MatrixXd known = columns(order, Eigen::all);
    const std::vector<Index> some = filled(known);
    const auto many = static_cast<Index>(some.size());
    const MatrixXd basis = many > most_columns
                               ? MatrixXd(rows, 0)
                               : orthonormal_basis_of_units(known(Eigen::all, some), dependent);
    width_ = static_cast<std::size_t>(basis.cols()) + 1;
    rows_ = static_cast<std::size_t>(rows);
    freedom_ = static_cast<double>(rows - (many > most_columns ? many : basis.cols()));
    mean_square_ = value.squaredNorm() / std::max(freedom_, 1.0);
    extent_ = rows > 0 ? place[rows - 1] - place[0] : 0;
    spacing_ = rows > 1 ? extent_ / static_cast<double>(distance.size() - 1) : 0;
    if (rows > 1 && spacing > 0) spacing_ = spacing;
    table_.reserve(rows_ * width_);
    for (Index i = 0; i < rows; ++i) {
        steps_.push_back(i == 0 ? 0 : place[i] - place[i - 1]);
        for (std::size_t k = 0; k + 1 < width_; ++k) table_.push_back(basis(i, static_cast<Index>(k)));
        table_.push_back(value[i]);
    }
}

RestrictedLikelihood::Parts RestrictedLikelihood::reduce(const double* rows, double determinant) const {
    using RowMajor = Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;
    const Eigen::Map<const RowMajor> table(rows, static_cast<Index>(rows_), static_cast<Index>(width_));
    const Index size = table.cols() - 1;
    // In blocks of rows that several threads take; their sums are added in one order.
    constexpr Index block = 512;
    const Index blocks = (table.rows() + block - 1) / block;
    std::vector<MatrixXd> parts(static_cast<std::size_t>(blocks));
    for_each_piece(
        parts.size(), worker_count(units(), parts.size()), no_pace(), [&](PieceWorker&, std::size_t b) {
            const Index first = static_cast<Index>(b) * block;
            const Index count = std::min(block, table.rows() - first);
            parts[b] = MatrixXd::Zero(size + 1, size + 1);
            parts[b].selfadjointView<Eigen::Lower>().rankUpdate(table.middleRows(first, count).transpose());
        });
    MatrixXd products = MatrixXd::Zero(size + 1, size + 1);
    for (const MatrixXd& part : parts) products += part;
    // The last diagonal element of the triangle is the length of the residuals that the columns leave.
    const Eigen::LLT<MatrixXd> triangle = triangle_of(products);
    const VectorXd diagonal = triangle.matrixLLT().diagonal();
    if (triangle.info() != Eigen::Success) return {determinant, 0};
    return {determinant + 2 * diagonal.head(size).array().log().sum(), diagonal[size] * diagonal[size]};
}

RestrictedLikelihood::Parts RestrictedLikelihood::white_parts() const {
    return reduce(table_.data(), 0);
}

RestrictedLikelihood::Parts RestrictedLikelihood::parts(const Matern& process, double ratio,
                                                        double rate) const {
    // Every value is written: no time goes into zeros.
    const auto whitened = std::make_unique_for_overwrite<double[]>(table_.size());
    RowNews state(process, ratio, rate, width_);
    double determinant = 0;
    for (std::size_t i = 0; i < rows_; ++i) {
        if (i > 0) state.go_on(steps_[i]);
        determinant += state.take(table_.data() + i * width_, whitened.get() + i * width_);
    }
    return reduce(whitened.get(), determinant);
}

double RestrictedLikelihood::units() const {
    constexpr double units_a_product = 0.1, units_a_value = 10;
    const auto width = static_cast<double>(width_);
    return static_cast<double>(rows_) * width * (units_a_product * width + units_a_value);
}

double RestrictedLikelihood::value(const Parts& parts) const {
    if (!(parts.squares > 0)) return -std::numeric_limits<double>::infinity();
    return -0.5 * (freedom_ * std::log(scale(parts)) + parts.determinant);
}

}  // namespace anomalis::inversion
