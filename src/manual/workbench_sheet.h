#pragma once

#include "manual/sheet.h"

namespace anomalis::manual {

/// What the workbench says of itself: `anomalis --help` and its man page.
Sheet workbench_sheet();

}  // namespace anomalis::manual
