#pragma once

#include "window/shell/model_news.h"

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

namespace anomalis::window {

/// What every begin has in common, be it a load, a read, the first body or the end of the last one: the
/// section stands below the curves, the bars that move a body in the right column, and there is a current
/// body. Tells this and what else has changed.
void begin_anew(edit::Workbench& workbench, ModelNews& news, WhatChanged also);

}  // namespace anomalis::window
