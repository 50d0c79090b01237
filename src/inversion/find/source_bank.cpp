#include "inversion/find/source_bank.h"

#include <Eigen/Dense>
#include <algorithm>
#include <cmath>
#include <numbers>
#include <span>

#include "core/faults.h"
#include "forward/body_columns.h"
#include "inversion/line_place.h"
#include "inversion/observed_rows.h"

namespace anomalis::inversion {

namespace {

using Eigen::Index;
using Eigen::Matrix2d;
using Eigen::MatrixXd;
using Eigen::Vector2d;
using Eigen::VectorXd;

constexpr double depth_factor = 1.35;
constexpr double place_step = 0.4;     ///< depths
constexpr double group_length = 0.25;  ///< depths
constexpr double reach = 12;           ///< depths to each side
constexpr double least_depth = 1.5;    ///< spacings
constexpr double most_depth = 0.2;     ///< of the window
constexpr double lower_dip = 45, upper_dip = 135;
constexpr double least_dip = 20, most_dip = 160;

constexpr double radians = std::numbers::pi / 180;

/// Coefficients of the two dips that make a sheet of another dip.
Vector2d parts_of(double dip) {
    return {std::cos((dip - lower_dip) * radians), std::sin((dip - lower_dip) * radians)};
}

double spacing_of(const VectorXd& distance, const RowPlaces& rows) {
    if (rows.spacing > 0) return rows.spacing;
    const Index stations = distance.size();
    return (distance[stations - 1] - distance[0]) / static_cast<double>(stations - 1);
}

/// No reading is nearer than the depth.
bool is_far_in_a_gap(const VectorXd& distance, double place, double depth) {
    const auto behind = std::ranges::lower_bound(distance, place);
    const bool near_behind = behind != distance.end() && *behind - place <= depth;
    return !near_behind && (behind == distance.begin() || place - *(behind - 1) > depth);
}

}  // namespace

SourceBank::SourceBank(const Workspace& workspace, std::int32_t channel, const RowPlaces& rows, bool thick,
                       Pacer& pacer) {
    magnetic_ = channel == channel_mag;
    const VectorXd distance = station_distances(workspace, rows.stations);
    const double length = distance.maxCoeff() - distance.minCoeff();
    if (distance.size() < 5 || !(length > 0)) return;
    const double spacing = spacing_of(distance, rows);
    double clearance = length;
    for (const std::int32_t i : rows.stations)
        clearance =
            std::min(clearance, workspace.stations(i, column_sensor) - workspace.stations(i, column_ground));
    const double deepest = most_depth * length;
    for (double depth = std::max(least_depth * spacing, 1.1 * clearance); depth <= deepest;
         depth *= depth_factor)
        add_level(workspace, channel, rows, depth, thick, pacer);
}

void SourceBank::add_level(const Workspace& workspace, std::int32_t channel, const RowPlaces& rows,
                           double depth, bool thick, Pacer& pacer) {
    const VectorXd distance = station_distances(workspace, rows.stations);
    const Index stations = distance.size();
    const double start = distance[0], end = distance[stations - 1];
    const double spacing = spacing_of(distance, rows);
    Level level{.depth = depth,
                .step = std::max<Index>(1, static_cast<Index>(group_length * depth / spacing))};

    // The line with a station for each group.
    Workspace line;
    static_cast<LineGeometry&>(line) = workspace;
    line.field = workspace.field;
    line.formulas = Formulas::exact;
    for (std::size_t k = 0; k < rows.starts.size(); ++k) {
        const Index behind = k + 1 < rows.starts.size() ? static_cast<Index>(rows.starts[k + 1]) : stations;
        for (Index i = static_cast<Index>(rows.starts[k]); i < behind; i += level.step) {
            level.first.push_back(i);
            level.second.push_back(std::min(i + level.step, behind));
        }
    }
    const auto groups = static_cast<Index>(level.first.size());
    line.station_count = static_cast<std::int32_t>(groups);
    line.stations.assign(line.station_count);
    line.distances.assign(line.station_count);
    for (Index g = 0; g < groups; ++g) {
        const auto at = static_cast<std::size_t>(g);
        const auto first = static_cast<int>(level.first[at]), behind = static_cast<int>(level.second[at]);
        const double count = behind - first;
        for (int column = column_line; column <= column_ground; ++column) {
            double sum = 0;
            for (int i = first; i < behind; ++i)
                sum += workspace.stations(rows.stations[static_cast<std::size_t>(i)], column);
            line.stations(static_cast<int>(g) + 1, column) = sum / count;
        }
        line.distances[static_cast<int>(g) + 1] = distance.segment(first, behind - first).mean();
        level.distance.push_back(line.distances[static_cast<int>(g) + 1]);
    }

    ModelBody body;
    body.type = thick_sheet;
    body.strike.value = workspace.azimuth / static_cast<float>(radians) + 90;
    body.susc.value = 10000;
    body.density.value = 1;
    // Rounding gives an anomaly where the field runs along the strike.
    const double inducing = static_cast<double>(workspace.field.intensity) * 1e-2;  // nT
    const double least = channel == channel_mag ? std::max(1e-5 * inducing, 1e-12) : 0;
    forward::BodyBench bench;
    forward::ExactNotes exact;
    Faults faults;
    forward::BodyNotes notes{1, exact, faults, pacer};
    const std::vector<double> widths =
        thick ? std::vector<double>{0.15, 1.0, 2.0} : std::vector<double>{0.15};
    for (double place = start - 0.5 * depth; place <= end + 0.5 * depth; place += place_step * depth) {
        if (rows.spacing > 0 && is_far_in_a_gap(distance, place, depth)) continue;
        const double sensor = elevation_at(workspace, place, column_sensor);
        if (sensor - depth > elevation_at(workspace, place, column_ground)) continue;
        const auto lower = std::ranges::lower_bound(level.distance, place - reach * depth);
        const auto upper = std::ranges::upper_bound(level.distance, place + reach * depth);
        const auto from = static_cast<Index>(lower - level.distance.begin());
        const auto count = static_cast<Index>(upper - lower);
        if (count < 6) continue;
        const VectorXd where = Eigen::Map<const VectorXd>(level.distance.data() + from, count);
        const MatrixXd straight = polynomials(where, 1);
        body.distance.value = static_cast<float>(place);
        body.top.value = static_cast<float>(sensor - depth);
        for (const double width : widths) {
            body.width.value = static_cast<float>(width * depth);
            MatrixXd columns(count, 2);
            for (int k = 0; k < 2; ++k) {
                body.dip.value = static_cast<float>(k == 0 ? lower_dip : upper_dip);
                forward::body_values(
                    line, body, channel,
                    {static_cast<std::int32_t>(from) + 1, static_cast<std::int32_t>(from + count)}, bench,
                    {columns.col(k).data(), static_cast<std::size_t>(count)}, notes);
            }
            if (!columns.allFinite() || !(columns.cwiseAbs().maxCoeff() > least)) continue;
            columns -= straight * (straight.transpose() * columns).eval();
            // Gram and Schmidt: columns = basis * triangle.
            Matrix2d triangle = Matrix2d::Zero();
            triangle(0, 0) = columns.col(0).norm();
            if (!(triangle(0, 0) > 0)) continue;
            columns.col(0) /= triangle(0, 0);
            triangle(0, 1) = columns.col(0).dot(columns.col(1));
            columns.col(1) -= triangle(0, 1) * columns.col(0);
            triangle(1, 1) = columns.col(1).norm();
            if (!(triangle(1, 1) > 1e-9 * triangle(0, 0))) continue;
            columns.col(1) /= triangle(1, 1);
            candidates_.push_back(
                {levels_.size(), place, width * depth, from, columns.cast<float>(), triangle});
        }
    }
    levels_.push_back(std::move(level));
}

std::vector<Source> SourceBank::best(const VectorXd& residual, std::size_t count, Pacer& pacer) const {
    std::vector<Eigen::VectorXf> grouped;
    std::vector<double> weight;
    for (const Level& level : levels_) {
        Eigen::VectorXf means(static_cast<Index>(level.first.size()));
        for (Index g = 0; g < means.size(); ++g) {
            const auto at = static_cast<std::size_t>(g);
            const Index size = level.second[at] - level.first[at];
            means[g] = static_cast<float>(residual.segment(level.first[at], size).mean());
        }
        grouped.push_back(std::move(means));
        weight.push_back(static_cast<double>(level.step));
    }
    std::vector<Source> all;
    double units = 0;
    for (const Candidate& candidate : candidates_) {
        const auto rows = grouped[candidate.level].segment(candidate.from, candidate.basis.rows());
        const Vector2d shares = (candidate.basis.transpose() * rows).cast<double>();
        units += 2 * static_cast<double>(candidate.basis.rows());
        const Vector2d parts = candidate.triangle.triangularView<Eigen::Upper>().solve(shares);
        double dip = lower_dip + std::atan2(parts[1], parts[0]) / radians;
        double gain = shares.squaredNorm();
        int sign = 1;
        if (!magnetic_ && (dip < least_dip || dip > most_dip)) {
            sign = -1;
            dip += dip < least_dip ? 180 : -180;
        }
        if (dip < least_dip || dip > most_dip) {
            // The better one of the two ends, as far as it helps.
            gain = 0;
            for (const double end : {least_dip, most_dip}) {
                const Vector2d way = candidate.triangle * parts_of(end);
                const double along = way.dot(shares) / way.norm();
                if (along > 0 && along * along > gain) {
                    gain = along * along;
                    dip = end;
                }
            }
            if (gain == 0) continue;
        }
        all.push_back({candidate.distance, levels_[candidate.level].depth, candidate.width, dip, sign,
                       gain * weight[candidate.level]});
    }
    pacer.done(units);
    std::ranges::sort(all, std::ranges::greater{}, &Source::gain);
    std::vector<Source> chosen;
    for (const Source& source : all) {
        if (chosen.size() >= count) break;
        const auto alike = [&](const Source& other) {
            const double deeper = std::max(source.depth, other.depth);
            const double ratio = deeper / std::min(source.depth, other.depth);
            return std::abs(source.distance - other.distance) < deeper && ratio < 1.6;
        };
        if (std::ranges::none_of(chosen, alike)) chosen.push_back(source);
    }
    return chosen;
}

}  // namespace anomalis::inversion
