#pragma once

#include <memory>

#include "batch/picture_writer.h"

namespace anomalis {

/// The picture writer of this build; null in a build without a window system.
std::unique_ptr<batch::PictureWriter> make_picture_writer(int& argc, char** argv);

}  // namespace anomalis
