// A calculation tells of its work in small pieces, and can be left at each of them.

#include <gtest/gtest.h>
#include <thread>

#include "core/shared_pieces.h"
#include "core/threads.h"
#include "forward/body_price.h"
#include "forward/line.h"
#include "forward/polyhedron/polyhedron_shapes.h"
#include "support/step_pacer.h"

namespace anomalis::forward {
namespace {

/// A turn for models that are small enough for a test, and the largest piece of work that is done without a
/// word with the pacer: some milliseconds.
constexpr double short_turn = 2e5;
constexpr double largest_piece = 4.5e6;

struct Model {
    const char* name;
    int stations;
    BodyType type;
    float length;
    std::int32_t sectors, segments;
    Formulas formulas = Formulas::classic;
    std::int32_t demagnetise = 0;
};

/// A machine with one core while it lives: the share of a second thread is nobody's to tell.
struct OneCore {
    OneCore() { limit_threads(1); }
    ~OneCore() { limit_threads(0); }
    OneCore(const OneCore&) = delete;
    OneCore& operator=(const OneCore&) = delete;
};

/// Models whose bodies take several turns.
const Model long_models[] = {
    {"a pipe of many sectors", 101, pipe, 250, 300, 1},
    {"an exact pipe", 101, pipe, 250, 300, 1, Formulas::exact},
    {"an endless exact pipe", 201, pipe, 0, 1000, 1, Formulas::exact},
    {"a prism by its faces", 3001, thick_sheet, 250, 12, 1, Formulas::classic, -1},
    {"an exact column", 20001, thick_sheet, 250, 12, 1, Formulas::exact},
};

void fill_line(Line& line, const Model& model) {
    line.workspace.formulas = model.formulas;
    ModelBody& body = line.add(model.type, 303, 70);
    body.length.value = model.length;
    body.num_sectors = model.sectors;
    body.num_segments = model.segments;
    body.include_demagnetisation = model.demagnetise;
    if (model.type == thick_sheet && model.formulas == Formulas::exact) body.depth_extent.value = 0;
}

void run(Line& line, Pacer& pacer) {
    calculate_model(line.workspace, line.workspace.mag.data, line.workspace.grav.data, line.faults, pacer);
}

TEST(Pacing, no_model_works_longer_than_a_blink_between_two_turns) {
    const OneCore machine;
    for (const Model& model : long_models) {
        Line line(model.stations);
        fill_line(line, model);
        const double ahead = work_ahead(line.workspace);
        StepPacer pacer(0, short_turn);
        run(line, pacer);
        EXPECT_GE(pacer.turns, 2) << model.name;
        EXPECT_LE(pacer.longest, largest_piece) << model.name;
        // What is told must be the work that there is, or a stop would wait for the rest.
        EXPECT_GT(pacer.units, 0.3 * ahead) << model.name;
        EXPECT_TRUE(line.faults.empty()) << model.name;
    }
}

TEST(Pacing, turns_change_no_bit) {
    for (const Model& model : long_models) {
        Line paced(model.stations), unpaced(model.stations);
        fill_line(paced, model);
        fill_line(unpaced, model);
        StepPacer pacer(0, short_turn);
        run(paced, pacer);
        run(unpaced, no_pace());
        EXPECT_EQ(paced.workspace.mag.data, unpaced.workspace.mag.data) << model.name;
        EXPECT_EQ(paced.workspace.grav.data, unpaced.workspace.grav.data) << model.name;
    }
}

TEST(Pacing, a_calculation_that_is_left_keeps_the_curves_and_is_finished_by_the_next) {
    const OneCore machine;
    for (const Model& model : long_models) {
        Line line(model.stations);
        line.add(thin_sheet, 100, 70);
        line.workspace.formulas = model.formulas;
        line.calculate();
        const ChannelTable mag = line.workspace.mag.data, grav = line.workspace.grav.data;
        fill_line(line, model);
        for (const int leave_at : {1, 2}) {
            StepPacer pacer(leave_at, short_turn);
            EXPECT_THROW(run(line, pacer), Stopped) << model.name;
            EXPECT_EQ(pacer.turns, leave_at) << model.name << ": not a turn more";
            EXPECT_EQ(line.workspace.mag.data, mag) << model.name;
            EXPECT_EQ(line.workspace.grav.data, grav) << model.name;
            EXPECT_FALSE(line.body(2).mag_response_valid && line.body(2).grav_response_valid) << model.name;
            EXPECT_TRUE(line.faults.empty()) << "a stop is no failure";
        }
        line.calculate();
        Line fresh(model.stations);
        fresh.add(thin_sheet, 100, 70);
        fill_line(fresh, model);
        fresh.calculate();
        EXPECT_EQ(line.workspace.mag.data, fresh.workspace.mag.data) << model.name;
        EXPECT_EQ(line.workspace.grav.data, fresh.workspace.grav.data) << model.name;
    }
}

TEST(Pacing, the_work_of_a_demagnetised_hollow_pipe_grows_with_its_segments_and_not_with_their_square) {
    const auto work = [](std::int32_t segments) {
        Line line(31);
        ModelBody& body = line.add(pipe, 153, 70);
        body.num_segments = segments;
        body.shell_thickness = 5;
        body.include_demagnetisation = 1;
        line.workspace.definition.grav_column = 0;
        struct : Pacer {
            double units = 0;
            void done(double more) override { units += more; }
        } pacer;
        run(line, pacer);
        return pacer.units;
    };
    const double few = work(64), many = work(128), most = work(512);
    EXPECT_NEAR((most - many) / (many - few), 6, 0.1) << few << " " << many << " " << most;
}

TEST(Pacing, every_thread_leaves_its_block) {
    struct Leaving : Pacer {
        void done(double) override { throw Stopped{}; }
    } pacer;
    for (const int threads : {1, 2, 4}) {
        std::atomic<int> begun = 0, ended = 0;
        EXPECT_THROW(for_each_piece(1000, threads, pacer,
                                    [&](PieceWorker& worker, std::size_t) {
                                        ++begun;
                                        while (worker.goes_on(1)) std::this_thread::yield();
                                        ++ended;
                                    }),
                     Stopped);
        EXPECT_LE(begun, threads) << "a block each at most";
        EXPECT_GE(ended, begun - 1) << "and only the caller's was cut by the stop itself";
    }
}

TEST(Pacing, on_any_number_of_threads_changes_no_bit) {
    Polyhedron body = shapes::polyhedron_of(shapes::sphere_solid({0, 0, -100}, 80, 3));
    std::vector<double> east(2000), zero(2000), alone(2000), values(2000);
    for (std::size_t i = 0; i < east.size(); ++i) east[i] = static_cast<double>(i) / 100;
    body.gravity({east, zero, zero}, 1, alone, {.threads = 1});
    for (const int threads : {1, 2, 4}) {
        StepPacer pacer(0, short_turn);
        body.gravity({east, zero, zero}, 1, values, {.threads = threads, .pacer = &pacer});
        EXPECT_EQ(values, alone);
    }
    StepPacer leaving(1, short_turn);
    EXPECT_THROW(body.gravity({east, zero, zero}, 1, values, {.threads = 1, .pacer = &leaving}), Stopped);
}

TEST(Pacing, whoever_waits_for_the_last_block_of_a_helper_is_served) {
    struct Waiting : Pacer {
        std::atomic<bool>& released;
        int calls = 0;
        explicit Waiting(std::atomic<bool>& flag) : released(flag) {}
        void done(double) override {}
        void waiting() override {
            if (++calls == 3) released = true;
        }
    };
    std::atomic<bool> released = false;
    std::atomic<int> helped = 0;
    Waiting pacer(released);
    // The caller's blocks are done at once; a helper holds its own until the caller was served three times.
    for_each_piece(64, 2, pacer, [&](PieceWorker& worker, std::size_t) {
        if (worker.number() == 0) {
            while (helped == 0) std::this_thread::yield();
            return;
        }
        ++helped;
        while (!released) std::this_thread::yield();
    });
    EXPECT_GE(pacer.calls, 3);
}

TEST(Pacing, a_mesh_whose_building_was_left_is_empty) {
    struct Leaving : Pacer {
        void done(double) override { throw Stopped{}; }
    } pacer;
    const auto solid = shapes::sphere_solid({0, 0, -100}, 80, 2);
    Polyhedron body;
    EXPECT_THROW(body.assign(solid.points, solid.facets, &pacer), Stopped);
    EXPECT_EQ(body.facet_count(), 0U);
    body.assign(solid.points, solid.facets);
    EXPECT_EQ(body.facet_count(), solid.facets.size());
}

}  // namespace
}  // namespace anomalis::forward
