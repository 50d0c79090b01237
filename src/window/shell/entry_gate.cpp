#include "window/shell/entry_gate.h"

namespace anomalis::window {

void EntryGate::settle() const {
    if (guards_.closed()) return;
    for (const auto& settle : editors_) settle();
}

}  // namespace anomalis::window
