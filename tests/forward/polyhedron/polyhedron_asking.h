#pragma once

#include <vector>

#include "forward/polyhedron/polyhedron.h"

// Asking a polyhedron for its field at one place, or at a list of places.

namespace anomalis::forward::shapes {

struct Stations {
    std::vector<double> east, north, up;

    void add(const Point3& place) {
        east.push_back(place.x);
        north.push_back(place.y);
        up.push_back(place.z);
    }
    std::size_t size() const { return east.size(); }
    StationSpans spans() const { return {east, north, up}; }
};

inline Stations stations_at(const std::vector<Point3>& places) {
    Stations stations;
    for (const Point3& place : places) stations.add(place);
    return stations;
}

inline std::vector<double> total_fields(Polyhedron& body, const Stations& at, const Point3& magnetisation,
                                        const Point3& direction, const Execution& how = {}) {
    std::vector<double> result(at.size());
    body.total_field(at.spans(), magnetisation, direction, result, how);
    return result;
}

inline std::vector<double> gravities(Polyhedron& body, const Stations& at, double density = 1,
                                     const Execution& how = {}) {
    std::vector<double> result(at.size());
    body.gravity(at.spans(), density, result, how);
    return result;
}

inline std::vector<Tensor3> gradients(Polyhedron& body, const Stations& at, double density = 1,
                                      const Execution& how = {}) {
    std::vector<double> column[6];
    for (auto& values : column) values.resize(at.size());
    body.gravity_gradient(at.spans(), density,
                          {column[0], column[1], column[2], column[3], column[4], column[5]}, how);
    std::vector<Tensor3> result;
    for (std::size_t i = 0; i < at.size(); ++i)
        result.push_back(
            {column[0][i], column[1][i], column[2][i], column[3][i], column[4][i], column[5][i]});
    return result;
}

inline std::vector<Point3> magnetic_fields(Polyhedron& body, const Stations& at, const Point3& magnetisation,
                                           const Execution& how = {}) {
    std::vector<double> east(at.size()), north(at.size()), up(at.size());
    body.magnetic_components(at.spans(), magnetisation, east, north, up, how);
    std::vector<Point3> result;
    for (std::size_t i = 0; i < at.size(); ++i) result.push_back({east[i], north[i], up[i]});
    return result;
}

inline double gravity_at(Polyhedron& body, const Point3& place, double density = 1) {
    return gravities(body, stations_at({place}), density)[0];
}

/// The second derivatives of the integral of 1 / r, without gravitation or density.
inline Tensor3 tensor_at(Polyhedron& body, const Point3& place) {
    return gradients(body, stations_at({place}), 1 / gravity_constant)[0];
}

}  // namespace anomalis::forward::shapes
