#pragma once

#include <memory>
#include <vector>

namespace anomalis {
struct Workspace;
}  // namespace anomalis

namespace anomalis::edit {

struct BodyRecord;
struct SettingsRecord;

/// What a workspace file holds of a workspace, at one moment: the settings and the bodies, without anything
/// that is calculated from them and without the layout of the window. States share what is the same in them.
struct ModelState {
    using Body = std::shared_ptr<const BodyRecord>;

    std::shared_ptr<const SettingsRecord> settings;
    std::shared_ptr<const std::vector<Body>> bodies;  ///< body 1 first

    /// Nothing differs. It holds for states of which one was captured after the other.
    bool operator==(const ModelState&) const = default;
};

/// The state of a workspace. Whatever equals `before` is shared with it, so states that follow each other
/// cost only what differs. Base levels that float, map positions and the strikes of spheres follow from the
/// rest and make no difference.
ModelState capture_state(const Workspace& workspace, const ModelState& before = {});

/// How two states differ.
struct StateDifference {
    bool settings = false;
    bool list = false;      ///< number, order or types of the bodies
    int first_changed = 0;  ///< body of `to`, or its last one when bodies went from the end; 0 for none
    bool current_changed = false;  ///< body `current_body` of `to` is one of those that changed
};
StateDifference compare_states(const ModelState& from, const ModelState& to, int current_body);

/// Brings a workspace that stands in state `from` to state `to`. Bodies that both hold keep their responses,
/// unless a setting differs; the others are found out of date at the next calculation. What a load would
/// settle of the settings stands as the state has it.
void restore_state(Workspace& workspace, const ModelState& from, const ModelState& to);

/// A workspace with no line that holds what a file of this one would hold.
Workspace copy_of_model(const Workspace& workspace);

}  // namespace anomalis::edit
