#include "forward/body_responses.h"

#include "core/faults.h"
#include "forward/body_job.h"
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

void mark_valid(Workspace& workspace, const BodyJob& job) {
    ModelBody& body = job.body;
    if (job.mag) {
        body.mag_response_valid = true;
        body.mag_calculation = ++workspace.calculations;
    }
    if (job.grav) {
        body.grav_response_valid = true;
        body.grav_calculation = ++workspace.calculations;
    }
}

/// Tells the failures of a channel after those of the other when it goes.
class LaterFaults {
  public:
    explicit LaterFaults(Faults& faults) : faults_(faults) {}
    ~LaterFaults() {
        for (const auto& [text, count, severity] : later_.entries()) faults_.add(text, count, severity);
    }
    LaterFaults(const LaterFaults&) = delete;
    LaterFaults& operator=(const LaterFaults&) = delete;

    Faults& later() { return later_; }

  private:
    Faults& faults_;
    Faults later_;
};

}  // namespace

ExactNotes calculate_bodies(Workspace& workspace, const WantedChannels& channels, Faults& faults,
                            Pacer& pacer) {
    ExactNotes notes;
    LaterFaults gravity(faults);
    BodyMemory& memory = body_memory(workspace);
    for (int number = 1; number <= workspace.body_count; ++number) {
        ModelBody& body = workspace.body(number);
        const BodyJob job{workspace,
                          number,
                          body,
                          channels.mag && !body.mag_response_valid,
                          channels.grav && !body.grav_response_valid,
                          memory,
                          notes,
                          faults,
                          gravity.later(),
                          pacer};
        if (!job.mag && !job.grav) continue;
        calculate_body(job);
        mark_valid(workspace, job);
    }
    return notes;
}

}  // namespace anomalis::forward
