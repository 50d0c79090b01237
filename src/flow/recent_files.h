#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace anomalis {
class Prompts;
class Settings;
}  // namespace anomalis

// The workspace files that were last opened or saved under a name, the newest first.
namespace anomalis::flow {

inline constexpr int most_recent_files = 6;

/// The list that the settings keep, up to the first empty place. A file that is gone is passed over; the
/// settings keep it until the next write.
std::vector<std::string> read_recent_files(const Settings& settings, std::string_view section);

/// Puts a file on top of the list and writes the whole list to the settings; a seventh file drops the oldest.
/// The path is kept absolute; letter case counts when it is looked for in the list.
void add_to_recent_files(const std::string& path, std::string_view section, Settings& settings,
                         std::vector<std::string>& recent_files, Prompts& prompts);

/// "1: path" as a menu wants it: in one line, each "&" doubled.
std::string recent_file_caption(int number, const std::string& path);

}  // namespace anomalis::flow
