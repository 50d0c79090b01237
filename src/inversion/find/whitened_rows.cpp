#include "inversion/find/whitened_rows.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "inversion/matern.h"
#include "inversion/row_news.h"

namespace anomalis::inversion {

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;

Whitening::Whitening(const RowNoise& noise, const VectorXd& distance) : noise_(noise), distance_(distance) {
    VectorXd nothing = VectorXd::Zero(distance.size());
    log_determinant_ = run(nothing);
}

void Whitening::whiten(Eigen::Ref<MatrixXd> columns) const {
    run(columns);
}

double Whitening::run(Eigen::Ref<MatrixXd> columns) const {
    const ResidualCovariance& covariance = noise_.covariance;
    const double white = covariance.white;
    double determinant = 2 * std::log(white) * static_cast<double>(distance_.size());
    if (noise_.weight.size() > 0) {
        columns.array().colwise() *= noise_.weight.array();
        determinant -= 2 * noise_.weight.array().log().sum();
    }
    if (covariance.correlated == 0) {
        columns /= white;
        return determinant;
    }
    const Matern process(covariance.smoothness);
    const auto width = static_cast<std::size_t>(columns.cols());
    const double ratio = covariance.correlated * covariance.correlated / (white * white);
    RowNews filter(process, ratio, covariance.rate, width);
    std::vector<double> row(width), news(width);
    for (Index i = 0; i < distance_.size(); ++i) {
        if (i > 0) filter.go_on(std::max(distance_[i] - distance_[i - 1], 0.0));
        for (std::size_t k = 0; k < width; ++k) row[k] = columns(i, static_cast<Index>(k)) / white;
        determinant += filter.take(row.data(), news.data());
        for (std::size_t k = 0; k < width; ++k) columns(i, static_cast<Index>(k)) = news[k];
    }
    return determinant;
}

}  // namespace anomalis::inversion
