#include "inversion/dense_steps.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <future>
#include <memory>
#include <system_error>
#include <thread>
#include <utility>

#include "core/shared_pieces.h"
#include "inversion/normal_matrix.h"

namespace anomalis::inversion {

namespace {

using Eigen::Index;
using Eigen::MatrixXd;

/// Columns of a block: some 20 ms of a thousand parameters.
constexpr Index block = 32;
/// Units a multiplication with an addition.
constexpr double units_a_product = 0.4;
/// More columns than these have their axes on a thread of their own.
constexpr Index many_columns = 150;
constexpr std::chrono::milliseconds wait_pause{10};

}  // namespace

void for_column_blocks(Index count, double units, Pacer& pacer,
                       const std::function<void(Index first, Index columns)>& work) {
    const auto blocks = static_cast<std::size_t>((count + block - 1) / block);
    const int workers = worker_count(units * static_cast<double>(count), blocks, 0);
    for_each_piece(blocks, workers, pacer, [&](PieceWorker& worker, std::size_t at) {
        const Index first = static_cast<Index>(at) * block, columns = std::min(block, count - first);
        work(first, columns);
        worker.goes_on(units * static_cast<double>(columns));
    });
}

Eigen::LLT<MatrixXd> triangle_of(const MatrixXd& symmetric) {
    return Eigen::LLT<MatrixXd>(symmetric);
}

MatrixXd inverse_by(const Eigen::LLT<MatrixXd>& triangle, Pacer& pacer) {
    const Index count = triangle.cols();
    const auto size = static_cast<double>(count);
    const MatrixXd& lower = triangle.matrixLLT();
    MatrixXd inverse = MatrixXd::Identity(count, count);
    // Above its diagonal the inverse of the factor is zero too.
    for_column_blocks(count, units_a_product * size * size / 3, pacer, [&](Index first, Index columns) {
        const Index rows = count - first;
        auto part = inverse.block(first, first, rows, columns);
        lower.bottomRightCorner(rows, rows).triangularView<Eigen::Lower>().solveInPlace(part);
    });
    const MatrixXd half = normal_matrix(inverse, pacer);
    return half.selfadjointView<Eigen::Lower>();
}

MatrixXd product_of(const MatrixXd& left, const MatrixXd& right, Pacer& pacer) {
    MatrixXd product(left.rows(), right.cols());
    for_column_blocks(right.cols(), units_a_product * static_cast<double>(left.size()), pacer,
                      [&](Index first, Index columns) {
                          product.middleCols(first, columns).noalias() =
                              left * right.middleCols(first, columns);
                      });
    return product;
}

SymmetricAxes axes_of(MatrixXd symmetric, Pacer& pacer) {
    const Index count = symmetric.cols();
    if (count <= many_columns) {
        SymmetricAxes axes(symmetric);
        pacer.done(9 * std::pow(static_cast<double>(count), 3) / 2);
        return axes;
    }
    // It owns all that it works on, for it may outlast the fit. Who gives work to the pool waits for its end,
    // and a stop must not wait for axes that take seconds.
    const auto task = std::make_shared<std::packaged_task<SymmetricAxes()>>(
        [matrix = std::move(symmetric)] { return SymmetricAxes(matrix); });
    std::future<SymmetricAxes> axes = task->get_future();
    try {
        std::thread([task] { (*task)(); }).detach();
    } catch (const std::system_error&) {
        (*task)();  // no thread to be had
    }
    do {
        pacer.waiting();
    } while (axes.wait_for(wait_pause) != std::future_status::ready);
    return axes.get();
}

}  // namespace anomalis::inversion
