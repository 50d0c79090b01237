#pragma once

#include <functional>
#include <vector>

#include "window/shell/form_guards.h"

namespace anomalis::window {

/// What stands half typed in an editor belongs to the model that is on show. Whatever reads, writes or
/// replaces that model goes through here first.
class EntryGate {
  public:
    /// Handlers that hold the guards come through here by `FormGuards::pass`.
    explicit EntryGate(FormGuards& guards) : guards_(guards) {
        guards.settle_entries = [this] { settle(); };
    }
    EntryGate(const EntryGate&) = delete;
    EntryGate& operator=(const EntryGate&) = delete;

    /// How one kind of editor takes over, or refuses, what stands in it. They are asked in this order.
    void add_editor(std::function<void()> settle) { editors_.push_back(std::move(settle)); }

    /// Takes over what is being typed anywhere; nothing while a run or a filling keeps the window closed.
    void settle() const;
    /// The same before an action. False: the window is closed, nothing may be done.
    [[nodiscard]] bool pass() const { return guards_.pass(); }

  private:
    const FormGuards& guards_;
    std::vector<std::function<void()>> editors_;
};

}  // namespace anomalis::window
