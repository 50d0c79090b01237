#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace anomalis {

/// A folder of its own for one test, removed with all it holds.
class TempFolder {
  public:
    TempFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "anomalis-test-XXXXXX").string();
        if (!::mkdtemp(name.data())) throw std::runtime_error("no temporary folder: " + name);
        folder_ = std::filesystem::canonical(name).string();
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    /// The folder without a trailing separator.
    const std::string& folder() const { return folder_; }
    /// The path of a file in it.
    std::string path(std::string_view name) const { return folder_ + "/" + std::string(name); }
    /// Writes a file, making its folder when needed, and returns its path.
    std::string write(std::string_view name, std::string_view contents) const {
        const std::string target = path(name);
        std::filesystem::create_directories(std::filesystem::path(target).parent_path());
        std::ofstream file(target, std::ios::binary);
        file.write(contents.data(), static_cast<std::streamsize>(contents.size()));
        if (!file.flush()) throw std::runtime_error("cannot write " + target);
        return target;
    }
    std::string read(std::string_view name) const {
        std::ifstream file(path(name), std::ios::binary);
        if (!file) throw std::runtime_error("cannot read " + path(name));
        std::ostringstream contents;
        contents << file.rdbuf();
        return contents.str();
    }
    /// The number of files and folders in it.
    int entries() const {
        int count = 0;
        for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder_)) ++count;
        return count;
    }

  private:
    std::string folder_;
};

/// Makes a folder the current one until the end of the scope.
class CurrentFolder {
  public:
    explicit CurrentFolder(const std::string& folder) {
        std::error_code gone;  // the folder of a test before, which opened a file there
        before_ = std::filesystem::current_path(gone);
        if (gone) before_ = std::filesystem::temp_directory_path();
        std::filesystem::current_path(folder);
    }
    ~CurrentFolder() {
        std::error_code ignored;
        std::filesystem::current_path(before_, ignored);
    }
    CurrentFolder(const CurrentFolder&) = delete;
    CurrentFolder& operator=(const CurrentFolder&) = delete;

  private:
    std::filesystem::path before_;
};

/// Sets or unsets (no value) a variable of the environment until the end of the scope.
class EnvironmentVariable {
  public:
    EnvironmentVariable(const char* name, const char* value) : name_(name) {
        if (const char* before = std::getenv(name)) before_ = before, was_set_ = true;
        value ? ::setenv(name, value, 1) : ::unsetenv(name);
    }
    ~EnvironmentVariable() {
        was_set_ ? ::setenv(name_.c_str(), before_.c_str(), 1) : ::unsetenv(name_.c_str());
    }
    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

  private:
    std::string name_;
    std::string before_;
    bool was_set_ = false;
};

}  // namespace anomalis
