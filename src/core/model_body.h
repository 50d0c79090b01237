#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/array.h"
#include "core/body_types.h"
#include "core/response_table.h"

namespace anomalis {

inline constexpr float unset = -99999.0F;

/// One parameter of a body. `min` and `max` are `unset` while there is no limit.
struct BodyParam {
    float value = 0;
    float vary = 0;  ///< 1 lets the inversion change the parameter, 0 holds it
    float min = unset;
    float max = unset;

    bool operator==(const BodyParam&) const = default;
};

struct Point3 {
    double x = 0;
    double y = 0;
    double z = 0;
    bool operator==(const Point3&) const = default;
};

/// The triangulated solid of a pipe, with what it was made from so that it is remade only when needed.
struct BodySolid {
    std::vector<Point3> points;                       ///< in the solid's own axes, m
    std::vector<std::array<std::int32_t, 3>> facets;  ///< zero-based point triples
    std::vector<Point3> transformed_points;           ///< east, north, up in survey coordinates, m

    struct Shape {
        float length = 0, width = 0, shell_thickness = 0, end_thickness = 0, max_triangle_size = 0;
        std::int32_t sectors = 0, segments = 0;
        bool operator==(const Shape&) const = default;
    } shape;
    struct Placement {
        float dip = 0, strike = 0, plunge = 0;
        Point3 origin;
        bool operator==(const Placement&) const = default;
    } placement;

    /// Demagnetising factors of the shape (SI) along its axis and across it; not known for a new shape.
    struct Demagnetisation {
        bool known = false;
        double along = 0, across = 0;
    } demagnetisation;
};

/// The demagnetising tensor of a body's shape with the numbers that it was found from.
struct ShapeTensor {
    bool known = false;
    std::array<double, 8> shape{};
    std::array<double, 6> tensor{};  ///< xx, xy, xz, yy, yz, zz: across strike, along it, up
};

/// Stations straight over a corner of a sheet's section, where its gravity has lost edges, and the section as
/// it stood then: the same is told once.
struct LostEdges {
    std::array<double, 10> section{};  ///< corners, direction and place
    std::uint64_t stations = 0;        ///< a number for those stations and their edges; 0: none
    bool operator==(const LostEdges&) const = default;
};

/// The values of a body that its responses hang on, in the order of their tables.
using BodyInputs = std::array<double, 23>;

/// One geological body. Units: m, degrees, micro SI, g/cc; `top` on the axis of the sensor elevation, up
/// positive; angles clockwise from north.
struct ModelBody {
    std::int32_t type = 0;
    double east = 0;   ///< map position of the reference point, m
    double north = 0;  ///< m
    float top_elevation = 0;
    std::int32_t colour = 0xFF0000;  ///< blue, green, red bytes, high to low
    std::string name;
    std::string description;
    std::string rock_type;
    std::int32_t include_demagnetisation = 0;
    std::int32_t vary = 1;        ///< 0 when the user fixes the whole body
    std::int32_t turned_off = 0;  ///< 1 leaves the body out of the model
    BodyParam distance;
    BodyParam top;
    BodyParam strike;
    BodyParam dip;
    BodyParam plunge;
    BodyParam slope;
    BodyParam width;
    BodyParam depth_extent;
    BodyParam length;
    BodyParam offset;
    BodyParam susc;   ///< micro SI; a wire's current in mA
    BodyParam rem_q;  ///< Koenigsberger ratio
    BodyParam rem_d;
    BodyParam rem_i;
    BodyParam density;  ///< g/cc
    float end_width_a = 0;
    float end_width_b = 0;
    float shell_thickness = 0;
    float end_thickness = 0;
    std::int32_t num_sectors = 12;
    std::int32_t num_segments = 1;
    float max_triangle_size = 0;
    BodySolid solid;
    ShapeTensor demagnetisation;  ///< of the exact formulas; kept while the shape stays

    LostEdges told_edges;  ///< the last that was told

    // Derived by the field coefficients, never saved.
    float cos_dip = 0, sin_dip = 0, cos_strike = 0, sin_strike = 0;
    float last_calculated = -1.0F;  ///< signed magnetisation; -1 until it was calculated
    float field_north = 0, field_east = 0, field_down = 0;
    float mag_north = 0, mag_east = 0, mag_down = 0;
    float coef_a = 0, coef_b = 0, coef_c = 0;
    float moment_x = 0, moment_y = 0, moment_z = 0;

    // What was calculated, and from what: kept by `model/stale.h`.
    bool mag_response_valid = false;
    bool grav_response_valid = false;
    std::uint64_t mag_calculation = 0;  ///< every calculation of a response has a number of its own
    std::uint64_t grav_calculation = 0;
    std::optional<BodyInputs> known_inputs;
    ResponseTable response;
};

}  // namespace anomalis
