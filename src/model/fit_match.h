#pragma once

#include "core/model_mark.h"

namespace anomalis::model {

using anomalis::as_fitted;
using anomalis::model_mark;

}  // namespace anomalis::model
