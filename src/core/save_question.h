#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace anomalis {

class Prompts;
struct FileRequest;

/// Asks where to save. A name without an extension gets the default one; a file that stands there already is
/// asked about, once. No value after a cancel or a No.
std::optional<std::string> ask_save_path(Prompts& prompts, const FileRequest& request);

/// `path`, with "." and the extension behind it when its name has no ".".
std::string with_extension(const std::string& path, std::string_view extension);

}  // namespace anomalis
