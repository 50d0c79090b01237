#include <atomic>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "core/pacer.h"
#include "core/shared_pieces.h"
#include "core/threads.h"
#include "forward/polyhedron/polyhedron_asking.h"
#include "forward/polyhedron/polyhedron_shapes.h"

// The same numbers whatever the vectors and the threads, call after call.

namespace anomalis::forward {
namespace {

using namespace shapes;

const Point3 magnetisation{120, -340, 250};
const Point3 direction{-0.03, 0.42, -0.907};

/// Stations near and far, some on the surface of the body below.
Stations mixed_stations(int count) {
    std::mt19937_64 random(5);
    std::uniform_real_distribution<double> at(-1, 1);
    Stations stations;
    for (int i = 0; i < count; ++i) {
        const double reach = i % 5 == 0 ? 1e5 : 300;
        stations.add({reach * at(random), reach * at(random), i % 3 == 0 ? -20.0 : 40 * at(random)});
    }
    for (int i = 0; i < 12; ++i) stations.add({50 * std::cos(0.5 * i), 50 * std::sin(0.5 * i), -20});
    stations.add({50, 0, -20});
    stations.add({0, 0, -20});
    return stations;
}

struct Everything {
    std::vector<double> field, gravity, both_field, both_gravity, columns;
    bool operator==(const Everything&) const = default;
};

Everything everything(Polyhedron& body, const Stations& at, const Execution& how) {
    Everything all;
    all.field = total_fields(body, at, magnetisation, direction, how);
    all.gravity = gravities(body, at, 2.67, how);
    all.both_field.resize(at.size());
    all.both_gravity.resize(at.size());
    body.total_field_and_gravity(at.spans(), magnetisation, direction, 2.67, all.both_field, all.both_gravity,
                                 how);
    for (const Point3& v : magnetic_fields(body, at, magnetisation, how))
        all.columns.insert(all.columns.end(), {v.x, v.y, v.z});
    for (const Tensor3& t : gradients(body, at, 2.67, how))
        all.columns.insert(all.columns.end(), {t.xx, t.xy, t.xz, t.yy, t.yz, t.zz});
    return all;
}

/// A sloping sheet, and stations about it: far, inside, on it and a little beside its corners, edges and
/// faces.
const Solid sloping_sheet = slanted_solid({-20, -150, -40}, {{{60, 0, 5}, {0, 320, -30}, {80, 0, -200}}});

Stations stations_about_the_sheet() {
    Stations at = mixed_stations(101);
    const std::vector<Point3>& corner = sloping_sheet.points;
    for (const double off : {0.0, 1e-9, 1e-5, 0.03, 2.0})
        for (std::size_t a = 0; a < corner.size(); ++a)
            for (std::size_t b = 0; b <= a; ++b)
                at.add({(corner[a].x + corner[b].x) / 2 + off, (corner[a].y + corner[b].y) / 2 - off,
                        (corner[a].z + corner[b].z) / 2 + 0.7 * off});
    return at;
}

TEST(PolyhedronExecution, a_prism_has_the_same_bits_at_every_vector_level_and_in_any_company) {
    Polyhedron body = polyhedron_of(sloping_sheet);
    const Stations at = stations_about_the_sheet();
    const Everything want = everything(body, at, {vector::VectorLevel::baseline, 1});
    for (double value : want.columns) ASSERT_TRUE(std::isfinite(value));
    for (vector::VectorLevel level : {vector::VectorLevel::avx2, vector::VectorLevel::avx512})
        EXPECT_TRUE(everything(body, at, {level, 1}) == want) << vector::vector_level_name(level);
    for (std::size_t i = 0; i < at.size(); i += 7) {
        const Stations alone = stations_at({{at.east[i], at.north[i], at.up[i]}});
        EXPECT_EQ(total_fields(body, alone, magnetisation, direction)[0], want.field[i]) << i;
    }
}

TEST(PolyhedronExecution, of_a_prism_both_channels_at_once_are_those_asked_for_apart) {
    Polyhedron body = polyhedron_of(sloping_sheet);
    const Stations at = stations_about_the_sheet();
    const Everything all = everything(body, at, {});
    for (std::size_t i = 0; i < at.size(); ++i) {
        EXPECT_EQ(all.gravity[i], all.both_gravity[i]);
        EXPECT_EQ(all.field[i], all.both_field[i]);
    }
}

TEST(PolyhedronExecution, every_vector_level_gives_the_same_bits) {
    Polyhedron body = polyhedron_of(pipe_solid({0, 0, -20}, 50, 200, 12, 3));
    const Stations at = mixed_stations(300);
    const Everything want = everything(body, at, {vector::VectorLevel::baseline, 1});
    for (double value : want.columns) ASSERT_TRUE(std::isfinite(value));
    for (vector::VectorLevel level : {vector::VectorLevel::avx2, vector::VectorLevel::avx512})
        EXPECT_TRUE(everything(body, at, {level, 1}) == want) << vector::vector_level_name(level);
}

TEST(PolyhedronExecution, every_number_of_threads_gives_the_same_bits) {
    Polyhedron body = polyhedron_of(sphere_solid({0, 0, -100}, 80, 2));
    const Stations at = mixed_stations(1500);
    const Everything want = everything(body, at, {vector::widest_vector_level(), 1});
    for (int threads : {2, 3, 8, 0, 1000})
        EXPECT_TRUE(everything(body, at, {vector::widest_vector_level(), threads}) == want) << threads;
}

TEST(PolyhedronExecution, the_company_of_a_station_does_not_change_its_value) {
    Polyhedron body = polyhedron_of(pipe_solid({0, 0, -20}, 50, 200, 12, 1));
    const Stations at = mixed_stations(100);
    const auto together = total_fields(body, at, magnetisation, direction);
    for (std::size_t i = 0; i < at.size(); ++i) {
        const Stations alone = stations_at({{at.east[i], at.north[i], at.up[i]}});
        EXPECT_EQ(total_fields(body, alone, magnetisation, direction)[0], together[i]) << i;
    }
}

TEST(PolyhedronExecution, a_mesh_of_several_parts_is_the_sum_of_its_surfaces) {
    const Solid ball = sphere_solid({0, 0, -100}, 80, 5);
    const std::span<const Facet> facets = ball.facets;
    ASSERT_EQ(facets.size(), 8192U);
    Polyhedron whole = polyhedron_of(ball);
    Polyhedron pieces[3] = {Polyhedron(ball.points, facets.first(1000)),
                            Polyhedron(ball.points, facets.subspan(1000, 3500)),
                            Polyhedron(ball.points, facets.subspan(4500))};
    const Stations at = stations_at({{0, 0, 0}, {90, -40, -15}, {-500, 200, 30}, {10, 5, -90}, {1, 2, -19}});
    const Everything all = everything(whole, at, {});
    for (std::size_t i = 0; i < at.size(); ++i) {
        double gravity = 0, field = 0;
        for (Polyhedron& piece : pieces) {
            const Everything part = everything(piece, at, {});
            gravity += part.gravity[i];
            field += part.field[i];
        }
        EXPECT_NEAR(gravity, all.gravity[i], 1e-11) << i;
        EXPECT_NEAR(field, all.field[i], 1e-9) << i;
    }
    for (vector::VectorLevel level : {vector::VectorLevel::baseline, vector::VectorLevel::avx2})
        EXPECT_TRUE(everything(whole, at, {level, 2}) == all) << vector::vector_level_name(level);
}

TEST(PolyhedronExecution, a_body_may_be_asked_again_and_take_another_shape) {
    const Solid pipe = pipe_solid({0, 0, -20}, 50, 200, 12, 1), ball = sphere_solid({0, 0, -100}, 80, 2);
    const Stations at = mixed_stations(200);
    Polyhedron fresh_pipe = polyhedron_of(pipe), fresh_ball = polyhedron_of(ball);
    const Everything of_pipe = everything(fresh_pipe, at, {}), of_ball = everything(fresh_ball, at, {});
    Polyhedron body = polyhedron_of(pipe);
    EXPECT_TRUE(everything(body, at, {}) == of_pipe);
    EXPECT_TRUE(everything(body, at, {}) == of_pipe);
    body.assign(ball.points, ball.facets);
    EXPECT_TRUE(everything(body, at, {}) == of_ball);
    body.assign({}, {});
    EXPECT_EQ(gravity_at(body, {0, 0, 0}), 0);
    body.assign(pipe.points, pipe.facets);
    EXPECT_TRUE(everything(body, at, {}) == of_pipe);
    Polyhedron moved = std::move(body);
    EXPECT_TRUE(everything(moved, at, {}) == of_pipe);
}

TEST(SharedPieces, every_block_is_done_once) {
    for (int workers : {1, 2, 7}) {
        std::vector<std::atomic<int>> done(100);
        std::atomic<bool> in_range = true;
        for_each_piece(done.size(), workers, no_pace(), [&](PieceWorker& worker, std::size_t block) {
            if (worker.number() < 0 || worker.number() >= workers) in_range = false;
            ++done[block];
        });
        for (const auto& count : done) EXPECT_EQ(count.load(), 1);
        EXPECT_TRUE(in_range);
    }
    for_each_piece(0, 3, no_pace(), [](PieceWorker&, std::size_t) { FAIL(); });
}

TEST(SharedPieces, a_short_job_stays_on_its_thread) {
    EXPECT_EQ(worker_count(4e5, 1000, 0), 1);
    EXPECT_GE(worker_count(1e9, 1000, 0), 1);
    EXPECT_EQ(worker_count(1e9, 1, 0), 1);
    EXPECT_EQ(worker_count(1, 1000, 4), 4);
    EXPECT_EQ(worker_count(1, 3, 4), 3);
    EXPECT_EQ(worker_count(1, 0, 4), 1);
    EXPECT_EQ(worker_count(std::nan(""), 1000, 0), 1);
    limit_threads(3);
    EXPECT_EQ(worker_count(1e9, 1000, 0), 3);
    limit_threads(0);
}

}  // namespace
}  // namespace anomalis::forward
