#pragma once

#include <string>

#include "core/point_transform.h"

namespace anomalis {
class Prompts;
}  // namespace anomalis

// The plane transform from a local grid to map coordinates, with a linear change of elevation.
namespace anomalis::transform {

/// The identity, inactive.
void reset_transform(PointTransform& transform);

/// Brings cosine, sine and `active` up to date; a scale of 0 becomes 1. A rotation that rounds to a multiple
/// of 360 whole degrees counts as none, though it applies when anything else makes the record active.
void update_transform(PointTransform& transform);

/// Changes a point in place: old to new, or new to old for direction -1. Does nothing while a plane scale is
/// not above 0. The elevation step is the same in both directions; a missing z stays.
/// Does not ask `active`.
void apply_transform(const PointTransform& transform, int direction, double& x, double& y, double& z);

/// Two points known in both systems, and the elevation change.
struct TransformPoints {
    double original_x1 = 0, original_y1 = 0, new_x1 = 0, new_y1 = 0;
    double original_x2 = 0, original_y2 = 0, new_x2 = 0, new_y2 = 0;
    double elevation_shift = 0, elevation_scale = 0;
};

/// Defines the record by two point pairs: rotation and one scale. Returns 0, or -1 when either pair is less
/// than 0.0001 apart (the record then stays). The caller runs `update_transform`.
int define_transform_from_points(const TransformPoints& points, PointTransform& transform, Prompts& prompts);

/// Makes the record that leads back. `tab` 0: defined by origin, scales and rotation; 1: by two points, whose
/// rotation and scales the next validation forms again.
void invert_transform(int tab, PointTransform& transform);

/// Reads a coordinate file (.crd). Returns 0, or -1 with a message; the record then stays.
int load_transform_file(PointTransform& transform, const std::string& path, Prompts& prompts);

/// Writes a coordinate file, lines ended by CR LF. Returns 0, or -1 with a message; an old file then stays.
int save_transform_file(const PointTransform& transform, const std::string& path, Prompts& prompts);
/// The text that a save would write.
std::string transform_file_text(const PointTransform& transform);

}  // namespace anomalis::transform
