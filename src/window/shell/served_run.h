#pragma once

namespace anomalis {
class Prompts;
}  // namespace anomalis

namespace anomalis::window {

class BusyInput;

/// A run that yields: keys and clicks are let in there, all but its stop are turned away, and the pointer
/// shows that work goes on. `running` false ends it.
void serve_run(bool running, Prompts& prompts, BusyInput& busy);

}  // namespace anomalis::window
