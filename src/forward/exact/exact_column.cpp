#include "forward/exact/exact_column.h"

#include <algorithm>
#include <cmath>

#include "forward/exact/column_kernel.h"
#include "forward/exact/plane_kernel.h"
#include "forward/gravity_constant.h"
#include "forward/polyhedron/vector3.h"

namespace anomalis::forward {

namespace {

Point3 unit(const Point3& v) {
    return v * (1 / length(v));
}

/// `v` or its opposite, whichever points the way of `away`.
Point3 facing(const Point3& v, const Point3& away) {
    return dot(v, away) < 0 ? v * -1 : v;
}

void store(const Point3& from, double* to) {
    to[0] = from.x;
    to[1] = from.y;
    to[2] = from.z;
}

void add(const Point3& from, double factor, double* to) {
    to[0] += from.x * factor;
    to[1] += from.y * factor;
    to[2] += from.z * factor;
}

/// A face with its outward normal; the edges that bound it and their normals within the face, outward too.
struct ColumnFace {
    Point3 normal;
    int edges[4];
    Point3 edge_normal[4];
    int count = 0;

    void bound(int edge, const Point3& along, const Point3& away) {
        edges[count] = edge;
        edge_normal[count++] = facing(unit(cross(along, normal)), away);
    }
};

struct Column {
    ColumnBody body{};
    ColumnFace faces[5];
};

void add_top(const Point3* corner, const Point3& middle, const Point3& along, Column& column) {
    ColumnFace& top = column.faces[0];
    const Point3 spanned = cross(corner[1] - corner[0], corner[3] - corner[0]);
    column.body.spread[0] = length(spanned);
    top.normal = facing(unit(spanned), along * -1);
    for (int k = 0; k < 4; ++k) {
        const Point3 edge = corner[(k + 1) % 4] - corner[k];
        top.bound(k, edge, corner[k] + edge * 0.5 - middle);
    }
}

void add_wall(int k, const Point3* corner, const Point3& middle, const Point3& along, Column& column) {
    ColumnFace& wall = column.faces[1 + k];
    const Point3 edge = corner[(k + 1) % 4] - corner[k];
    const Point3 spanned = cross(edge, along);
    column.body.spread[1 + k] = length(spanned);
    column.body.edge_length[k] = length(edge);
    wall.normal = facing(unit(spanned), corner[k] + edge * 0.5 - middle);
    wall.bound(k, edge, along * -1);
    wall.bound(4 + k, along, edge * -1);
    wall.bound(4 + (k + 1) % 4, along, edge);
}

Column column_of(const SheetShape& sheet) {
    Point3 corner[4] = {{0, sheet.near_end, 0},
                        {sheet.width, sheet.near_end, sheet.rise},
                        {sheet.width, sheet.far_end, sheet.rise},
                        {0, sheet.far_end, 0}};
    for (Point3& at : corner) at.z -= at.y * sheet.plunge;
    const Point3 middle = (corner[0] + corner[2]) * 0.5;
    const Point3 along = unit({sheet.cotangent, 0, -1});
    Column column;
    add_top(corner, middle, along, column);
    for (int k = 0; k < 4; ++k) {
        store(corner[k], column.body.corner[k]);
        add_wall(k, corner, middle, along, column);
    }
    store(along, column.body.along);
    for (int f = 0; f < 5; ++f) store(column.faces[f].normal, column.body.normal[f]);
    return column;
}

void run(const ExactPlace& place, const ColumnBody& body, std::span<double> values) {
    column_stations_at(vector::widest_vector_level())(place.stations, place.frame, body, values.data());
}

}  // namespace

void fill_column_anomaly(const ExactPlace& place, const SheetShape& sheet, const ExactField& field,
                         std::span<double> values) {
    Column column = column_of(sheet);
    ColumnBody& body = column.body;
    body.least_squared = least_corner_distance * least_corner_distance;
    for (int f = 0; f < 5; ++f) {
        const ColumnFace& face = column.faces[f];
        const double poles = dot(field.magnetisation, face.normal);
        body.face_constant[f] = poles * dot(face.normal, field.direction);
        for (int e = 0; e < face.count; ++e)
            body.edge_constant[face.edges[e]] += poles * dot(face.edge_normal[e], field.direction);
    }
    run(place, body, values);
}

void fill_column_gravity(const ExactPlace& place, const SheetShape& sheet, double density,
                         std::span<double> values) {
    Column column = column_of(sheet);
    ColumnBody& body = column.body;
    body.gradients = true;
    body.least_squared = 1e-24;
    for (int f = 0; f < 5; ++f) {
        const ColumnFace& face = column.faces[f];
        const double factor = gravity_constant * density * face.normal.z;
        add(face.normal, factor, body.face_gradient[f]);
        for (int e = 0; e < face.count; ++e)
            add(face.edge_normal[e], factor, body.edge_gradient[face.edges[e]]);
    }
    run(place, body, values);
}

}  // namespace anomalis::forward
