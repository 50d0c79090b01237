#include "inversion/restarts.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <cstdint>
#include <exception>
#include <limits>
#include <mutex>
#include <random>
#include <thread>

#include "core/body_parameters.h"
#include "inversion/line_place.h"
#include "inversion/rows_problem.h"

namespace anomalis::inversion {

namespace {

/// Spreads of a start: of place and depth in depths and factors, of angles in degrees.
constexpr double place_spread = 1.0;
constexpr double size_spread = 1.0;  // of the logarithm
constexpr double angle_spread = 50;

/// Leaves the work when it is asked to.
class SharedPacer : public Pacer {
  public:
    explicit SharedPacer(const std::atomic<bool>& leave) : leave_(leave) {}
    void done(double) override { look(); }
    void waiting() override { look(); }

  private:
    void look() const {
        if (leave_) throw Stopped();
    }
    const std::atomic<bool>& leave_;
};

/// From -1 to 1, the same on every system.
class Spread {
  public:
    explicit Spread(int number) : random_(static_cast<std::uint32_t>(number) * 2654435761U + 12345U) {}
    double next() { return static_cast<double>(random_()) / 2147483648.0 - 1; }

  private:
    std::mt19937 random_;
};

/// The threads of one search.
class Search {
  public:
    Search(const Workspace& workspace, const FitRows& rows, const RestartRequest& request)
        : workspace_(workspace), rows_(rows), request_(request) {
        found_.ends.resize(static_cast<std::size_t>(request.count));
    }
    ~Search() {
        leave_ = true;
        for (std::thread& thread : threads_) thread.join();
    }
    Search(const Search&) = delete;
    Search& operator=(const Search&) = delete;

    Restarts run(Pacer& pacer) {
        const auto cores = static_cast<int>(std::max(std::thread::hardware_concurrency(), 1U));
        for (int i = 0; i < std::min(cores, request_.count); ++i) {
            ++running_;
            threads_.emplace_back([this] { work(); });
        }
        wait(pacer);
        for (std::thread& thread : threads_) thread.join();
        threads_.clear();
        if (failure_) std::rethrow_exception(failure_);
        found_.evaluations = evaluations_;
        return std::move(found_);
    }

  private:
    void wait(Pacer& pacer) {
        std::unique_lock lock(mutex_);
        while (!ended_.wait_for(lock, std::chrono::milliseconds(20), [this] { return running_ == 0; })) {
            lock.unlock();
            pacer.waiting();
            if (request_.stop) leave_ = true;
            lock.lock();
        }
    }

    void work() {
        try {
            SharedPacer pacer(leave_);
            FitRows own(rows_, pacer);
            for (int number = next_++; number < request_.count; number = next_++)
                found_.ends[static_cast<std::size_t>(number)] = fit(own, pacer, number + 1);
            evaluations_ += own.evaluations();
        } catch (const Stopped&) {  // what is ready is given back
        } catch (...) {
            const std::lock_guard lock(mutex_);
            failure_ = std::current_exception();
        }
        const std::lock_guard lock(mutex_);
        --running_;
        ended_.notify_all();
    }

    FitOutcome fit(FitRows& own, Pacer& pacer, int number) const {
        std::vector<FitParameter> parameters(request_.parameters.begin(), request_.parameters.end());
        const std::vector<float> start = perturbed_start(workspace_, rows_, request_, number);
        for (std::size_t i = 0; i < parameters.size(); ++i) parameters[i].value = start[i];
        RowsProblem problem(workspace_, own, parameters, pacer);
        return fit_least_squares(problem, parameters, request_.max_iterations);
    }

    const Workspace& workspace_;
    const FitRows& rows_;
    const RestartRequest& request_;
    Restarts found_;
    std::vector<std::thread> threads_;
    std::mutex mutex_;
    std::condition_variable ended_;
    int running_ = 0;
    std::atomic<int> next_ = 0;
    std::atomic<long> evaluations_ = 0;
    std::atomic<bool> leave_ = false;
    std::exception_ptr failure_;
};

double depth_of(const Workspace& workspace, const FitRows& rows, std::span<const float> values,
                std::int32_t number) {
    const ModelBody& body = rows.bodies()[static_cast<std::size_t>(number)];
    double top = body.top.value, distance = body.distance.value;
    const auto& places = rows.request().places;
    for (std::size_t i = 0; i < places.size(); ++i) {
        if (places[i].body != number) continue;
        if (places[i].param_code == param_top) top = values[i];
        if (places[i].param_code == param_distance) distance = values[i];
    }
    return std::max(std::abs(elevation_at(workspace, distance, column_sensor) - top), 0.1);
}

}  // namespace

std::vector<float> perturbed_start(const Workspace& workspace, const FitRows& rows,
                                   const RestartRequest& request, int number) {
    Spread spread(number);
    // In turn around the end and around the beginning.
    std::vector<float> base(request.fitted.begin(), request.fitted.end());
    if (number % 2 == 0) std::ranges::transform(request.parameters, base.begin(), &FitParameter::value);
    std::vector<float> start = base;
    for (std::size_t i = 0; i < start.size(); ++i) {
        const FitParameter& p = request.parameters[i];
        const InversionParamPlace place = rows.request().places[i];
        const double u = spread.next(), here = base[i], origin = p.origin;
        if (p.lower >= p.upper) continue;
        double there = here;
        switch (place.param_code) {
            case param_distance:
            case param_offset:
                there += place_spread * u * depth_of(workspace, rows, base, place.body);
                break;
            case param_strike:
            case param_dip:
            case param_plunge:
            case param_slope:
            case param_rem_d:
            case param_rem_i:
                there += angle_spread * u;
                break;
            default:
                if (p.logarithmic) there = origin + (here - origin) * std::exp(size_spread * u);
        }
        start[i] =
            std::clamp(static_cast<float>(there), std::min(p.lower, p.value), std::max(p.upper, p.value));
    }
    return start;
}

Restarts fit_from_starts(const Workspace& workspace, const FitRows& rows, const RestartRequest& request,
                         Pacer& pacer) {
    if (request.count < 1) return {};
    return Search(workspace, rows, request).run(pacer);
}

}  // namespace anomalis::inversion
