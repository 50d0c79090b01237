#pragma once

#include <map>
#include <string>
#include <string_view>

namespace anomalis {

class Prompts;

inline constexpr std::string_view settings_root = "Brightfold";
inline constexpr std::string_view settings_section = "Anomalis";
inline constexpr std::string_view recent_files_section = "TLX_Anomalis";
inline constexpr std::string_view no_setting = "<no value>";

/// Small texts kept between sessions, by root, section and key, in two locations: 1 the older, 0 the newer.
/// One is current; the other is a fallback for reading. A store without a file lives in memory only.
class Settings {
  public:
    Settings() = default;
    /// Reads the file, if there is one. A file that cannot be read leaves the store empty and is never
    /// overwritten; the person is told once.
    Settings(std::string path, Prompts& prompts);

    /// 0 or 1: which location is current, by what the store holds.
    int choose_settings_location() const;
    int settings_location() const { return location_; }

    /// The value, cut at its first NUL and trimmed; `fallback` when neither location has it.
    std::string get_setting(int location, std::string_view root, std::string_view section, std::string_view key,
                            std::string_view fallback) const;
    /// Writes to the given location only. Returns 0, or -1 when the store cannot be written.
    int save_setting(int location, std::string_view root, std::string_view section, std::string_view key,
                     std::string_view value);

    /// The same in the current location and this program's root.
    std::string get(std::string_view section, std::string_view key, std::string_view fallback = no_setting) const;
    int set(std::string_view section, std::string_view key, std::string_view value);

    const std::string& path() const { return path_; }

  private:
    using Key = std::string;  ///< location, root, section and key joined by a character none may hold
    std::map<Key, std::string> values_;
    std::string path_;
    int location_ = 0;
    bool writable_ = true;
};

/// Where the settings file stands by the XDG rules: $XDG_CONFIG_HOME or ~/.config.
std::string default_settings_path();

}  // namespace anomalis
