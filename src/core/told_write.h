#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "core/text_pieces.h"

namespace anomalis {

class Prompts;

/// Writes a whole file; raises FileFault.
using FileWriter = std::function<void(const std::string& path, std::string_view contents)>;

/// `write_file_safely`; that other names of the file keep the old contents is told to `listener`.
void write_file_telling(Prompts& listener, const std::string& path, std::string_view contents);

/// A text that comes in pieces: none of it is in memory for longer than it takes to write it.
void write_pieces_telling(Prompts& listener, const std::string& path, const TextSource& source);

/// The first as a writer; `listener` must outlive it.
FileWriter telling_writer(Prompts& listener);

}  // namespace anomalis
