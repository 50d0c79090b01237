#include "core/brick.h"

#include <gtest/gtest.h>
#include <map>
#include <set>
#include <utility>

namespace anomalis {
namespace {

/// How often each directed edge is walked.
template <class Faces>
std::map<std::pair<int, int>, int> edges_of(const Faces& faces) {
    std::map<std::pair<int, int>, int> edges;
    for (const auto& face : faces)
        for (std::size_t i = 0; i < face.size(); ++i) ++edges[{face[i], face[(i + 1) % face.size()]}];
    return edges;
}

template <class Faces>
void expect_closed(const Faces& faces, std::size_t edge_count) {
    const auto edges = edges_of(faces);
    EXPECT_EQ(edges.size(), edge_count);
    for (const auto& [edge, count] : edges) {
        EXPECT_EQ(count, 1);
        EXPECT_TRUE(edges.contains({edge.second, edge.first})) << edge.first << " to " << edge.second;
    }
}

TEST(Brick, its_faces_close_a_solid_in_one_sense) {
    expect_closed(brick_faces, 24);
}

TEST(Brick, its_triangles_close_a_solid_in_one_sense) {
    expect_closed(brick_triangles, 36);
}

TEST(Brick, two_triangles_make_each_face) {
    for (std::size_t face = 0; face < brick_faces.size(); ++face) {
        std::set<int> corners(brick_triangles[2 * face].begin(), brick_triangles[2 * face].end());
        corners.insert(brick_triangles[2 * face + 1].begin(), brick_triangles[2 * face + 1].end());
        EXPECT_EQ(corners, std::set<int>(brick_faces[face].begin(), brick_faces[face].end()));
    }
}

}  // namespace
}  // namespace anomalis
