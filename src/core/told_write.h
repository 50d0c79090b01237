#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace anomalis {

class Prompts;

/// Writes a whole file; raises FileFault.
using FileWriter = std::function<void(const std::string& path, std::string_view contents)>;

/// `write_file_safely`; that other names of the file keep the old contents is told to `listener`.
void write_file_telling(Prompts& listener, const std::string& path, std::string_view contents);

/// The same as a writer; `listener` must outlive it.
FileWriter telling_writer(Prompts& listener);

}  // namespace anomalis
