#include "intake/profile_line.h"

#include <cmath>

#include "core/angles.h"
#include "core/failure.h"

namespace anomalis::intake {

bool ProfileLine::runs_backwards() const {
    return !(std::abs(dy) < std::abs(dx) ? dx > 0 : dy > 0);
}

ProfileLine profile_line(const StationTable& stations, int count) {
    ProfileLine line;
    if (count < 1) return line;
    line.dx = stations(count, column_east) - stations(1, column_east);
    line.dy = stations(count, column_north) - stations(1, column_north);
    line.length = std::sqrt(line.dx * line.dx + line.dy * line.dy);
    if (!std::isfinite(line.length)) throw Fault(FaultKind::overflow);
    return line;
}

void set_line_geometry(const ProfileLine& line, const StationTable& stations, Workspace& workspace) {
    workspace.origin_east = stations(1, column_east);
    workspace.origin_north = stations(1, column_north);
    workspace.direction_x = -line.dy / line.length;
    workspace.direction_y = line.dx / line.length;
    workspace.line_constant =
        -(workspace.direction_x * workspace.origin_east + workspace.direction_y * workspace.origin_north);
    // The bearing of the line less 180 degrees, as the strike of a body is compared with it.
    workspace.azimuth = static_cast<float>(guarded_atan2(-line.dx, -line.dy));
}

double distance_along(const Workspace& workspace, double east, double north) {
    const double distance = (east - workspace.origin_east) * workspace.direction_y -
                            (north - workspace.origin_north) * workspace.direction_x;
    if (!std::isfinite(distance)) throw Fault(FaultKind::overflow);
    return distance;
}

}  // namespace anomalis::intake
