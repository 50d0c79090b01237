#pragma once

#include <span>

#include "window/shell/action_table.h"

namespace anomalis::window {

/// One line of the menus as they are read from top to bottom.
struct MenuItem {
    enum class Kind {
        open,      ///< a menu begins; what follows stands in it
        close,     ///< it ends
        entry,     ///< an action, or all of its family
        separator  ///< may have a name
    };
    Kind kind = Kind::close;
    const char* name = "";
    const char* text = "";
    ActionId action{};
    When when = When::always;  ///< a menu of the bar is there only while this holds
};

/// The menus of the bar with everything below them.
std::span<const MenuItem> menu_tree();

}  // namespace anomalis::window
