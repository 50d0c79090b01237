#pragma once

namespace anomalis {
struct ModelBody;
struct Workspace;
}  // namespace anomalis

namespace anomalis::edit {

struct Workbench;

/// Unties depth and susceptibility of pipes when they are tied; otherwise asks for the decay rate and ties
/// them. Blank, zero and what is no number change nothing.
void toggle_pipe_tie(Workbench& workbench);

bool pipes_are_tied(const Workspace& workspace);

/// While the tie is on, the susceptibility of a pipe whose `top` is about to move by `step` (m) follows, so
/// that its anomaly keeps its size: susc ((h - t - step) / (h - t))^rate with h the sensor's elevation at the
/// station at or before the pipe and t its present top. A pipe at or above the sensor, or a result that is
/// not above 0, leaves it. Returns true when it changed.
bool tie_susceptibility(Workbench& workbench, ModelBody& body, double step);

}  // namespace anomalis::edit
