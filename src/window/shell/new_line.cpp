#include "window/shell/new_line.h"

#include <algorithm>

#include "edit/workbench.h"

namespace anomalis::window {

void begin_anew(edit::Workbench& workbench, ModelNews& news, WhatChanged also) {
    edit::ViewState& view = workbench.view;
    view.current_body = std::max(view.current_body, 1);
    view.show_plan = false;
    news.tell(News::form_reset | News::view | also);
}

}  // namespace anomalis::window
