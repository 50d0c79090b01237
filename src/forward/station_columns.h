#pragma once

#include <string>

#include "core/workspace.h"
#include "forward/station_view.h"

namespace anomalis::forward {

/// The stations of the workspace for a loop. Raises Fault subscript when a table has another length.
StationView station_view(const Workspace& workspace);

/// `count` stations of a view from index `from` (from 0) on, which it must hold.
StationView part_of(const StationView& stations, std::size_t from, std::size_t count);

/// One column of the body's response, to write. Raises Fault subscript when its length is not the station
/// count.
float* response_column(const Workspace& workspace, ModelBody& body, int column);
/// The same to read: null where all of it is 0.
const float* held_column(const Workspace& workspace, const ModelBody& body, int column);
/// A column that is held is filled with zeros, for others to add to; else it is 0 as it stands.
void zero_column(const Workspace& workspace, ModelBody& body, int column);

/// The frame of a body whose angles and reference point are current.
BodyFrame body_frame(const ModelBody& body);

/// x across strike of one station of the view, and its height over the top as it is.
double across_strike(const StationView& stations, const BodyFrame& frame, std::size_t i);
double height_over_top(const StationView& stations, const BodyFrame& frame, std::size_t i);

/// A height that is not above 0 counts as 0.1 m.
inline double lifted(double height) {
    return height <= 0 ? lifted_height : height;
}

/// What a response that is not finite is told as: names the body, the quantity (column 1 or 2) and, where
/// there is one, the parameter that is not finite.
std::string beyond_text(const Workspace& workspace, const ModelBody& body, int body_number, int column);

/// Sets a column that holds a value which is not finite to zero and raises Fault overflow, whose text names
/// the body, the quantity and, where there is one, the parameter that is not finite.
void require_finite_column(const Workspace& workspace, ModelBody& body, int body_number, int column);

}  // namespace anomalis::forward
