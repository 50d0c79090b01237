#pragma once

#include <QPushButton>
#include <QStyle>

namespace anomalis::window {

/// Makes a button the one that matters on its page, or one of the others.
inline void set_chief(QPushButton& button, bool chief) {
    if (button.property("chief").toBool() == chief) return;
    button.setProperty("chief", chief);
    button.style()->unpolish(&button);
    button.style()->polish(&button);
}

}  // namespace anomalis::window
