#pragma once

namespace anomalis::forward {

/// Why bodies gave nothing, gathered over one calculation so that each reason is told once.
struct ExactNotes {
    bool polygon = false;    ///< a Polygon body
    bool steep_top = false;  ///< a sloping top that does not meet its far wall
};

}  // namespace anomalis::forward
