#include "forward/classic/prism_facets.h"

#include <algorithm>
#include <cmath>

#include "core/faults.h"
#include "forward/shape/prism.h"
#include "forward/station_columns.h"
#include "forward/station_stretches.h"

namespace anomalis::forward {

namespace {

constexpr double units_a_station = 500;
/// An edge that falls by less than this (m) counts as level where an observer moves away from it.
constexpr double level_fall = 0.1;

int edge_between(PrismFaces& prism, int& edges, int a, int b, double edge_length) {
    const int from = std::min(a, b);
    const int to = std::max(a, b);
    for (int k = 0; k < edges; ++k)
        if (prism.edge[k].from == from && prism.edge[k].to == to) return k;
    prism.edge[edges] = {from, to, edge_length};
    return edges++;
}

/// Edge i of a face, which runs `along`, and how observers move away from it.
void prepare_edge(PrismFaces::Face& flat, std::size_t i, const NedVector& along, const NedVector& normal,
                  bool magnetic) {
    const double size = length(along);
    if (size > 0) {
        const NedVector turned = cross_product(along, normal);
        flat.turned[i][0] = turned.north / size;
        flat.turned[i][1] = turned.east / size;
        flat.turned[i][2] = turned.down / size;
        if (magnetic || turned.down != 0) flat.logarithms |= 1U << flat.edge[i];
    }
    flat.level[i] = std::hypot(along.north, along.east);
    if (std::abs(along.down) < level_fall) {
        // North takes the east component and east the north: the step leads away from the edge.
        flat.step[i][0] = along.east / 10;
        flat.step[i][1] = along.north / 10;
    }
}

void add_channel(const StationView& stations, const PrismFaces& prism, const PrismSums& columns,
                 Pacer& pacer) {
    const auto add = prism_stations_at(vector::widest_vector_level());
    const double origin[3] = {stations.north[0], stations.east[0], stations.sensor[0]};
    const auto from = [](float* column, std::size_t at) { return column == nullptr ? nullptr : column + at; };
    for_stretches(stations.count, units_a_station, pacer, [&](std::size_t first, std::size_t count) {
        add(part_of(stations, first, count), origin, prism,
            {from(columns.north, first), from(columns.east, first), from(columns.down, first),
             from(columns.gravity, first)});
    });
}

}  // namespace

PrismFaces prism_faces_for_stations(const std::array<NedVector, 8>& all, const NedVector& magnetisation,
                                    bool needs_poles, bool magnetic) {
    PrismFaces prism{};
    int edges = 0;
    for (std::size_t c = 0; c < 8; ++c) {
        prism.corner[c][0] = all[c].north;
        prism.corner[c][1] = all[c].east;
        prism.corner[c][2] = all[c].down;
    }
    for (std::size_t f = 0; f < 6; ++f) {
        PrismFaces::Face& flat = prism.face[f];
        std::array<NedVector, 4> corners;
        for (std::size_t i = 0; i < 4; ++i) corners[i] = all[prism_faces[f][i]];
        const PlaneFace face = make_face(corners, magnetisation);
        flat.normal[0] = face.normal.north;
        flat.normal[1] = face.normal.east;
        flat.normal[2] = face.normal.down;
        flat.area = length(cross_product(corners[1] - corners[0], corners[3] - corners[0]));
        flat.pole = face.pole;
        flat.used = face.has_normal && !(needs_poles && std::abs(face.pole) < least_pole);
        for (std::size_t i = 0; i < 4; ++i) {
            const NedVector along = corners[(i + 1) % 4] - corners[i];
            flat.corner[i] = prism_faces[f][i];
            flat.edge[i] =
                edge_between(prism, edges, flat.corner[i], prism_faces[f][(i + 1) % 4], length(along));
            flat.edges |= 1U << flat.edge[i];
            prepare_edge(flat, i, along, face.normal, magnetic);
        }
    }
    return prism;
}

void add_prism_facets(const Workspace& workspace, ModelBody& body, const FacetWanted& wanted,
                      const NedVector& magnetisation, const std::array<NedVector, 8>& corners, Faults& faults,
                      Pacer& pacer) {
    report_failure(faults, "An error occurred calculating the facet response: ", [&] {
        const StationView stations = station_view(workspace);
        if (stations.count == 0) return;
        if (wanted.magnetic)
            add_channel(stations, prism_faces_for_stations(corners, magnetisation, true, true),
                        {response_column(workspace, body, 3), response_column(workspace, body, 4),
                         response_column(workspace, body, 5), nullptr},
                        pacer);
        if (wanted.gravity)
            add_channel(stations, prism_faces_for_stations(corners, magnetisation, wanted.magnetic, false),
                        {nullptr, nullptr, nullptr, response_column(workspace, body, 2)}, pacer);
    });
}

}  // namespace anomalis::forward
