// What the rows of a fit ask of the bodies, each on whatever core is free.

#include <Eigen/Core>
#include <algorithm>
#include <map>
#include <mutex>
#include <utility>

#include "core/body_parameters.h"
#include "core/shared_pieces.h"
#include "forward/body_price.h"
#include "inversion/eigen_spans.h"
#include "inversion/fit_rows.h"

namespace anomalis::inversion {

namespace {

using Eigen::Index;
using Eigen::MatrixXd;

bool has_part(int param_code, std::int32_t channel) {
    const FitPart part = body_parameter(param_code).fit.part;
    return part == FitPart::shape || (part == FitPart::magnetic) == (channel == channel_mag);
}

}  // namespace

void FitRows::share_bodies(std::size_t count, double units, const std::function<int(std::size_t)>& number,
                           const std::function<void(std::size_t, BodyAsk&)>& work) {
    const int workers = worker_count(units, count);
    while (benches_.size() < static_cast<std::size_t>(workers))
        benches_.push_back(std::make_unique<forward::BodyBench>());
    std::mutex mutex;
    std::map<std::size_t, Faults> noted;
    for_each_piece(count, workers, pacer_, [&](PieceWorker& worker, std::size_t i) {
        PiecePacer pacer(worker);
        forward::ExactNotes notes;
        Faults faults;
        BodyAsk ask{*benches_[static_cast<std::size_t>(worker.number())], {number(i), notes, faults, pacer}};
        work(i, ask);
        if (faults.empty()) return;
        const std::lock_guard lock(mutex);
        noted.emplace(i, std::move(faults));
    });
    for (const auto& [i, faults] : noted)
        for (const auto& [text, times, severity] : faults.entries()) faults_.add(text, times, severity);
}

double FitRows::units_of(int number, std::size_t columns) const {
    constexpr double station_units = 100, column_share = 0.3, difference_share = 2;
    const ModelBody& body = bodies_[static_cast<std::size_t>(number)];
    double units = 0;
    for (const FittedRows& rows : channels_) {
        const auto stations = static_cast<std::int64_t>(rows.chain.raw_count());
        const forward::BodyPrice price = forward::body_price(body, workspace_.formulas, stations);
        units += forward::work_of(price, stations) + station_units * static_cast<double>(stations);
    }
    const bool exact = workspace_.formulas == Formulas::exact;
    return units * (1 + (exact ? column_share : difference_share) * static_cast<double>(columns));
}

void FitRows::body_values(int number, FittedRows& rows, std::span<double> values, BodyAsk& ask) {
    forward::body_values(workspace_, bodies_[static_cast<std::size_t>(number)], rows.channel,
                         {rows.chain.first_station(), rows.chain.last_station()}, ask.bench, values,
                         ask.notes);
}

void FitRows::body_columns(const FreeBody& body, FittedRows& rows, std::span<const int> codes, bool known,
                           std::span<double> columns, BodyAsk& ask) {
    forward::body_columns(workspace_, bodies_[static_cast<std::size_t>(body.number)], rows.channel,
                          {rows.chain.first_station(), rows.chain.last_station()}, ask.bench, codes,
                          known ? std::span<double>() : span_of(rows.raw.col(body.column)), columns,
                          ask.notes);
}

/// The sums are formed in the order of the bodies, a few of them at a time, lest all their rows be held.
void FitRows::calculate_fixed() {
    std::vector<char> is_free(bodies_.size());
    for (const FreeBody& body : free_) is_free[static_cast<std::size_t>(body.number)] = 1;
    std::vector<int> fixed;
    for (int number = 1; number <= workspace_.body_count; ++number)
        if (is_free[static_cast<std::size_t>(number)] == 0) fixed.push_back(number);
    constexpr std::size_t together = 16;
    for (std::size_t first = 0; first < fixed.size(); first += together)
        add_fixed(std::span(fixed).subspan(first, std::min(together, fixed.size() - first)));
}

void FitRows::add_fixed(std::span<const int> numbers) {
    std::vector<MatrixXd> values;
    for (const FittedRows& rows : channels_) values.emplace_back(rows.raw.rows(), index_of(numbers.size()));
    double units = 0;
    for (const int number : numbers) units += units_of(number);
    share_bodies(
        numbers.size(), units, [&](std::size_t i) { return numbers[i]; },
        [&](std::size_t i, BodyAsk& ask) {
            for (std::size_t c = 0; c < channels_.size(); ++c)
                body_values(numbers[i], channels_[c], span_of(values[c].col(index_of(i))), ask);
        });
    for (std::size_t c = 0; c < channels_.size(); ++c)
        for (std::size_t i = 0; i < numbers.size(); ++i) channels_[c].fixed += values[c].col(index_of(i));
}

FitRows::FreeBody* FitRows::free_body(int number) {
    const auto found = std::ranges::find(free_, number, &FreeBody::number);
    return found == free_.end() ? nullptr : &*found;
}

/// Only bodies that moved.
void FitRows::calculate(std::span<const float> values) {
    std::vector<FreeBody*> moved;
    double units = 0;
    for (FreeBody& body : free_) {
        if (calculated(body, values)) continue;
        set_values(body, values);
        moved.push_back(&body);
        units += units_of(body.number);
    }
    share_bodies(
        moved.size(), units, [&](std::size_t i) { return moved[i]->number; },
        [&](std::size_t i, BodyAsk& ask) {
            const FreeBody& body = *moved[i];
            for (FittedRows& rows : channels_)
                body_values(body.number, rows, span_of(rows.raw.col(body.column)), ask);
        });
}

void FitRows::fill_columns(FreeBody& body, std::span<const float> values, Eigen::Ref<MatrixXd> out,
                           BodyAsk& ask) {
    const bool known = calculated(body, values);
    set_values(body, values);
    for (const std::size_t i : body.parameters) out.col(index_of(i)).setZero();
    Index at = 0;
    for (FittedRows& rows : channels_) {
        std::vector<int> codes;
        std::vector<std::size_t> parameters;
        for (const std::size_t i : body.parameters) {
            if (!has_part(request_.places[i].param_code, rows.channel)) continue;
            codes.push_back(request_.places[i].param_code);
            parameters.push_back(i);
        }
        MatrixXd raw(rows.raw.rows(), index_of(codes.size()));
        body_columns(body, rows, codes, known, span_of(raw), ask);
        const auto count = index_of(rows.chain.row_count());
        for (std::size_t k = 0; k < parameters.size(); ++k) {
            auto column = out.col(index_of(parameters[k])).segment(at, count);
            rows.chain.change(span_of(raw.col(index_of(k))), {column.data(), rows.chain.row_count()});
            if (!all_finite(column)) column.setZero();
            column /= rows.sigma;
        }
        at += count;
    }
}

}  // namespace anomalis::inversion
