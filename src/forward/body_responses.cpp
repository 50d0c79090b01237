#include "forward/body_responses.h"

#include <algorithm>
#include <cstddef>
#include <mutex>
#include <vector>

#include "core/faults.h"
#include "core/shared_pieces.h"
#include "forward/body_job.h"
#include "forward/body_price.h"
#include "forward/classic/gravity_response.h"
#include "forward/classic/mag_response.h"
#include "forward/exact/exact_response.h"
#include "forward/forward_memory.h"

namespace anomalis::forward {

namespace {

void switch_off(const BodyJob& job) {
    if (job.mag)
        for (const int column : {1, 3, 4, 5}) job.body.response.drop(column);
    if (job.grav) job.body.response.drop(2);
}

void calculate_classic_responses(const BodyJob& job) {
    const bool attraction_too = job.mag && calculate_mag_response(job);
    if (job.grav) calculate_gravity_response(job, attraction_too);
}

void calculate_body(const BodyJob& job) {
    if (job.body.turned_off == 1) return switch_off(job);
    if (job.workspace.formulas == Formulas::exact) return calculate_exact_responses(job);
    calculate_classic_responses(job);
}

/// What went wrong in a body.
struct BodyReport {
    std::size_t order;
    Faults mag, grav;
};

void tell_all(const Faults& from, Faults& to) {
    for (const auto& [text, count, severity] : from.entries()) to.add(text, count, severity);
}

/// The bodies that are out of date, one after the other or side by side. Those that alone take a good part of
/// the whole are taken one by one, the stations shared among the cores: a core that has the largest body last
/// would leave the others idle.
class Orders {
  public:
    Orders(Workspace& workspace, const WantedChannels& channels)
        : workspace_(workspace), memory_(forward_memory(workspace)), orders_(memory_.orders) {
        orders_.clear();
        for (int number = 1; number <= workspace.body_count; ++number) {
            const ModelBody& body = workspace.body(number);
            const bool mag = channels.mag && !body.mag_response_valid;
            const bool grav = channels.grav && !body.grav_response_valid;
            if (mag || grav)
                orders_.push_back({number, mag, grav, work_of_body(workspace, body, mag, grav), false});
        }
    }

    void calculate(Pacer& pacer) {
        double work = 0;
        for (const BodyOrder& order : orders_) work += order.work;
        const int workers = worker_count(work, orders_.size());
        body_memory(memory_, thread_index(workers - 1));
        for (const auto& thread : memory_.threads) reset(*thread);
        const double share = work / (shares_a_worker * workers);
        for (std::size_t at = 0; at < orders_.size(); ++at)
            if (workers == 1 || orders_[at].work > share) calculate(at, 0, pacer);
        if (workers > 1) calculate_side_by_side(workers, pacer);
    }

    /// Marks what is finished and tells what went wrong in it, in the order of the bodies.
    ExactNotes finish(Faults& faults) {
        for (const BodyOrder& order : orders_)
            if (order.done) mark_valid(order);
        std::ranges::sort(reports_, {}, &BodyReport::order);
        for (const BodyReport& report : reports_) tell_all(report.mag, faults);
        for (const BodyReport& report : reports_) tell_all(report.grav, faults);
        ExactNotes notes;
        for (const auto& thread : memory_.threads) {
            notes.polygon |= thread->notes.polygon;
            notes.steep_top |= thread->notes.steep_top;
        }
        return notes;
    }

  private:
    static constexpr double shares_a_worker = 8;

    static std::size_t thread_index(int thread) { return static_cast<std::size_t>(thread); }

    static void reset(BodyMemory& memory) {
        memory.mag_faults.clear();
        memory.grav_faults.clear();
        memory.notes = {};
    }

    void calculate_side_by_side(int workers, Pacer& pacer) {
        const auto work = [this](PieceWorker& worker, std::size_t at) {
            PiecePacer own(worker);
            if (!orders_[at].done) calculate(at, worker.number(), own);
        };
        for_each_piece(orders_.size(), workers, pacer, work);
    }

    void calculate(std::size_t at, int thread, Pacer& pacer) {
        BodyOrder& order = orders_[at];
        BodyMemory& memory = *memory_.threads[thread_index(thread)];
        calculate_body({workspace_, order.number, workspace_.body(order.number), order.mag, order.grav,
                        memory, memory.notes, memory.mag_faults, memory.grav_faults, pacer});
        order.done = true;
        if (memory.mag_faults.empty() && memory.grav_faults.empty()) return;
        const std::lock_guard lock(mutex_);
        reports_.push_back({at, memory.mag_faults, memory.grav_faults});
        memory.mag_faults.clear();
        memory.grav_faults.clear();
    }

    void mark_valid(const BodyOrder& order) {
        ModelBody& body = workspace_.body(order.number);
        if (order.mag) {
            body.mag_response_valid = true;
            body.mag_calculation = ++workspace_.calculations;
        }
        if (order.grav) {
            body.grav_response_valid = true;
            body.grav_calculation = ++workspace_.calculations;
        }
    }

    Workspace& workspace_;
    ForwardMemory& memory_;
    std::vector<BodyOrder>& orders_;
    std::mutex mutex_;
    std::vector<BodyReport> reports_;
};

}  // namespace

ExactNotes calculate_bodies(Workspace& workspace, const WantedChannels& channels, Faults& faults,
                            Pacer& pacer) {
    Orders orders(workspace, channels);
    try {
        orders.calculate(pacer);
    } catch (...) {
        orders.finish(faults);
        throw;
    }
    return orders.finish(faults);
}

}  // namespace anomalis::forward
