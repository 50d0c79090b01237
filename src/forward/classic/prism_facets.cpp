#include "forward/classic/prism_facets.h"

#include <algorithm>
#include <cmath>

#include "core/faults.h"
#include "forward/shape/prism.h"
#include "forward/shape/prism_kernel.h"
#include "forward/station_columns.h"

namespace anomalis::forward {

namespace {

constexpr std::size_t stretch = 256;
constexpr double units_a_station = 500;

/// Null for those that are not wanted.
struct Columns {
    float *gravity, *north, *east, *down;
};

Columns wanted_columns(const Workspace& workspace, ModelBody& body, const FacetWanted& wanted) {
    const auto column = [&](bool is_wanted, int number) {
        return is_wanted ? response_column(workspace, body, number) : nullptr;
    };
    return {column(wanted.gravity, 2), column(wanted.magnetic, 3), column(wanted.magnetic, 4),
            column(wanted.magnetic, 5)};
}

/// The six faces twice: flat for the loop over stations, and as the single face's routine takes them.
class Prism {
  public:
    Prism(const std::array<NedVector, 8>& corners, const NedVector& magnetisation, bool needs_pole) {
        for (std::size_t c = 0; c < 8; ++c) {
            flat_.corner[c][0] = corners[c].north;
            flat_.corner[c][1] = corners[c].east;
            flat_.corner[c][2] = corners[c].down;
        }
        for (std::size_t f = 0; f < 6; ++f) prepare_face(f, corners, magnetisation, needs_pole);
    }

    const PrismFaces& flat() const { return flat_; }
    const PlaneFace& face(std::size_t f) const { return faces_[f]; }

  private:
    void prepare_face(std::size_t f, const std::array<NedVector, 8>& corners, const NedVector& magnetisation,
                      bool needs_pole) {
        PrismFaces::Face& flat = flat_.face[f];
        for (std::size_t i = 0; i < 4; ++i) face_corners_[f][i] = corners[prism_faces[f][i]];
        const PlaneFace& face = faces_[f] = make_face(face_corners_[f], magnetisation);
        for (std::size_t i = 0; i < 4; ++i) {
            const int from = prism_faces[f][i];
            const int to = prism_faces[f][(i + 1) % 4];
            const NedVector along = face_corners_[f][(i + 1) % 4] - face_corners_[f][i];
            flat.corner[i] = from;
            flat.edge[i] = edge_between(from, to, length(along));
            flat.along[i][0] = along.north;
            flat.along[i][1] = along.east;
            flat.along[i][2] = along.down;
        }
        flat.normal[0] = face.normal.north;
        flat.normal[1] = face.normal.east;
        flat.normal[2] = face.normal.down;
        flat.area = length(cross_product(face_corners_[f][1] - face_corners_[f][0],
                                         face_corners_[f][3] - face_corners_[f][0]));
        flat.pole = face.pole;
        flat.used = face.has_normal && !(needs_pole && std::abs(face.pole) < least_pole);
    }

    int edge_between(int a, int b, double edge_length) {
        const int from = std::min(a, b);
        const int to = std::max(a, b);
        for (int k = 0; k < edges_; ++k)
            if (flat_.edge[k].from == from && flat_.edge[k].to == to) return k;
        flat_.edge[edges_] = {from, to, edge_length};
        return edges_++;
    }

    PrismFaces flat_{};
    int edges_ = 0;
    std::array<std::array<NedVector, 4>, 6> face_corners_;
    std::array<PlaneFace, 6> faces_;
};

/// The faces that the loop left out at one station.
void add_close_faces(const Prism& prism, unsigned close, const NedVector& observer, PrismSums& at) {
    for (std::size_t f = 0; f < 6; ++f) {
        if ((close >> f & 1U) == 0) continue;
        const PlaneFace& face = prism.face(f);
        const FacetTerms terms = facet_terms(face, observer);
        *at.north += terms.field.north * face.pole;
        *at.east += terms.field.east * face.pole;
        *at.down += terms.field.down * face.pole;
        *at.gravity -= terms.field.down * terms.distance;
    }
}

void add_stretch(const Prism& prism, const StationView& part, const NedVector& first_station,
                 const FacetWanted& wanted, const Columns& columns, std::size_t first) {
    std::array<double, stretch> north, east, down, gravity, close;
    const double origin[3] = {first_station.north, first_station.east, first_station.down};
    prism_stations_at(vector::widest_vector_level())(
        part, origin, prism.flat(), near_edge,
        {north.data(), east.data(), down.data(), gravity.data(), close.data()});
    const auto add = [](float& to, double value) { to = static_cast<float>(to + value); };
    for (std::size_t i = 0; i < part.count; ++i) {
        if (close[i] != 0) {
            PrismSums at{&north[i], &east[i], &down[i], &gravity[i], nullptr};
            add_close_faces(
                prism, static_cast<unsigned>(close[i]),
                {part.north[i] - origin[0], part.east[i] - origin[1], -(part.sensor[i] - origin[2])}, at);
        }
        if (wanted.magnetic) {
            add(columns.north[first + i], north[i]);
            add(columns.east[first + i], east[i]);
            add(columns.down[first + i], down[i]);
        }
        if (wanted.gravity) add(columns.gravity[first + i], gravity[i]);
    }
}

}  // namespace

void add_prism_facets(const Workspace& workspace, ModelBody& body, const FacetWanted& wanted,
                      const NedVector& magnetisation, const std::array<NedVector, 8>& corners, Faults& faults,
                      Pacer& pacer) {
    report_failure(faults, "An error occurred calculating the facet response: ", [&] {
        const StationView stations = station_view(workspace);
        if (stations.count == 0) return;
        const Prism prism(corners, magnetisation, wanted.magnetic);
        const NedVector first_station{stations.north[0], stations.east[0], stations.sensor[0]};
        const Columns columns = wanted_columns(workspace, body, wanted);
        for (std::size_t at = 0; at < stations.count; at += stretch) {
            const StationView part{stations.east + at, stations.north + at, stations.sensor + at,
                                   std::min(stretch, stations.count - at)};
            add_stretch(prism, part, first_station, wanted, columns, at);
            pacer.done(units_a_station * static_cast<double>(part.count));
        }
    });
}

}  // namespace anomalis::forward
