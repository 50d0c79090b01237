#include "core/settings.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "core/failure.h"
#include "core/paths.h"
#include "core/prompts.h"
#include "core/safe_file.h"
#include "core/settings_file.h"
#include "core/text.h"

namespace anomalis {

namespace {

SettingsTable read_settings(const std::string& path) {
    return file_exists(path).empty() && !folder_exists(path) ? SettingsTable()
                                                             : parse_settings(read_whole_file(path));
}

void overlay(SettingsTable& values, const SettingsTable& newer) {
    for (const auto& [place, keys] : newer)
        for (const auto& [key, value] : keys) values[place][key] = value;
}

}  // namespace

Settings::Settings(std::string path, Prompts& prompts) : path_(std::move(path)), prompts_(&prompts) {
    try {
        if (!path_.empty()) values_ = read_settings(path_);
    } catch (const std::exception& failure) {
        give_up("An error occurred in myRegReadString: " + path_ + " : " + fault_text(failure));
    }
    location_ = choose_settings_location();
}

bool Settings::has_root(int location, std::string_view root) const {
    for (const auto& [place, keys] : values_)
        if (place.location == location && place.root == root) return true;
    return false;
}

int Settings::choose_settings_location() const {
    if (!has_root(1, settings_root)) return 0;
    return get_setting(1, settings_root, "", "UseHKCU", no_setting) != no_setting ||
                   get_setting(0, settings_root, "", "UseHKCU", no_setting) != no_setting
               ? 0
               : 1;
}

const std::map<std::string, std::string>* Settings::find_section(int location, std::string_view root,
                                                                 std::string_view section) const {
    auto keys = values_.find({location, std::string(root), std::string(section)});
    if (keys == values_.end()) keys = values_.find({1 - location, std::string(root), std::string(section)});
    return keys == values_.end() ? nullptr : &keys->second;
}

std::string Settings::get_setting(int location, std::string_view root, std::string_view section,
                                  std::string_view key, std::string_view fallback) const {
    const auto* keys = find_section(location, root, section);
    if (keys == nullptr) return std::string(fallback);
    const auto value = keys->find(std::string(key));
    return value == keys->end() ? std::string(fallback) : trim_at_nul(value->second);
}

int Settings::save_setting(int location, std::string_view root, std::string_view section,
                           std::string_view key, std::string_view value) {
    const SettingsPlace place{location, std::string(root), std::string(section)};
    values_[place][std::string(key)] = value;
    if (path_.empty()) return 0;
    unsaved_[place][std::string(key)] = value;
    try {
        write_through();
        return 0;
    } catch (const std::exception& failure) {
        give_up("An error occurred in myRegWriteString: " + std::string(key) + " : " + fault_text(failure));
        return -1;
    }
}

void Settings::write_through() {
    const std::string folder = folder_name(path_);
    if (!folder.empty()) {
        std::error_code error;
        std::filesystem::create_directories(folder, error);
        if (error) throw FileFault(error.value(), folder);
    }
    const FolderLock lock(folder.empty() ? "." : folder);
    SettingsTable fresh = read_settings(path_);
    overlay(fresh, unsaved_);
    write_file_safely(path_, settings_text(fresh));
    values_ = std::move(fresh);
    unsaved_.clear();
}

void Settings::give_up(const std::string& reason) {
    if (std::exchange(told_, true) || !prompts_) return;
    prompts_->message(reason + ". The settings file is left as it is; changes last for this session only.");
}

std::string Settings::get(std::string_view section, std::string_view key, std::string_view fallback) const {
    return get_setting(location_, settings_root, section, key, fallback);
}

int Settings::set(std::string_view section, std::string_view key, std::string_view value) {
    return save_setting(location_, settings_root, section, key, value);
}

std::string default_settings_path() {
    const std::string folder = user_config_folder();
    return folder.empty() ? "" : folder + "brightfold/anomalis.conf";
}

}  // namespace anomalis
