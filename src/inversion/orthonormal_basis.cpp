#include "inversion/orthonormal_basis.h"

#include <Eigen/QR>
#include <algorithm>
#include <cstddef>
#include <vector>

#include "core/shared_pieces.h"

namespace anomalis::inversion {

using Eigen::Index;
using Eigen::MatrixXd;

namespace {

/// Fewer are not worth blocks.
constexpr Index many_columns = 16;

using Pivoted = Eigen::ColPivHouseholderQR<MatrixXd>;

Pivoted pivoted(const MatrixXd& columns, double threshold) {
    Pivoted qr(columns);
    if (threshold > 0) qr.setThreshold(threshold);
    return qr;
}

MatrixXd first_columns(const Pivoted& qr, Index rows) {
    return qr.householderQ() * MatrixXd::Identity(rows, std::min(qr.rank(), rows));
}

/// Blocks of rows of a tall matrix, several on their way at one time. Their count hangs on the matrix alone.
class RowBlocks {
  public:
    RowBlocks(Index rows, Index columns) : rows_(rows), count_(rows / (rows_a_column * columns)) {}

    Index count() const { return count_; }
    Index first(Index block) const { return rows_ * block / count_; }
    Index size(Index block) const { return first(block + 1) - first(block); }

    /// Calls work(block) for each, when all take `units`.
    template <class Work>
    void share(double units, const Work& work) const {
        const auto blocks = static_cast<std::size_t>(count_);
        for_each_piece(blocks, worker_count(units, blocks), no_pace(),
                       [&](PieceWorker&, std::size_t block) { work(static_cast<Index>(block)); });
    }

  private:
    static constexpr Index rows_a_column = 8;
    Index rows_, count_;
};

/// The triangles of the blocks, one below the other, have the lengths and angles of the columns: what is
/// found of them holds for the columns (Demmel, Grigori, Hoemmen and Langou 2012, SIAM J. Sci. Comput. 34).
MatrixXd tall_basis(const MatrixXd& columns, const RowBlocks& blocks, double threshold) {
    const Index width = columns.cols();
    const double units = 0.5 * static_cast<double>(columns.size()) * static_cast<double>(width);
    std::vector<Eigen::HouseholderQR<MatrixXd>> parts(static_cast<std::size_t>(blocks.count()));
    const auto part = [&](Index b) -> Eigen::HouseholderQR<MatrixXd>& {
        return parts[static_cast<std::size_t>(b)];
    };
    MatrixXd triangles(blocks.count() * width, width);
    blocks.share(units, [&](Index b) {
        part(b).compute(columns.middleRows(blocks.first(b), blocks.size(b)));
        triangles.middleRows(b * width, width) =
            part(b).matrixQR().topRows(width).triangularView<Eigen::Upper>();
    });
    const MatrixXd turn = first_columns(pivoted(triangles, threshold), triangles.rows());
    MatrixXd basis = MatrixXd::Zero(columns.rows(), turn.cols());
    blocks.share(units, [&](Index b) {
        auto own = basis.middleRows(blocks.first(b), blocks.size(b));
        own.topRows(width) = turn.middleRows(b * width, width);
        own.applyOnTheLeft(part(b).householderQ());
    });
    return basis;
}

}  // namespace

MatrixXd orthonormal_basis(const MatrixXd& columns, double threshold) {
    if (columns.cols() == 0) return columns;
    const RowBlocks blocks(columns.rows(), columns.cols());
    if (blocks.count() > 1 && columns.cols() >= many_columns) return tall_basis(columns, blocks, threshold);
    return first_columns(pivoted(columns, threshold), columns.rows());
}

MatrixXd orthonormal_basis_of_units(const MatrixXd& columns, double threshold) {
    MatrixXd unit = columns;
    for (Index k = 0; k < unit.cols(); ++k)
        if (const double norm = unit.col(k).norm(); norm > 0) unit.col(k) /= norm;
    return orthonormal_basis(unit, threshold);
}

}  // namespace anomalis::inversion
