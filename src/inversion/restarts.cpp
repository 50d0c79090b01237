#include "inversion/restarts.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "core/core_shares.h"
#include "inversion/chance_start.h"
#include "inversion/rows_problem.h"

namespace anomalis::inversion {

namespace {

/// Starts that begin together, from the same best end. A number of its own, so that the cores do not count.
constexpr int starts_a_wave = 4;
/// Models that are looked at for a start, for each body that it moves.
constexpr int candidates = 48, most_candidates = 240;

/// One search.
class Search {
  public:
    Search(const Workspace& workspace, const FitRows& rows, const RestartRequest& request)
        : workspace_(workspace), rows_(rows), request_(request) {
        found_.ends.resize(static_cast<std::size_t>(request.count));
    }

    Restarts run(Pacer& pacer) {
        best_.assign(request_.fitted.begin(), request_.fitted.end());
        least_ = request_.sum_of_squares;
        bool goes_on = true;
        for (int first = 0; first < request_.count && goes_on; first += starts_a_wave) {
            const int last = std::min(first + starts_a_wave, request_.count);
            goes_on = run_wave(first, last, pacer);
            for (int i = first; i < last; ++i) {
                const FitOutcome& end = found_.ends[static_cast<std::size_t>(i)];
                if (end.values.empty() || !(end.sum_of_squares < least_)) continue;
                best_ = end.values;
                least_ = end.sum_of_squares;
            }
        }
        found_.evaluations = evaluations_;
        return std::move(found_);
    }

  private:
    bool run_wave(int first, int last, Pacer& pacer) {
        const auto core = [this](CoreShare& share) {
            FitRows own(rows_, share.pacer());
            while (const std::optional<int> number = share.next())
                found_.ends[static_cast<std::size_t>(*number)] = fit(own, share.pacer(), *number);
            evaluations_ += own.evaluations();
        };
        return share_among_cores(
            {.first = first, .last = last, .core = core, .leave = [this] { return request_.stop; }}, pacer);
    }

    FitOutcome fit(FitRows& own, Pacer& pacer, int number) const {
        std::vector<FitParameter> parameters(request_.parameters.begin(), request_.parameters.end());
        const std::vector<float> start = start_of(own, number);
        for (std::size_t i = 0; i < parameters.size(); ++i) parameters[i].value = start[i];
        RowsProblem problem(workspace_, own, parameters, pacer);
        return fit_least_squares(problem, parameters, request_.max_iterations);
    }

    /// In turn the worst body, the two worst, all of them round where the fit began, the second worst.
    std::vector<float> start_of(FitRows& own, int number) const {
        const std::vector<std::int32_t> bodies = worst_fitted_bodies(own, best_);
        const auto seed = static_cast<std::uint32_t>(number) + 1;
        const auto some = [&](std::size_t from, std::size_t count) {
            const std::size_t first = std::min(from, bodies.size() - 1);
            return std::span(bodies).subspan(first, std::min(count, bodies.size() - first));
        };
        const auto start = [&](std::span<const float> values, std::span<const std::int32_t> moved) {
            return chance_start(workspace_, own, request_.parameters, values, moved,
                                std::min(candidates * static_cast<int>(moved.size()), most_candidates), seed);
        };
        switch (number % 4) {
            case 0:
                return start(best_, some(0, 1));
            case 1:
                return start(best_, some(0, 2));
            case 2: {
                std::vector<float> began;
                for (const FitParameter& p : request_.parameters) began.push_back(p.value);
                return start(began, bodies);
            }
            default:
                return start(best_, some(1, 1));
        }
    }

    const Workspace& workspace_;
    const FitRows& rows_;
    const RestartRequest& request_;
    std::vector<float> best_;  ///< end so far, which the starts of a wave go on from
    double least_ = 0;
    Restarts found_;
    std::atomic<long> evaluations_ = 0;
};

}  // namespace

Restarts fit_from_starts(const Workspace& workspace, const FitRows& rows, const RestartRequest& request,
                         Pacer& pacer) {
    if (request.count < 1) return {};
    return Search(workspace, rows, request).run(pacer);
}

}  // namespace anomalis::inversion
