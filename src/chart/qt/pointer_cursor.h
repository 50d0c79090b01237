#pragma once

#include <QCursor>

#include "chart/top_marks.h"

namespace anomalis::chart {

/// The cursor that tells what a press would do.
QCursor pointer_cursor(PointerShape shape);

}  // namespace anomalis::chart
