#pragma once

#include <string>

namespace anomalis {
struct Workspace;
}  // namespace anomalis

namespace anomalis::flow {

/// A part of the line, m along the profile.
struct DistanceWindow {
    double first = 0, last = 0;
};

/// Lets the fit use the stations from `first` to `last` alone. Returns "", or why they cannot be used (fewer
/// than two stations lie there); the window is then as it was.
std::string choose_fit_window(Workspace& workspace, const DistanceWindow& window);

}  // namespace anomalis::flow
