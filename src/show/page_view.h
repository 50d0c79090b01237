#pragma once

#include <algorithm>
#include <array>
#include <string_view>

#include "edit/view_state.h"

namespace anomalis::show {

/// What a page of the model holds: of the charts those that are wanted and that the line has data for.
struct PageView {
    std::string_view name;
    std::array<bool, edit::model_chart_count> charts;  ///< as ModelChart numbers them
    bool plan = false;                                 ///< the plan stands in the section's place
};

inline constexpr std::array page_views{
    PageView{"section", {true, true, true, true, true}},
    PageView{"plan", {true, true, true, true, false}, true},
    PageView{"curves", {true, true, true, true, false}},
    PageView{"mag", {true, false, false, false, false}},
    PageView{"mag-gradient", {false, true, false, false, false}},
    PageView{"grav", {false, false, true, false, false}},
    PageView{"grav-gradient", {false, false, false, true, false}},
    PageView{"section-only", {false, false, false, false, true}},
    PageView{"plan-only", {false, false, false, false, false}, true},
};

/// The view of a name; null when there is none.
inline const PageView* find_page_view(std::string_view name) {
    const auto* const found = std::find_if(page_views.begin(), page_views.end(),
                                           [&](const PageView& view) { return view.name == name; });
    return found == page_views.end() ? nullptr : found;
}

}  // namespace anomalis::show
