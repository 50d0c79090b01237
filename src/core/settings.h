#pragma once

#include <compare>
#include <map>
#include <string>
#include <string_view>

namespace anomalis {

class Prompts;

inline constexpr std::string_view settings_root = "Brightfold";
inline constexpr std::string_view settings_section = "Anomalis";
inline constexpr std::string_view recent_files_section = "TLX_Anomalis";
inline constexpr std::string_view no_setting = "<no value>";

/// Where a group of settings stands. A root's own values have an empty section.
struct SettingsPlace {
    int location = 0;  ///< 1 the older, 0 the newer
    std::string root;
    std::string section;
    auto operator<=>(const SettingsPlace&) const = default;
};

/// The keys and values of each place.
using SettingsTable = std::map<SettingsPlace, std::map<std::string, std::string>>;

/// Small texts kept between sessions, in two locations. One is current; the other is a fallback for reading.
/// A store without a file lives in memory only.
///
/// The file is shared: each write takes it up anew under a lock, changes the one value and puts it back
/// whole, so several sessions keep each other's values. A file that cannot be understood or written is left
/// as it is, the person is told once, and the values of this session live in memory.
class Settings {
  public:
    Settings() = default;
    /// Reads the file, if there is one. `prompts` must outlive the store.
    Settings(std::string path, Prompts& prompts);

    /// 0 or 1: which location is current, by what the store holds.
    int choose_settings_location() const;
    /// As it was chosen at the start.
    int settings_location() const { return location_; }

    /// The value, cut at its first NUL and trimmed. When the location has no such section the other one is
    /// asked; `fallback` when that has none either, or when the section lacks the key.
    std::string get_setting(int location, std::string_view root, std::string_view section,
                            std::string_view key, std::string_view fallback) const;
    /// Writes to the given location only. Returns 0, or -1 when the store cannot be written.
    int save_setting(int location, std::string_view root, std::string_view section, std::string_view key,
                     std::string_view value);

    /// The same in the current location and this program's root.
    std::string get(std::string_view section, std::string_view key,
                    std::string_view fallback = no_setting) const;
    int set(std::string_view section, std::string_view key, std::string_view value);

    const std::string& path() const { return path_; }

  private:
    const std::map<std::string, std::string>* find_section(int location, std::string_view root,
                                                           std::string_view section) const;
    bool has_root(int location, std::string_view root) const;
    void write_through();
    void give_up(const std::string& reason);

    SettingsTable values_;
    SettingsTable unsaved_;  ///< set in this session and not yet on the disk
    std::string path_;
    Prompts* prompts_ = nullptr;
    int location_ = 0;
    bool told_ = false;
};

/// Where the settings file stands: "brightfold/anomalis.conf" in the user's configuration folder; "" when the
/// user has no home.
std::string default_settings_path();

}  // namespace anomalis
