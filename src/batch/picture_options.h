#pragma once

#include <string>

#include "batch/option_list.h"

namespace anomalis::batch {

/// Where a picture goes ("-o", needed; its ending chooses the format) and how many pixels it has ("--size").
void add_picture_options(OptionList& options, std::string& path, int& width, int& height);

manual::ValueForm picture_form();

/// Why a path, or "-", is no name of a picture; "" when it is.
std::string ending_refusal(const std::string& path);

}  // namespace anomalis::batch
