#pragma once

#include <string>
#include <sys/types.h>

// Folders for their owner alone, whatever the mask of the person says.
namespace anomalis {

/// Gives a file or folder narrower rights, or wider ones than the mask left. Where the file system knows none
/// nothing happens.
void set_private(const std::string& path, mode_t rights);

/// Makes the folder (0700) with those above it that are missing. True when it was not there. Raises
/// FileFault.
bool make_private_folder(const std::string& folder);

}  // namespace anomalis
