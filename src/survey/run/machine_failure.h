#pragma once

#include <stdexcept>
#include <string>

namespace anomalis::survey {

/// The machine could not do what a line asks for: no room, no permission, a disk that fails. It says nothing
/// of the line, which is done when the run is started again. `what()` is the system's text and the path.
class MachineFailure : public std::runtime_error {
  public:
    explicit MachineFailure(const std::string& text) : std::runtime_error(text) {}
};

/// Runs `work` on files that must be had; what fails there is raised as MachineFailure.
template <class Work>
auto on_machine(Work&& work) {
    try {
        return work();
    } catch (const std::exception& failure) {
        throw MachineFailure(failure.what());
    }
}

}  // namespace anomalis::survey
