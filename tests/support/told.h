#pragma once

#include <string>
#include <vector>

#include "core/faults.h"
#include "support/scripted_prompts.h"

namespace anomalis {

/// The texts of a calculation as the person would see them, repeated ones with their count.
inline std::vector<std::string> texts_of(const Faults& faults) {
    ScriptedPrompts prompts;
    show_faults(faults, prompts);
    return prompts.messages;
}

/// True when one of these texts, or a part of one, is `text`.
inline bool told(const Faults& faults, const std::string& text) {
    ScriptedPrompts prompts;
    show_faults(faults, prompts);
    return prompts.told(text);
}

}  // namespace anomalis
